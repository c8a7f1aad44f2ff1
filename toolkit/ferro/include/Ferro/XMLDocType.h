// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>

#include <string>
#include <string_view>

namespace Ferro {

/// What a document says it is: the namespace URI and the local name of its document element.
struct XMLDocType {
  std::string NamespaceName;  // empty when the element is in no namespace
  std::string ElementName;
};

/// Reads the document element's namespace and name from the text's first tag, without building a tree and without
/// looking at the rest. A declaration, comments, processing instructions and a document type declaration before it are
/// passed over; nothing in them is expanded or loaded. Understands UTF-8 and UTF-16 with a byte order mark.
/// @return false when no start tag is found or it is malformed; `out` is then unchanged.
[[nodiscard]] FERRO_API bool GetXMLDocType(std::string_view document, XMLDocType& out);

}  // namespace Ferro
