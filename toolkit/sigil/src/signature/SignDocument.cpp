// SPDX-License-Identifier: BSD-3-Clause
#include "signature/SignatureVerification.h"
#include "signature/SignatureWriting.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>

namespace Sigil {
namespace {

Result_t Refuse(Ferro::ILogSink& log, Result_t result, const std::string& reason) {
  log.Error("Document not signed: %s\n", reason.c_str());
  return result;
}

/// Where Signer and Signature go: before the document element's end tag. npos where it has none.
size_t EndTag(const std::string& xml, const SignedDocument& document) {
  return xml.rfind("</" + Cairn::XMLChToUTF8(document.Root()->getNodeName()));
}

std::string SignerElement(const SignedDocument& document, const Certificate& leaf) {
  const std::string prefix = Cairn::XMLChToUTF8(document.Root()->getPrefix());
  const std::string name = prefix.empty() ? "Signer" : prefix + ":Signer";
  return "<" + name + " xmlns:ds=\"" + Cairn::NS_XMLDSig + "\"><ds:X509Data><ds:X509IssuerSerial>" +
         IssuerSerialElements(leaf) + "</ds:X509IssuerSerial></ds:X509Data></" + name + '>';
}

Result_t Sign(std::string& xml, const SignerIdentity& signer, Ferro::ILogSink& log) {
  SignedDocument document;
  if (const Result_t result = document.Parse(xml, log); result.Failure()) return result;
  if (document.Kind() == DocumentKind::KeyMessage)
    return Refuse(log, RESULT_SG_DOCUMENT, "key messages are signed when they are made");
  if (Cairn::FirstChildNamed(document.Root(), "Signer") != nullptr ||
      Cairn::FirstChildNamed(document.Root(), "Signature") != nullptr)
    return Refuse(log, RESULT_SG_SIGN, "it has a signer or a signature already");
  const auto date = document.IssueDate();
  if (!date) return Refuse(log, RESULT_SG_SIGN, "it has no issue date");
  ChainContext context;
  context.At = *date;
  context.Format = document.Format();
  CertificateList chain;
  if (std::string problem = OrderSigner(signer, context, chain); !problem.empty())
    return Refuse(log, RESULT_SG_SIGNER, problem);

  const size_t end = EndTag(xml, document);
  if (end == std::string::npos) return Refuse(log, RESULT_SG_SIGN, "its document element has no end tag");
  const bool is_interop = document.Format() == Cairn::DFT_Interop;
  std::string text = xml;
  text.insert(end,
              SignerElement(document, chain.front()) + '\n' + SignatureElement(chain, {""}, is_interop, true) + '\n');
  if (!FillSignature(text, signer.Key, is_interop, log))
    return Refuse(log, RESULT_SG_SIGN, "there is no place for a signature");
  SignatureReport report;
  const Result_t result = VerifySignature(text, {}, report, log);
  if (result.Failure() || report.State != SignatureState::Valid)
    return Refuse(log, RESULT_SG_SIGN, "the signature does not verify");
  xml = std::move(text);
  return Ferro::RESULT_OK;
}

}  // namespace

Result_t SignDocument(std::string& xml, const SignerIdentity& signer, Ferro::ILogSink& log) {
  try {
    return Sign(xml, signer, log);
  } catch (...) {
    return Cairn::LogXMLException(log);
  }
}

}  // namespace Sigil
