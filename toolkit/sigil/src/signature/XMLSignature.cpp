// SPDX-License-Identifier: BSD-3-Clause
#include "signature/XMLSignature.h"

#include <xercesc/util/XMLString.hpp>
#include <xsec/canon/XSECC14n20010315.hpp>
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
    : m_Document(document),
      m_Element(signature),
      m_Signature(m_Provider.newSignatureFromDOM(document.Document(), signature)) {
  JoinValue(document, signature);
  m_Signature->setIdByAttributeName(false);
  m_Signature->load();
}

XMLSignature::~XMLSignature() {
  m_Provider.releaseSignature(m_Signature);
}

// The enveloped-signature transform, literally: the library's own puts each node of the document into a set, which takes
// several times as long as parsing it.
std::vector<ui8_t> XMLSignature::DigestOfDocument(const EVP_MD* method) {
  xercesc::DOMNode* parent = m_Element->getParentNode();
  xercesc::DOMNode* next = m_Element->getNextSibling();
  parent->removeChild(m_Element);
  XSECC14n20010315 canonical(m_Document.Document());
  canonical.setCommentsProcessing(false);
  const std::unique_ptr<EVP_MD_CTX, FreeWith<EVP_MD_CTX_free>> context(EVP_MD_CTX_new());
  EVP_DigestInit_ex(context.get(), method, nullptr);
  std::array<XMLByte, 16'384> piece{};
  for (XMLSize_t count = 0; (count = canonical.outputBuffer(piece.data(), piece.size())) > 0;)
    EVP_DigestUpdate(context.get(), piece.data(), count);
  parent->insertBefore(m_Element, next);
  std::vector<ui8_t> digest(static_cast<size_t>(EVP_MD_get_size(method)));
  EVP_DigestFinal_ex(context.get(), digest.data(), nullptr);
  return digest;
}

std::vector<ui8_t> XMLSignature::DigestFor(const DSIGReference& reference) {
  if (m_Document.Kind() != DocumentKind::KeyMessage) {
    const bool is_sha256 =
        xercesc::XMLString::equals(reference.getAlgorithmURI(), u"http://www.w3.org/2001/04/xmlenc#sha256");
    return DigestOfDocument(is_sha256 ? EVP_sha256() : EVP_sha1());  // no other was admitted
  }
  std::vector<ui8_t> digest(EVP_MAX_MD_SIZE);
  digest.resize(reference.calculateHash(digest.data(), EVP_MAX_MD_SIZE));
  return digest;
}

bool XMLSignature::AreDigestsTrue() {
  const DSIGReferenceList* references = m_Signature->getReferenceList();
  for (DSIGReferenceList::size_type i = 0; i < references->getSize(); ++i) {
    std::vector<ui8_t> said(EVP_MAX_MD_SIZE);
    said.resize(references->item(i)->readHash(said.data(), EVP_MAX_MD_SIZE));
    if (said != DigestFor(*references->item(i))) return false;
  }
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
  for (DSIGReferenceList::size_type i = 0; i < references->getSize(); ++i)
    digests.push_back(DigestFor(*references->item(i)));
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
