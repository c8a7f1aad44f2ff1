// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/Namespace.h>
#include <Cairn/XMLNode.h>

#include <Ferro/TextEncoding.h>

namespace Cairn {
namespace {

bool IsSignatureElement(const xercesc::DOMElement* element, std::string_view name) {
  return LocalName(element) == name && NamespaceName(element) == NS_XMLDSig;
}

X509Certificate ReadCertificate(const xercesc::DOMElement* x509_data) {
  X509Certificate certificate;
  const xercesc::DOMElement* serial = FirstChildNamed(x509_data, "X509IssuerSerial");
  certificate.IssuerName = TrimmedText(FirstChildNamed(serial, "X509IssuerName"));
  certificate.SerialNumber = TrimmedText(FirstChildNamed(serial, "X509SerialNumber"));
  // A certificate that is not Base64 leaves no bytes; whoever verifies the chain sees the gap.
  if (!Ferro::base64decode(TrimmedText(FirstChildNamed(x509_data, "X509Certificate")), certificate.DER))
    certificate.DER.clear();
  return certificate;
}

}  // namespace

void ReadSignature(const xercesc::DOMNode* signature, SignatureMode_t& mode, X509CertificateList& chain) {
  mode = SM_UNTESTED;
  const xercesc::DOMElement* key_info = FirstChildNamed(signature, "KeyInfo");
  for (auto* data = FirstChildElement(key_info); data != nullptr; data = NextSiblingElement(data))
    if (IsSignatureElement(data, "X509Data")) chain.push_back(ReadCertificate(data));
}

}  // namespace Cairn
