// SPDX-License-Identifier: BSD-3-Clause
#include "signature/SignatureVerification.h"

#include "certificate/CertificateState.h"
#include "signature/SignatureForm.h"
#include "signature/XMLSignature.h"

#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>

#include <algorithm>

namespace Sigil {
namespace {

using enum Severity;
using enum FindingID;

void CheckSigner(const SignedDocument& document, const Certificate& leaf, FindingList& findings) {
  const auto* signer = Cairn::FirstChildNamed(document.Head(), "Signer");
  const auto* data = Cairn::FirstChildNamed(signer, "X509Data");
  const auto* nested = Cairn::FirstChildNamed(data, "X509IssuerSerial");
  const IssuerSerial named = ReadIssuerSerial(nested != nullptr ? nested : signer);
  if (named.IsEmpty())
    findings.push_back({SignSigner, Warning, "The document does not name its signer."});
  else if (!named.Names(leaf))
    findings.push_back({SignSigner, Warning, "The signer that the document names is not the one who signed."});
}

void CheckChainOf(const SignedDocument& document, const SignatureForm& form, const SignatureContext& context,
                  SignatureReport& report) {
  const auto date = document.IssueDate();
  if (!date) {
    report.Findings.push_back(
        {SignForm, Error, "The document has no issue date to judge its signer's certificates by."});
    return;
  }
  report.Chain = CheckChain(form.Certificates, {*date, context.Today, context.TrustedRoots, document.Format(), true});
  if (report.Chain.HasRepeats)
    report.Findings.push_back({SignKeyInfo, Warning, "The signature has a certificate twice."});
  if (!report.Chain.Strays.empty())
    report.Findings.push_back({SignKeyInfo, Warning, "The signature has a certificate that is not of its chain."});
  if (!report.Chain.Chain.empty() && !(form.Certificates.front() == report.Chain.Chain.front()))
    report.Findings.push_back({SignKeyInfo, Warning, "The signature's first certificate is not the signer's."});
  report.Findings.insert(report.Findings.end(), report.Chain.Findings.begin(), report.Chain.Findings.end());
}

/// Digests, chain and value, in this order: a document that was changed is the usual case.
void Verify(const SignedDocument& document, const SignatureForm& form, const SignatureContext& context,
            SignatureReport& report) {
  // The library is to see no keys but the one that it is given.
  form.Signature->removeChild(form.KeyInfo);
  XMLSignature signature(document, form.Signature);
  if (!signature.AreDigestsTrue()) {
    report.Findings.push_back(
        {SignInvalid, Error, "The digest is not the document's: it was changed after it was signed."});
    return;
  }
  CheckChainOf(document, form, context, report);
  if (!report.Chain.Holds() || HasErrors(report.Findings)) return;
  const Certificate& leaf = report.Chain.Chain.front();
  if (!signature.IsValueOf(X509_get0_pubkey(CertificateState::X509Of(leaf))))
    report.Findings.push_back({SignInvalid, Error, "The signature value is not of the signer's key."});
  CheckSigner(document, leaf, report.Findings);
}

}  // namespace

Cairn::SignatureMode_t SignatureModeOf(SignatureState state) {
  switch (state) {
    case SignatureState::Valid:
      return Cairn::SM_VALID;
    case SignatureState::Invalid:
      return Cairn::SM_INVALID;
    default:
      return Cairn::SM_NONE;
  }
}

std::string SignatureReport::Reason() const {
  const auto first = std::ranges::find(Findings, Error, &Finding::Severity);
  return first == Findings.end() ? std::string() : first->Text;
}

SignatureReport VerifyParsed(const SignedDocument& document, const SignatureContext& context, Ferro::ILogSink& log) {
  SignatureReport report;
  SignatureForm form;
  ReadSignatureForm(document, form, report.Findings, log);
  if (!HasErrors(report.Findings)) {
    if (form.Signature == nullptr) return report;
    try {
      Verify(document, form, context, report);
    } catch (...) {
      static_cast<void>(Cairn::LogXMLException(log));
      report.Findings.push_back({SignForm, Error, "The signature cannot be computed."});
    }
  }
  ERR_clear_error();
  report.State = HasErrors(report.Findings) ? SignatureState::Invalid : SignatureState::Valid;
  return report;
}

Result_t VerifySignature(const std::string& xml, const SignatureContext& context, SignatureReport& out,
                         Ferro::ILogSink& log) {
  try {
    SignedDocument document;
    if (const Result_t result = document.Parse(xml, log); result.Failure()) return result;
    out = VerifyParsed(document, context, log);
    return Ferro::RESULT_OK;
  } catch (...) {
    return Cairn::LogXMLException(log);
  }
}

}  // namespace Sigil
