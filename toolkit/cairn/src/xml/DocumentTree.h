// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/Result.h>
#include <Cairn/SignatureMode.h>
#include <Cairn/X509CertificateList.h>

#include <Ferro/ILogSink.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Cairn {

// The tree that the documents of this library are read from. It has elements, their attributes and their text, which is
// all that the documents have: building the parser's own tree takes several times as long as parsing, and a show of a
// thousand compositions is a thousand documents.

/// An element of a document. All that it points to lives as long as the document's tree.
struct Element {
  struct NamedValue {
    const std::string* Name;  // with its prefix
    std::u16string Value;
  };

  const std::string* Name = nullptr;       // without its prefix
  const std::string* Namespace = nullptr;  // empty: in none
  Element* Root = nullptr;
  Element* Parent = nullptr;  // null for the document element
  Element* FirstChild = nullptr;
  Element* LastChild = nullptr;
  Element* NextSibling = nullptr;
  std::vector<NamedValue> Attributes;
  const std::string* DocumentText = nullptr;  // all character data of the document, in its order, as UTF-8
  size_t TextBegin = 0;                       // that of this element and of all below it
  size_t TextEnd = 0;
};

// Walking it. Texts come as UTF-8. A null element gives empty texts and null.

/// The name without its prefix.
[[nodiscard]] const std::string& LocalName(const Element* element);
[[nodiscard]] const std::string& NamespaceName(const Element* element);
/// All character data below the element, in document order.
[[nodiscard]] std::string TextContent(const Element* element);
/// TextContent without white space at its ends.
[[nodiscard]] std::string TrimmedText(const Element* element);
/// The value of the attribute of that name, its prefix included; empty when absent.
[[nodiscard]] std::string AttributeValue(const Element* element, std::string_view name);
[[nodiscard]] const Element* FirstChildElement(const Element* element);
[[nodiscard]] const Element* NextSiblingElement(const Element* element);
/// The first child of that local name, in any namespace; null when there is none.
[[nodiscard]] const Element* FirstChildNamed(const Element* element, std::string_view name);
/// True when `child` belongs to its document's own vocabulary: its namespace is that of the document element, or that of
/// its parent, since some producers declare an extension's namespace for all that is in it.
[[nodiscard]] bool IsOwnElement(const Element* child);

/// As for an element of the parser's tree.
void ReadSignature(const Element* signature, SignatureMode_t& mode, X509CertificateList& chain);

/// Is given the document element, never null, and the document's flavour.
using TreeReader = std::function<Result_t(const Element* root, DCPFormat_t format, Ferro::ILogSink& log)>;

/// Classifies a document by its namespace, parses it within the limits of DocumentParser, and has `read` read it. Every
/// failure is logged.
/// @return what `read` returns; before it RESULT_XML_PARSE, RESULT_XML_NAMESPACE or Ferro::RESULT_TOOLARGE.
[[nodiscard]] Result_t ReadDocument(const std::string& xml, Ferro::ILogSink& log, const TreeReader& read);

}  // namespace Cairn
