// SPDX-License-Identifier: BSD-3-Clause
#include "ShowFindings.h"

#include "CompositionFindings.h"
#include "terminal/ProgressBar.h"
#include "terminal/TextForms.h"

#include <algorithm>

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

bool IsAboutPackingLists(Cairn::PackageProblem_t problem) {
  return problem == Cairn::PP_NO_PACKING_LIST || problem == Cairn::PP_PACKING_LIST_UNREADABLE;
}

void AddPackageFindings(const ShowOutline& outline, const FindingMemory& memory, std::vector<Finding>& findings) {
  const std::set<std::string> packages = PackagesOf(outline);
  for (const Cairn::PackageRecord& package : outline.Store().Packages()) {
    if (!packages.contains(package.Folder)) continue;
    for (const Cairn::PackageFinding& problem : package.Findings) {
      const bool is_told = memory.UnlistedPackages.contains(package.Folder) && IsAboutPackingLists(problem.Problem);
      const bool has_no_map = problem.Problem == Cairn::PP_NO_ASSET_MAP;
      if (is_told || (has_no_map && package.Has(Cairn::PP_ASSET_MAP_UNREADABLE))) continue;
      Finding& finding = findings.emplace_back();
      finding.Level = Severity::Warning;
      finding.Message =
          has_no_map ? "The asset map is missing or damaged; the files were found without it." : problem.Reason();
      finding.AssetType = "package";
      finding.File = package.Folder;
      finding.Advice = "Other equipment may refuse the package: copy it again from its source.";
    }
  }
}

void AddShowFindings(const ShowOutline& outline, std::vector<Finding>& findings) {
  for (const std::string& problem : outline.Problems()) {
    Finding& finding = findings.emplace_back();
    finding.Message = problem;
    finding.AssetType = "show playlist";
    finding.Advice = "Make the show playlist anew.";
  }
  for (const std::string& uri : outline.MissingShows()) {
    Finding& finding = findings.emplace_back();
    finding.Level = Severity::Missing;
    finding.Message = "No store has the show playlist " + uri + ", which the show contains.";
    finding.AssetType = "show playlist";
    finding.Advice = "Copy the show playlist beside the show, or name its folder with --store.";
  }
}

Finding UnreadableFinding(const Cairn::UnreadableEntry& entry) {
  Finding finding;
  finding.Level = Severity::Warning;
  finding.Message = "This cannot be opened, so that nobody knows what is in it: " + entry.Reason + '.';
  finding.File = entry.Path;
  finding.Advice = AllowReading;
  return finding;
}

// First, since what is said to be missing below may lie in them.
void AddUnreadable(const Cairn::AssetStore& store, std::vector<Finding>& findings) {
  std::vector<Finding> added;
  for (const Cairn::UnreadableEntry& entry : store.Unreadable()) {
    const auto tells = [&](const Finding& finding) { return finding.File == entry.Path; };
    if (std::any_of(findings.begin(), findings.end(), tells)) continue;
    added.push_back(UnreadableFinding(entry));
  }
  findings.insert(findings.begin(), added.begin(), added.end());
}

}  // namespace

std::vector<Finding> FindingsOf(const ShowOutline& outline) {
  std::vector<Finding> findings;
  FindingMemory memory;
  AddShowFindings(outline, findings);
  const OutlineComposition* previous = nullptr;
  ProgressBar bar("Checking", ProgressUnit::Compositions);
  size_t done = 0;
  for (const OutlineComposition& composition : outline.Compositions()) {
    const size_t before = findings.size();
    FindInComposition(composition, outline.Store(), memory, findings);
    bar.Update(++done, outline.Compositions().size());
    const bool plays = std::all_of(findings.begin() + static_cast<std::ptrdiff_t>(before), findings.end(),
                                   [](const Finding& finding) { return finding.Level == Severity::Warning; });
    if (!plays) continue;
    if (previous != nullptr && !(previous->EditRate == composition.EditRate)) {
      Finding& finding = findings.emplace_back();
      finding.Level = Severity::Warning;
      finding.Message = "The edit rate changes from the composition before: some projectors blank the screen.";
      finding.Composition = CompositionName(composition);
      finding.Expected = RateText(previous->EditRate);
      finding.Found = RateText(composition.EditRate);
    }
    previous = &composition;
  }
  AddPackageFindings(outline, memory, findings);
  AddUnreadable(outline.Store(), findings);
  return findings;
}

}  // namespace Tool
