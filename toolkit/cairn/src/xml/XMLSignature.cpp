// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentTree.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLNode.h>

#include <Ferro/TextEncoding.h>

namespace Cairn {
namespace {

template <class NodeT>
bool IsSignatureElement(const NodeT* element, std::string_view name) {
  return LocalName(element) == name && NamespaceName(element) == NS_XMLDSig;
}

template <class NodeT>
X509Certificate ReadCertificate(const NodeT* x509_data) {
  X509Certificate certificate;
  const auto* serial = FirstChildNamed(x509_data, "X509IssuerSerial");
  certificate.IssuerName = TrimmedText(FirstChildNamed(serial, "X509IssuerName"));
  certificate.SerialNumber = TrimmedText(FirstChildNamed(serial, "X509SerialNumber"));
  // A certificate that is not Base64 leaves no bytes; whoever verifies the chain sees the gap.
  if (!Ferro::base64decode(TrimmedText(FirstChildNamed(x509_data, "X509Certificate")), certificate.DER))
    certificate.DER.clear();
  return certificate;
}

// Both trees have functions of the same names.
template <class NodeT>
void ReadSignatureFrom(const NodeT* signature, SignatureMode_t& mode, X509CertificateList& chain) {
  mode = SM_UNTESTED;
  const auto* key_info = FirstChildNamed(signature, "KeyInfo");
  for (auto* data = FirstChildElement(key_info); data != nullptr; data = NextSiblingElement(data))
    if (IsSignatureElement(data, "X509Data")) chain.push_back(ReadCertificate(data));
}

}  // namespace

void ReadSignature(const xercesc::DOMNode* signature, SignatureMode_t& mode, X509CertificateList& chain) {
  ReadSignatureFrom(signature, mode, chain);
}

void ReadSignature(const Element* signature, SignatureMode_t& mode, X509CertificateList& chain) {
  ReadSignatureFrom(signature, mode, chain);
}

}  // namespace Cairn
