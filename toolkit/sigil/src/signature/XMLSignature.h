// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "base/OpenSSLPointer.h"
#include "signature/SignedDocument.h"

#include <xsec/dsig/DSIGSignature.hpp>
#include <xsec/framework/XSECProvider.hpp>

#include <string>
#include <vector>

namespace Sigil {

/// A signature of a document as XML-Security-C has it. Only signatures whose form was looked at come here. May throw what
/// that library throws.
class XMLSignature {
 public:
  XMLSignature(const SignedDocument& document, xercesc::DOMElement* signature);
  ~XMLSignature();
  XMLSignature(const XMLSignature&) = delete;
  XMLSignature& operator=(const XMLSignature&) = delete;

  /// True when the digests of all references are those of the document.
  [[nodiscard]] bool AreDigestsTrue();
  /// True when the signature value is that key's over the signed information. The key stays the caller's.
  [[nodiscard]] bool IsValueOf(EVP_PKEY* key);
  /// The digest of each reference, computed anew.
  [[nodiscard]] std::vector<std::vector<ui8_t>> ComputeDigests();
  /// The signed information in its canonical form, as the tree has it now.
  [[nodiscard]] std::vector<ui8_t> SignedInfo();

 private:
  /// The digest that a reference states.
  [[nodiscard]] std::vector<ui8_t> DigestFor(const DSIGReference& reference);
  /// The document in canonical form, without the signature.
  [[nodiscard]] std::vector<ui8_t> DigestOfDocument(const EVP_MD* method);

  const SignedDocument& m_Document;
  xercesc::DOMElement* m_Element;  // the signature's
  XSECProvider m_Provider;
  DSIGSignature* m_Signature;  // m_Provider's
};

}  // namespace Sigil
