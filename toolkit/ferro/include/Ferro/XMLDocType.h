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
/// passed over; nothing in them is expanded or loaded, so a namespace that only a document type declaration gives is not
/// seen. References to characters and to the five predefined entities are replaced in the namespace URI; any other makes
/// it malformed. Understands UTF-8, with or without a byte order mark, and UTF-16 with one. Time grows with the length
/// of what stands before the end of the tag, memory only with the names.
/// @return false when no start tag is found or it is malformed; `out` is then unchanged.
[[nodiscard]] FERRO_API bool GetXMLDocType(std::string_view document, XMLDocType& out);

}  // namespace Ferro
