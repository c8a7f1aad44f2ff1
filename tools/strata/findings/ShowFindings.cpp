// SPDX-License-Identifier: BSD-3-Clause
#include "ShowFindings.h"

#include "AssetFindings.h"
#include "CompositionFindings.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <set>

namespace Tool {

namespace {

/// The folders of the packages that the show's files lie in.
std::set<std::string> PackagesOf(const ShowOutline& outline) {
  std::set<std::string> packages;
  for (const OutlineComposition& composition : outline.Compositions()) {
    if (composition.Found) packages.insert(composition.Found->Package);
    for (const OutlineReel& reel : composition.Reels)
      for (const OutlineAsset& asset : reel.Assets)
        if (asset.Found) packages.insert(asset.Found->Package);
  }
  return packages;
}

void AddPackageFindings(const ShowOutline& outline, const std::set<std::string>& packages, const FindingMemory& memory,
                        std::vector<Finding>& findings) {
  for (const Cairn::PackageRecord& package : outline.Store().Packages()) {
    if (!packages.contains(package.Folder)) continue;
    for (const Finding& finding : FindingsOfPackage(package)) {
      const bool is_of_list = finding.ID == FindingID::PklMissing || finding.ID == FindingID::PklSchema;
      if (is_of_list && memory.UnlistedPackages.contains(package.Folder)) continue;
      findings.push_back(finding);
    }
  }
}

void AddShowFindings(const ShowOutline& outline, std::vector<Finding>& findings) {
  for (const OutlineProblem& problem : outline.Problems()) {
    Finding finding(FindingID::ShowUnreadable);
    switch (problem.Kind) {
      case OutlineProblemKind::CannotBeRead:
        finding.Message = "The show playlist " + problem.Path + " cannot be read: " + problem.Reason + '.';
        break;
      case OutlineProblemKind::ContainsItself:
        finding = Finding(FindingID::ShowLoop);
        finding.Message = "The show playlist " + problem.Path + " contains itself.";
        break;
      case OutlineProblemKind::TooLong:
        finding = Finding(FindingID::ShowLength);
        finding.Message = "The show is longer than can be counted, from " + problem.ID.EncodeString() + " on.";
        break;
    }
    finding.What = Subject::ShowPlaylist;
    findings.push_back(finding);
  }
  for (const std::string& uri : outline.MissingShows()) {
    Finding& finding = findings.emplace_back(FindingID::ShowMissing);
    finding.Message = "No store has the show playlist " + uri + ", which the show contains.";
    finding.What = Subject::ShowPlaylist;
  }
}

// First, since what is said to be missing below may lie in them.
void AddUnreadable(const Cairn::AssetStore& store, std::vector<Finding>& findings) {
  std::vector<Finding> added;
  for (const Cairn::UnreadableEntry& entry : store.Unreadable()) {
    const auto tells = [&](const Finding& finding) { return finding.File == entry.Path; };
    if (std::none_of(findings.begin(), findings.end(), tells)) added.push_back(FindingOfUnreadable(entry));
  }
  findings.insert(findings.begin(), added.begin(), added.end());
}

/// Checks one composition; `previous` is the last one that plays, and becomes this one where it does.
void AddComposition(const ShowOutline& outline, size_t index, FindingMemory& memory,
                    const OutlineComposition*& previous, const CheckProgress& progress, const ShowSecurity* security,
                    std::vector<Finding>& findings) {
  const OutlineComposition& composition = outline.Compositions()[index];
  std::vector<Finding> added;
  FindInComposition(composition, outline.Store(), memory, added,
                    [&] { return !progress || progress(index, outline.Compositions().size()); });
  if (std::all_of(added.begin(), added.end(), [](const Finding& f) { return f.Level <= Severity::Warning; })) {
    if (previous != nullptr && !(previous->EditRate == composition.EditRate)) {
      Finding& finding = added.emplace_back(FindingID::ShowRateChanges);
      finding.Composition = CompositionName(composition);
      finding.Expected = RateText(previous->EditRate);
      finding.Found = RateText(composition.EditRate);
    }
    previous = &composition;
  }
  if (security != nullptr) FindInSecurity(composition, index, *security, memory.Certificates, added);
  for (Finding& finding : added) {
    finding.CompositionNumber = static_cast<Ferro::ui32_t>(index + 1);
    findings.push_back(std::move(finding));
  }
}

}  // namespace

std::vector<Finding> FindingsOf(const ShowOutline& outline, const CheckProgress& progress,
                                const ShowSecurity* security) {
  std::vector<Finding> findings;
  FindingMemory memory;
  AddShowFindings(outline, findings);
  const OutlineComposition* previous = nullptr;
  const size_t total = outline.Compositions().size();
  for (size_t index = 0; index < total; ++index) {
    if (progress && !progress(index, total)) break;
    AddComposition(outline, index, memory, previous, progress, security, findings);
  }
  const std::set<std::string> packages = PackagesOf(outline);
  AddPackageFindings(outline, packages, memory, findings);
  if (security != nullptr) {
    FindInPackingLists(outline, packages, *security, memory.Certificates, findings);
    FindInMessages(*security, findings);
  }
  AddUnreadable(outline.Store(), findings);
  return findings;
}

}  // namespace Tool
