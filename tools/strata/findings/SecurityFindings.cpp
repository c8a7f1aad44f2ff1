// SPDX-License-Identifier: BSD-3-Clause
#include "SecurityFindings.h"

#include "AssetFindings.h"
#include "keys/Moment.h"

#include <algorithm>

namespace Tool {

namespace {

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

bool IsOfCertificate(FindingID id) {
  return id >= FindingID::CertVersion && id <= FindingID::CertSignerCA;
}

/// A signed document, and where it stands.
struct SignedDocument {
  Assay::FindingPlace Place;
  bool IsEncrypted = false;  ///< what it lists
};

void FindInSignature(const SignedDocument& document, const DocumentSignatures::Outcome& outcome, ToldCertificates& told,
                     FindingList& findings) {
  const auto add = [&](Finding finding) {
    finding.Place = document.Place;
    findings.push_back(std::move(finding));
  };
  if (outcome.Result.Failure()) return;  // what cannot be read is reported elsewhere
  if (document.IsEncrypted && outcome.Report.State == Sigil::SignatureState::NotSigned)
    add(Finding(FindingID::SignMissing));
  for (const Sigil::Finding& from : outcome.Report.Findings) {
    Finding finding = FindingOf(from);
    if (!IsOfCertificate(finding.ID) || told.emplace(finding.ID, finding.Found).second) add(std::move(finding));
  }
}

void FindInKeys(const OutlineComposition& composition, const KeyAnswer& answer, size_t messages,
                FindingList& findings) {
  const auto add = [&](Finding finding) {
    if (answer.Choice.Best != nullptr) finding.Place = PlaceOf(answer.Choice.Best->Source);
    finding.Place.Composition = composition.ID;
    finding.Place.CompositionTitle = composition.Title;
    findings.push_back(std::move(finding));
  };
  if (answer.Choice.Best == nullptr) {
    Finding none(FindingID::KdmNone, messages > 0 ? FindingClass::Error : FindingClass::Note);
    if (messages > 0)
      none.Found = messages == 1 ? "a key message for something else"
                                 : std::to_string(messages) + " key messages, all for something else";
    add(std::move(none));
    return;
  }
  for (const Sigil::Finding& from : answer.Choice.Findings) {
    Finding finding = FindingOf(from);
    TellWindow(answer.Choice.Best->Message, finding);
    add(std::move(finding));
  }
}

/// True where a composition of the show lies in the package and is encrypted.
bool HoldsEncrypted(const ShowOutline& outline, const std::string& folder) {
  return std::ranges::any_of(outline.Compositions(), [&](const OutlineComposition& composition) {
    return composition.Found && composition.Found->Package == folder && IsEncrypted(composition);
  });
}

}  // namespace

Finding FindingOf(const Sigil::Finding& finding) {
  Finding to(Assay::FindRule(Sigil::FindingName(finding.ID))->ID);
  to.Class = ClassOf(finding.Severity);
  to.Found = WithoutFullStop(finding.Text);
  return to;
}

void TellWindow(const Sigil::KeyMessage& message, Finding& finding) {
  if (finding.ID == FindingID::KdmEarly) finding.Found = "valid from " + WrittenText(message.NotBefore) + " on";
  if (finding.ID == FindingID::KdmLate) finding.Found = "valid until " + WrittenText(message.NotAfter);
}

void FindInSecurity(const OutlineComposition& composition, size_t number, const ShowSecurity& security,
                    ToldCertificates& told, FindingList& findings) {
  if (composition.Problem != CompositionProblem::None) return;
  const bool is_encrypted = IsEncrypted(composition);
  SignedDocument document = {PlaceOf(composition.Path, composition.Found ? composition.Found->Package : ""),
                             is_encrypted};
  document.Place.Composition = composition.ID;
  document.Place.CompositionTitle = composition.Title;
  FindInSignature(document, security.Keys.Signatures().Of(composition.Path), told, findings);
  if (is_encrypted)
    FindInKeys(composition, security.Answers[number].back(), security.Keys.Messages().Entries().size(), findings);
}

void FindInPackingLists(const ShowOutline& outline, const std::set<std::string>& folders, const ShowSecurity& security,
                        ToldCertificates& told, FindingList& findings) {
  for (const Cairn::PackageRecord& package : outline.Store().Packages()) {
    if (!folders.contains(package.Folder)) continue;
    const bool is_encrypted = HoldsEncrypted(outline, package.Folder);
    for (const Cairn::UUID& id : package.PackingLists)
      for (const Cairn::AssetRecord& record : outline.Store().FindAsset(id)) {
        const bool is_meant = record.Package == package.Folder && !record.Info.RealFilename.empty();
        if (!is_meant) continue;
        const SignedDocument document = {PlaceOf(record.Info.RealFilename, package.Folder), is_encrypted};
        FindInSignature(document, security.Keys.Signatures().Of(record.Info.RealFilename), told, findings);
        break;
      }
  }
}

void FindInMessages(const ShowSecurity& security, FindingList& findings) {
  const bool is_needed = std::ranges::any_of(security.Answers, [](const std::vector<KeyAnswer>& answers) {
    return !answers.empty() && !answers.back().Serves();
  });
  for (const Sigil::KeyMessageStore::Problem& problem : security.Keys.Problems()) {
    Finding finding = FindingOf(problem.What);
    if (!is_needed) finding.Class = FindingClass::Warning;
    finding.Place = PlaceOf(problem.Source);
    findings.push_back(std::move(finding));
  }
}

}  // namespace Tool
