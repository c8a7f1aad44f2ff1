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
                        FindingList& findings) {
  for (const Cairn::PackageRecord& package : outline.Store().Packages()) {
    if (!packages.contains(package.Folder)) continue;
    for (const Finding& finding : FindingsOfPackage(package)) {
      const bool is_of_list = finding.ID == FindingID::PklMissing || finding.ID == FindingID::PklSchema;
      if (is_of_list && memory.UnlistedPackages.contains(package.Folder)) continue;
      findings.push_back(finding);
    }
  }
}

FindingID IDOf(OutlineProblemKind kind) {
  switch (kind) {
    case OutlineProblemKind::CannotBeRead:
      return FindingID::ShowUnreadable;
    case OutlineProblemKind::ContainsItself:
      return FindingID::ShowLoop;
    case OutlineProblemKind::TooLong:
      return FindingID::ShowLength;
  }
  return FindingID::ShowUnreadable;
}

void AddShowFindings(const ShowOutline& outline, FindingList& findings) {
  for (const OutlineProblem& problem : outline.Problems()) {
    Finding& finding = findings.emplace_back(IDOf(problem.Kind));
    finding.Place = PlaceOf(problem.Path);
    finding.Place.Composition = problem.ID;
    finding.Found = problem.Reason;
  }
  for (const std::string& uri : outline.MissingShows()) findings.emplace_back(FindingID::ShowMissing).Found = uri;
}

// First, since what is said to be missing below may lie in them.
void AddUnreadable(const Cairn::AssetStore& store, FindingList& findings) {
  FindingList added;
  for (const Cairn::UnreadableEntry& entry : store.Unreadable()) {
    const auto tells = [&](const Finding& finding) { return PathOf(finding.Place) == entry.Path; };
    if (std::none_of(findings.begin(), findings.end(), tells)) added.push_back(FindingOfUnreadable(entry));
  }
  findings.insert(findings.begin(), added.begin(), added.end());
}

/// Checks one composition; `previous` is the last one that plays, and becomes this one where it does.
void AddComposition(const ShowOutline& outline, size_t index, FindingMemory& memory,
                    const OutlineComposition*& previous, const CheckProgress& progress, const ShowSecurity* security,
                    FindingList& findings) {
  const OutlineComposition& composition = outline.Compositions()[index];
  FindingList added;
  const auto go_on = [&] { return !progress || progress(index, outline.Compositions().size()); };
  const bool is_new = memory.Compositions.insert(composition.ID).second;
  if (is_new) FindInComposition(composition, outline.Store(), memory, added, go_on);
  if (std::all_of(added.begin(), added.end(),
                  [](const Finding& finding) { return SeverityOf(finding) <= Severity::Warning; })) {
    if (previous != nullptr && !(previous->EditRate == composition.EditRate)) {
      Finding& finding = added.emplace_back(FindingID::ShowRateChanges);
      finding.Place.Composition = composition.ID;
      finding.Place.CompositionTitle = composition.Title;
      finding.Expected = RateText(previous->EditRate);
      finding.Found = RateText(composition.EditRate);
    }
    previous = &composition;
  }
  if (security != nullptr) FindInSecurity(composition, index, *security, memory.Certificates, added);
  for (Finding& finding : added)  // what is played twice is told once
    if (is_new || std::find(findings.begin(), findings.end(), finding) == findings.end())
      findings.push_back(std::move(finding));
}

}  // namespace

FindingList FindingsOf(const ShowOutline& outline, const CheckProgress& progress, const ShowSecurity* security) {
  FindingList findings;
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
