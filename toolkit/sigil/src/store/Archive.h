// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Sigil {

/// A document in an archive.
struct ArchivedDocument {
  std::string Name;
  std::string Text;
};

/// Unpacks the documents ("*.xml") of a ZIP archive, within the limits of KeyMessageStore.
/// @return empty; or why the archive is refused, `out` then being unchanged. A document that is larger than a key message may
/// be, or encrypted, comes out with a text that is cut off behind that, or empty.
[[nodiscard]] std::string UnpackDocuments(std::string_view archive, std::vector<ArchivedDocument>& out);

/// True for bytes that begin as ZIP archives do.
[[nodiscard]] bool IsArchive(std::string_view bytes);

/// True for a name that ends in a full stop and these letters, in either case.
[[nodiscard]] bool HasExtension(std::string_view name, std::string_view lower_case);

}  // namespace Sigil
