// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/DocumentElement.h>
#include <Cairn/Result.h>
#include <Cairn/SignatureMode.h>
#include <Cairn/X509CertificateList.h>

#include <Ferro/FunctionRef.h>
#include <Ferro/ILogSink.h>

#include <string>
#include <string_view>

namespace Cairn {

// Walking the tree of a document. Texts come as UTF-8. A null element gives empty texts and null.

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
using TreeReader = Ferro::FunctionRef<Result_t(const Element* root, DCPFormat_t format, Ferro::ILogSink& log)>;

/// Classifies a document by its namespace, parses it within the limits of DocumentParser, and has `read` read it. Every
/// failure is logged.
/// @return what `read` returns; before it RESULT_XML_PARSE, RESULT_XML_NAMESPACE or Ferro::RESULT_TOOLARGE.
[[nodiscard]] Result_t ReadDocument(const std::string& xml, Ferro::ILogSink& log, TreeReader read);

}  // namespace Cairn
