// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/SignatureMode.h>
#include <Cairn/X509CertificateList.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <string>
#include <string_view>

namespace Cairn {

// Walking a parsed document. Texts come as UTF-8. Pointers belong to the document. Null nodes give empty texts and null.

/// UTF-8 of a parser string; empty for null.
[[nodiscard]] CAIRN_API std::string XMLChToUTF8(const XMLCh* text);
/// The name without its prefix.
[[nodiscard]] CAIRN_API std::string LocalName(const xercesc::DOMNode* node);
[[nodiscard]] CAIRN_API std::string NamespaceName(const xercesc::DOMNode* node);
/// All character data below the node, in document order.
[[nodiscard]] CAIRN_API std::string TextContent(const xercesc::DOMNode* node);
/// TextContent without white space at its ends.
[[nodiscard]] CAIRN_API std::string TrimmedText(const xercesc::DOMNode* node);
/// The first child, or the next sibling, that is an element; null when there is none.
[[nodiscard]] CAIRN_API const xercesc::DOMElement* FirstChildElement(const xercesc::DOMNode* node);
[[nodiscard]] CAIRN_API const xercesc::DOMElement* NextSiblingElement(const xercesc::DOMNode* node);
/// The first child element of that local name, in any namespace; null when there is none.
[[nodiscard]] CAIRN_API const xercesc::DOMElement* FirstChildNamed(const xercesc::DOMNode* node, std::string_view name);

/// Takes down that a Signature element is present (SM_UNTESTED) and the certificates it carries; verifies nothing.
CAIRN_API void ReadSignature(const xercesc::DOMNode* signature, SignatureMode_t& mode, X509CertificateList& chain);

}  // namespace Cairn
