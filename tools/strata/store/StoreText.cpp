// SPDX-License-Identifier: BSD-3-Clause
#include "StoreReports.h"
#include "StoreSession.h"
#include "findings/FindingReport.h"
#include "show/InfoKinds.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <cstdio>

namespace Tool {

namespace {

std::string Counted(size_t count, const std::string& thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

std::string KindName(const Cairn::AssetRecord& record) {
  return record.Info.RealFilename.empty() ? "missing file" : FileKindName(record.Info.FileType);
}

std::string AssetText(const ListedAsset& asset) {
  const Cairn::AssetRecord& record = asset.Record;
  char start[96];
  std::snprintf(start, sizeof start, "  %-28s %8s  %s  ", KindName(record).c_str(),
                BytesText(record.Info.FileSize).c_str(), record.Info.ID.EncodeString().c_str());
  const bool is_inside = IsInside(asset.File, record.Package) && asset.File != record.Package;
  std::string line = start + DisplayText(is_inside ? asset.File.substr(record.Package.size() + 1) : asset.File);
  if (!asset.Title.empty()) line += "  \"" + DisplayText(asset.Title) + '"';
  if (!asset.Description.empty()) line += "  " + asset.Description;
  line += '\n';
  for (const Finding& finding : asset.Findings) line += "      " + DisplayText(SentenceOf(finding)) + '\n';
  return line;
}

std::string PackageText(const StoreList& list, const std::string& folder) {
  std::string text = '\n' + DisplayText(folder) + '\n';
  for (const ListedPackage& package : list.Packages)
    if (package.Package.Folder == folder)
      for (const Finding& finding : package.Findings) text += "  " + DisplayText(SentenceOf(finding)) + '\n';
  return text;
}

}  // namespace

std::string StoreListText(const StoreList& list) {
  std::string text = "Index " + DisplayText(list.Index) + '\n';
  for (const ListedFolder& folder : list.Folders)
    text += "Folder " + DisplayText(folder.Folder) + (folder.IsPresent ? "\n" : "  (not there now)\n");
  const std::string* package = nullptr;
  for (const ListedAsset& asset : list.Assets) {
    if (package == nullptr || *package != asset.Record.Package) {
      package = &asset.Record.Package;
      text += PackageText(list, *package);
    }
    text += AssetText(asset);
  }
  if (!list.Assets.empty()) text += '\n';
  text += Counted(list.Assets.size(), "asset") + ", " + BytesText(list.Bytes);
  if (list.WithProblems > 0)
    text += "; " + std::to_string(list.WithProblems) + " with problems: `strata store verify` tells what to do";
  return text + ".\n";
}

std::string StoreVerdict(const StoreVerification& verification) {
  if (verification.Code == ExitCode::Interrupted)
    return "Interrupted: what was verified is kept, and the next time it goes on from there.";
  if (verification.Code != ExitCode::Fine) {
    const auto bad = std::count_if(verification.Findings.begin(), verification.Findings.end(),
                                   [](const Finding& finding) { return SeverityOf(finding) > Severity::Warning; });
    return std::to_string(bad) + (bad == 1 ? " thing is" : " things are") + " missing or broken.";
  }
  const std::string text =
      Counted(verification.Assets, "asset") + ", " + BytesText(verification.Bytes) + ": all files are there";
  if (!verification.Hash) return text + "; with --hash their digests are verified too.";
  const size_t unlisted = verification.Digests.Unlisted;
  return text + ", and as their packing lists say" +
         (unlisted == 0 ? "." : "; " + std::to_string(unlisted) + " without a listed digest.");
}

std::string StoreVerifyText(const StoreVerification& verification) {
  std::string text;
  for (const Finding& finding : verification.Findings) text += FindingText(finding, stdout);
  return text + StoreVerdict(verification) + '\n';
}

}  // namespace Tool
