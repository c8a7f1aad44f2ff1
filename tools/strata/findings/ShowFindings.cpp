// SPDX-License-Identifier: BSD-3-Clause
#include "ShowFindings.h"

#include "CompositionFindings.h"
#include "terminal/ProgressBar.h"
#include "terminal/TextForms.h"

#include <algorithm>

namespace {

/// The folders of the packages that the show's files lie in.
std::set<std::string> packages_of(const ShowOutline& outline) {
  std::set<std::string> packages;
  for (const OutlineComposition& composition : outline.Compositions()) {
    if (composition.Found) packages.insert(composition.Found->Package);
    for (const OutlineReel& reel : composition.Reels)
      for (const OutlineAsset& asset : reel.Assets)
        if (asset.Found) packages.insert(asset.Found->Package);
  }
  return packages;
}

bool tells_of(const std::vector<std::string>& findings, const char* what) {
  return std::any_of(findings.begin(), findings.end(),
                     [&](const std::string& text) { return text.find(what) != std::string::npos; });
}

void add_package_findings(const ShowOutline& outline, const FindingMemory& memory, std::vector<Finding>& findings) {
  const std::set<std::string> packages = packages_of(outline);
  for (const Cairn::PackageRecord& package : outline.Store().Packages()) {
    if (!packages.contains(package.Folder)) continue;
    for (const std::string& text : package.Findings) {
      const bool is_told = memory.UnlistedPackages.contains(package.Folder) && text.find("packing list") != text.npos;
      const bool has_no_map = text == "The package has no asset map.";
      if (is_told || (has_no_map && tells_of(package.Findings, "asset map could not be understood"))) continue;
      Finding& finding = findings.emplace_back();
      finding.Level = Severity::Warning;
      finding.Message = has_no_map ? "The asset map is missing or damaged; the files were found without it." : text;
      finding.AssetType = "package";
      finding.File = package.Folder;
      finding.Advice = "Other equipment may refuse the package: copy it again from its source.";
    }
  }
}

void add_show_findings(const ShowOutline& outline, std::vector<Finding>& findings) {
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

Finding unopened_finding(const Cairn::UnopenedEntry& entry) {
  Finding finding;
  finding.Level = Severity::Warning;
  finding.Message = "This cannot be opened, so that nobody knows what is in it: " + entry.Reason + '.';
  finding.File = entry.Path;
  finding.Advice = AllowReading;
  return finding;
}

// First, since what is said to be missing below may lie in them.
void add_unopened(const Cairn::AssetStore& store, std::vector<Finding>& findings) {
  std::vector<Finding> added;
  for (const Cairn::UnopenedEntry& entry : store.Unopened()) {
    const auto tells = [&](const Finding& finding) { return finding.File == entry.Path; };
    if (std::any_of(findings.begin(), findings.end(), tells)) continue;
    added.push_back(unopened_finding(entry));
  }
  findings.insert(findings.begin(), added.begin(), added.end());
}

}  // namespace

std::vector<Finding> FindingsOf(const ShowOutline& outline) {
  std::vector<Finding> findings;
  FindingMemory memory;
  add_show_findings(outline, findings);
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
  add_package_findings(outline, memory, findings);
  add_unopened(outline.Store(), findings);
  return findings;
}
