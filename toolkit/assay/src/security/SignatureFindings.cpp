// SPDX-License-Identifier: BSD-3-Clause
#include "SecurityFindings.h"

#include <Cairn/Namespace.h>
#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>

#include <algorithm>
#include <map>

namespace Assay {
namespace {

bool IsOfCertificate(FindingID id) {
  return id >= FindingID::CertVersion && id <= FindingID::CertSignerCA;
}

FindingClass ClassOf(Sigil::Severity severity) {
  switch (severity) {
    case Sigil::Severity::Error:
      return FindingClass::Error;
    case Sigil::Severity::Warning:
      return FindingClass::Warning;
    case Sigil::Severity::Note:
      return FindingClass::Note;
  }
  return FindingClass::Error;
}

}  // namespace

Finding FindingOf(const Sigil::Finding& finding) {
  const FindingRule* rule = FindRule(Sigil::FindingName(finding.ID));
  FERRO_ASSERT(rule != nullptr);
  Finding to(rule->ID, ClassOf(finding.Severity));
  to.Found = finding.Text.substr(0, finding.Text.size() - (finding.Text.ends_with('.') ? 1 : 0));
  return to;
}

bool HoldsEncrypted(const Package& package) {
  return std::ranges::any_of(package.Compositions,
                             [](const DocumentFile* document) { return IsEncrypted(ReadComposition(*document)); });
}

std::optional<SHA1> FindInSignature(const DocumentFile& document, const FindingPlace& place, bool is_encrypted,
                                    const Sigil::SignatureContext& context, FindingList& findings) {
  const auto add = [&](Finding finding) {
    finding.Place = place;
    findings.push_back(std::move(finding));
  };
  Sigil::SignatureReport report;
  if (!document.Text.empty()) {  // of a signed document
    Ferro::MemoryLogSink log;    // the result says it all
    const Result_t result = Sigil::VerifySignature(document.Text, context, report, log);
    if (result.Failure()) {
      Finding& finding = findings.emplace_back(FindingID::SignForm);
      finding.Place = place;
      finding.Found = result.Label();
      return std::nullopt;
    }
  }
  if (report.State == Sigil::SignatureState::NotSigned)
    add(Finding(FindingID::SignMissing, is_encrypted ? FindingClass::Error : FindingClass::Note));
  for (const Sigil::Finding& finding : report.Findings) add(FindingOf(finding));
  if (report.State != Sigil::SignatureState::Valid) return std::nullopt;
  return report.Chain.Chain.front().Thumbprint();
}

void FindInListSignatures(const Package& package, const Sigil::SignatureContext& context, FindingList& findings) {
  const bool is_encrypted = HoldsEncrypted(package);
  for (const ListFile& list : package.Lists)
    FindInSignature(*list.Document, list.Document->At(list.Document->Root()), is_encrypted, context, findings);
}

void TellCertificatesOnce(FindingList& findings) {
  std::map<std::pair<FindingID, std::string>, size_t> told;
  std::vector<size_t> places(findings.size());  // where each is told afterwards
  FindingList kept;
  for (size_t i = 0; i < findings.size(); ++i) {
    places[i] = kept.size();
    if (IsOfCertificate(findings[i].ID)) {
      const auto [known, is_new] = told.try_emplace({findings[i].ID, findings[i].Found}, kept.size());
      places[i] = known->second;
      if (!is_new) continue;
    }
    kept.push_back(std::move(findings[i]));
  }
  for (Finding& finding : kept)
    if (finding.Cause) finding.Cause = places[*finding.Cause];
  findings = std::move(kept);
}

}  // namespace Assay
