// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <Ferro/FunctionRef.h>

#include <string>
#include <vector>

namespace Ferro {
class ILogSink;
}

namespace Cairn {

class DOMTreeErrorReporter;

// The tree that the documents of this library are read from. It has elements, their attributes and their text, which is
// all that the documents have: building the parser's own tree takes several times as long as parsing, and a show of a
// thousand compositions is a thousand documents.

/// An element of a document. All that it points to lives as long as the document's tree.
struct Element {
  struct NamedValue {
    const std::string* Name;  ///< with its prefix
    std::u16string Value;
  };

  const std::string* Name = nullptr;       ///< without its prefix
  const std::string* Namespace = nullptr;  ///< empty: in none
  Element* Root = nullptr;
  Element* Parent = nullptr;  ///< null for the document element
  Element* FirstChild = nullptr;
  Element* LastChild = nullptr;
  Element* NextSibling = nullptr;
  std::vector<NamedValue> Attributes;
  const std::string* DocumentText = nullptr;  ///< all character data of the document, in its order, as UTF-8
  size_t TextBegin = 0;                       ///< that of this element and of all below it
  size_t TextEnd = 0;
  ui64_t Line = 0;  ///< in the document, from 1: where the element's start tag ends
};

/// Is given the document element, never null; the tree is gone when it returns.
using ElementReader = Ferro::FunctionRef<Result_t(const Element* root)>;

/// Parses a document of any kind within the limits of DocumentParser and has `read` read its tree. Every failure is
/// logged.
/// @return what `read` returns; before it RESULT_XML_PARSE or Ferro::RESULT_TOOLARGE. Any thread may call it.
[[nodiscard]] CAIRN_API Result_t ParseDocument(const std::string& xml, DOMTreeErrorReporter& reporter,
                                               Ferro::ILogSink& log, ElementReader read);

}  // namespace Cairn
