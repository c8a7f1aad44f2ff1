// SPDX-License-Identifier: BSD-3-Clause
#include "signature/XMLSignature.h"

#include <xsec/dsig/DSIGReference.hpp>
#include <xsec/dsig/DSIGReferenceList.hpp>
#include <xsec/enc/OpenSSL/OpenSSLCryptoKeyRSA.hpp>
#include <xsec/enc/XSECCryptoException.hpp>
#include <xsec/framework/XSECException.hpp>
#include <xsec/utils/XSECBinTXFMInputStream.hpp>

#include <xercesc/dom/DOMText.hpp>

#include <array>
#include <memory>
#include <string>

namespace Sigil {
namespace {

/// The library wants the value to be one text, which comments would part, and there before it is computed.
void JoinValue(const SignedDocument& document, xercesc::DOMElement* signature) {
  auto* value = signature->getFirstElementChild()->getNextElementSibling();
  const std::u16string text = value->getTextContent();
  while (value->getFirstChild() != nullptr) value->removeChild(value->getFirstChild());
  value->appendChild(document.Document()->createTextNode(text.empty() ? u"\n" : text.c_str()));
}

}  // namespace

// Only attributes that were told to be identifiers are: the library would take any that is called "Id".
XMLSignature::XMLSignature(const SignedDocument& document, xercesc::DOMElement* signature)
    : m_Signature(m_Provider.newSignatureFromDOM(document.Document(), signature)) {
  JoinValue(document, signature);
  m_Signature->setIdByAttributeName(false);
  m_Signature->load();
}

XMLSignature::~XMLSignature() {
  m_Provider.releaseSignature(m_Signature);
}

bool XMLSignature::AreDigestsTrue() {
  const DSIGReferenceList* references = m_Signature->getReferenceList();
  for (DSIGReferenceList::size_type i = 0; i < references->getSize(); ++i)
    if (!references->item(i)->checkHash()) return false;
  return references->getSize() > 0;
}

bool XMLSignature::IsValueOf(EVP_PKEY* key) {
  m_Signature->setSigningKey(new OpenSSLCryptoKeyRSA(key));  // which owns it from here on
  try {
    return m_Signature->verifySignatureOnly();
  } catch (const XSECCryptoException&) {  // a value of another length than the key's
    return false;
  } catch (const XSECException&) {
    return false;
  }
}

std::vector<std::vector<ui8_t>> XMLSignature::ComputeDigests() {
  std::vector<std::vector<ui8_t>> digests;
  const DSIGReferenceList* references = m_Signature->getReferenceList();
  for (DSIGReferenceList::size_type i = 0; i < references->getSize(); ++i) {
    std::vector<ui8_t>& digest = digests.emplace_back(EVP_MAX_MD_SIZE);
    digest.resize(references->item(i)->calculateHash(digest.data(), EVP_MAX_MD_SIZE));
  }
  return digests;
}

std::vector<ui8_t> XMLSignature::SignedInfo() {
  const std::unique_ptr<XSECBinTXFMInputStream> stream(m_Signature->makeBinInputStream());
  std::vector<ui8_t> bytes;
  std::array<XMLByte, 4096> piece{};
  for (XMLSize_t count = 0; (count = stream->readBytes(piece.data(), piece.size())) > 0;)
    bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<ptrdiff_t>(count));
  return bytes;
}

}  // namespace Sigil
