// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "signature/SignedDocument.h"

#include <Sigil/DocumentSignature.h>

#include <initializer_list>
#include <string>

namespace Sigil {

/// Puts the signer's certificates in order, leaf first.
/// @return empty, or why they are not to sign: the chain does not hold, or is not the key's.
[[nodiscard]] std::string OrderSigner(const SignerIdentity& signer, const ChainContext& context,
                                      CertificateList& chain);

/// X509IssuerName and X509SerialNumber of a certificate, as elements with the prefix "ds".
[[nodiscard]] std::string IssuerSerialElements(const Certificate& certificate);
/// A text with "&", "<" and ">" escaped for XML.
[[nodiscard]] std::string EscapeXML(const std::string& text);

/// A Signature element, complete but for digests and value.
/// @param uris  what is signed, one reference each; "" is the whole document without the signature.
[[nodiscard]] std::string SignatureElement(const CertificateList& chain, std::initializer_list<std::string> uris,
                                           bool uses_sha1_method, bool uses_sha1_digest);
/// Computes digests and value of the document's last Signature element, which SignatureElement made, and writes them in.
/// @return false, logged, when the document has no such signature. May throw what the XML libraries throw.
[[nodiscard]] bool FillSignature(std::string& xml, const PrivateKey& key, bool uses_sha1_method, Ferro::ILogSink& log);

}  // namespace Sigil
