// SPDX-License-Identifier: BSD-3-Clause
#include "SecurityFindings.h"

#include "CompositionFindings.h"
#include "keys/Moment.h"

#include <algorithm>

namespace Tool {

namespace {

Severity LevelOf(Sigil::Severity severity) {
  switch (severity) {
    case Sigil::Severity::Error:
      return Severity::Error;
    case Sigil::Severity::Warning:
      return Severity::Warning;
    case Sigil::Severity::Note:
      return Severity::Note;
  }
  return Severity::Error;
}

bool IsOfCertificate(FindingID id) {
  return id >= FindingID::CertVersion && id <= FindingID::CertSignerCA;
}

/// A signed document, and where it stands.
struct DocumentPlace {
  Subject What = Subject::Composition;
  std::string Composition;  ///< its title; empty for a packing list
  Cairn::UUID ID;
  std::string File;
  bool IsEncrypted = false;  ///< what it lists
};

void FindInSignature(const DocumentPlace& place, const DocumentSignatures::Outcome& outcome, ToldCertificates& told,
                     std::vector<Finding>& findings) {
  const auto add = [&](Finding finding) {
    finding.What = place.What;
    finding.Composition = place.Composition;
    finding.AssetID = place.ID;
    finding.File = place.File;
    findings.push_back(std::move(finding));
  };
  if (outcome.Result.Failure()) return;  // what cannot be read is reported elsewhere
  if (place.IsEncrypted && outcome.Report.State == Sigil::SignatureState::NotSigned)
    add(Finding(FindingID::SignMissing));
  for (const Sigil::Finding& from : outcome.Report.Findings) {
    Finding finding = FindingOf(from);
    if (!IsOfCertificate(finding.ID) || told.emplace(finding.ID, finding.Message).second) add(std::move(finding));
  }
}

void FindInKeys(const OutlineComposition& composition, const KeyAnswer& answer, size_t messages,
                std::vector<Finding>& findings) {
  const auto add = [&](Finding finding) {
    finding.Composition = CompositionName(composition);
    if (finding.Level > Severity::Note) finding.AssetID = composition.ID;
    if (answer.Choice.Best != nullptr) finding.File = answer.Choice.Best->Source;
    findings.push_back(std::move(finding));
  };
  if (answer.Choice.Best == nullptr) {
    Finding none(FindingID::KdmNone);
    if (messages > 0) {
      none.Level = Severity::Error;
      none.Message = "The composition is encrypted, and " +
                     (messages == 1 ? "the key message at hand is not for it."
                                    : "none of the " + std::to_string(messages) + " key messages at hand is for it.");
    }
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

FindingID FindingOf(Sigil::FindingID id) {
  return static_cast<FindingID>(static_cast<size_t>(FindingID::CertVersion) + static_cast<size_t>(id));
}

Finding FindingOf(const Sigil::Finding& finding) {
  Finding to(FindingOf(finding.ID));
  to.Level = LevelOf(finding.Severity);
  to.Message = finding.Text;
  if (to.Level < Severity::Error) to.Advice.clear();
  return to;
}

void TellWindow(const Sigil::KeyMessage& message, Finding& finding) {
  if (finding.ID == FindingID::KdmEarly)
    finding.Message = "The key message is not valid before " + WrittenText(message.NotBefore) + '.';
  if (finding.ID == FindingID::KdmLate)
    finding.Message = "The key message is not valid after " + WrittenText(message.NotAfter) + '.';
}

void FindInSecurity(const OutlineComposition& composition, size_t number, const ShowSecurity& security,
                    ToldCertificates& told, std::vector<Finding>& findings) {
  if (composition.Problem != CompositionProblem::None) return;
  const bool is_encrypted = IsEncrypted(composition);
  const DocumentPlace place = {Subject::Composition, CompositionName(composition), composition.ID, composition.Path,
                               is_encrypted};
  FindInSignature(place, security.Keys.Signatures().Of(composition.Path), told, findings);
  if (is_encrypted)
    FindInKeys(composition, security.Answers[number].back(), security.Keys.Messages().Entries().size(), findings);
}

void FindInPackingLists(const ShowOutline& outline, const std::set<std::string>& folders, const ShowSecurity& security,
                        ToldCertificates& told, std::vector<Finding>& findings) {
  for (const Cairn::PackageRecord& package : outline.Store().Packages()) {
    if (!folders.contains(package.Folder)) continue;
    const bool is_encrypted = HoldsEncrypted(outline, package.Folder);
    for (const Cairn::UUID& id : package.PackingLists)
      for (const Cairn::AssetRecord& record : outline.Store().FindAsset(id)) {
        const bool is_meant = record.Package == package.Folder && !record.Info.RealFilename.empty();
        if (!is_meant) continue;
        const DocumentPlace place = {Subject::PackingList, "", id, record.Info.RealFilename, is_encrypted};
        FindInSignature(place, security.Keys.Signatures().Of(place.File), told, findings);
        break;
      }
  }
}

void FindInMessages(const ShowSecurity& security, std::vector<Finding>& findings) {
  const bool is_needed = std::ranges::any_of(security.Answers, [](const std::vector<KeyAnswer>& answers) {
    return !answers.empty() && !answers.back().Serves();
  });
  for (const Sigil::KeyMessageStore::Problem& problem : security.Keys.Problems()) {
    Finding finding = FindingOf(problem.What);
    if (!is_needed) finding.Level = Severity::Warning;
    finding.File = problem.Source;
    findings.push_back(std::move(finding));
  }
}

}  // namespace Tool
