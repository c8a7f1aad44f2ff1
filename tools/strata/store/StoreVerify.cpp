// SPDX-License-Identifier: BSD-3-Clause
#include "StoreVerify.h"

#include "StoreList.h"
#include "findings/Finding.h"
#include "terminal/Interrupt.h"
#include "terminal/ProgressBar.h"
#include "terminal/Report.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <filesystem>

namespace Tool {

namespace {

constexpr char CopyAgain[] = "Copy the package again from its source.";
constexpr char Connect[] = "Connect its disk, or forget the folder with `strata store forget`.";

Severity SeverityOf(Ferro::ui32_t problem) {
  if (problem == Cairn::AP_MISSING_FILE) return Severity::Missing;
  return (problem & Cairn::FatalAssetProblems) != 0 ? Severity::Error : Severity::Warning;
}

/// Of an asset, with nothing yet said.
Finding About(const Cairn::AssetRecord& record, Severity level) {
  Finding finding;
  finding.Level = level;
  if (!record.Info.RealFilename.empty()) finding.AssetType = StoreKindName(record);
  finding.AssetID = record.Info.ID.EncodeString();
  finding.File = record.Info.RealFilename.empty() ? record.Package : record.Info.RealFilename;
  if (level != Severity::Warning) finding.Advice = record.OpenFailure.empty() ? CopyAgain : AllowReading;
  return finding;
}

void FindInAsset(const Cairn::AssetRecord& record, bool hash, std::vector<Finding>& findings) {
  for (Ferro::ui32_t problem = 1; problem != 0 && problem <= record.Problems; problem <<= 1) {
    if ((record.Problems & problem) == 0) continue;
    Cairn::AssetRecord alone;
    alone.Problems = problem;
    alone.OpenFailure = record.OpenFailure;
    Finding finding = About(record, SeverityOf(problem));
    for (const std::string& reason : alone.Reasons()) finding.Message += reason;
    if (problem == Cairn::AP_WRONG_SIZE && record.HasListedSize) {
      finding.Expected = std::to_string(record.ListedSize) + " bytes";
      finding.Found = std::to_string(record.Info.FileSize) + " bytes";
    }
    findings.push_back(finding);
  }
  const bool usable = (record.Problems & Cairn::FatalAssetProblems) == 0;
  if (!hash || !usable || record.DigestVerified || !record.Info.Digest.HasValue()) return;
  findings.push_back(About(record, Severity::Error));
  findings.back().Message = "The file could not be read to its end.";
}

/// Folders that are not there; what was in them is not told one by one.
std::vector<std::string> AbsentFolders(const Cairn::AssetStore& store) {
  std::vector<std::string> folders = store.Folders();
  std::error_code error;
  std::erase_if(folders, [&](const std::string& folder) { return std::filesystem::is_directory(folder, error); });
  return folders;
}

/// What the store warned of and no finding tells.
void AddWarnings(const StoreSession& session, std::vector<Finding>& findings) {
  std::vector<Finding> added;
  for (const std::string& warning : session.Warnings()) {
    const bool is_told = std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
      return !finding.File.empty() && warning.starts_with(finding.File + ": ");
    });
    if (is_told) continue;
    added.emplace_back().Level = Severity::Warning;
    added.back().Message = warning;
  }
  findings.insert(findings.end(), added.begin(), added.end());
}

std::vector<Finding> FindingsOf(const Cairn::AssetStore& store, const StoreSelection& selection, bool hash) {
  std::vector<Finding> findings;
  const std::vector<std::string> absent = AbsentFolders(store);
  const auto is_absent = [&](const std::string& path) {
    return std::any_of(absent.begin(), absent.end(), [&](const auto& folder) { return IsInside(path, folder); });
  };
  for (const std::string& folder : absent) {
    if (!selection.HasFolder(folder)) continue;
    Finding& finding = findings.emplace_back();
    finding.Level = Severity::Missing;
    finding.Message = "The folder is not there, nor what was in it.";
    finding.File = folder;
    finding.Advice = Connect;
  }
  for (const Cairn::PackageRecord& package : store.Packages())
    for (const Cairn::PackageFinding& problem : package.Findings) {
      if (!selection.HasFolder(package.Folder) || is_absent(package.Folder)) continue;
      Finding& finding = findings.emplace_back();
      finding.Level = Severity::Warning;
      finding.Message = problem.Reason();
      finding.AssetType = "package";
      finding.File = package.Folder;
    }
  for (const Cairn::AssetRecord& record : selection.Assets(store))
    if (!is_absent(record.Package) || !selection.HasFolder(record.Package)) FindInAsset(record, hash, findings);
  return findings;
}

/// Interrupted when the user stopped it.
ExitCode ComputeDigests(const StoreOptions& options, const StoreSelection& selection, StoreSession& session) {
  Cairn::UUIDList ids;
  for (const Cairn::AssetRecord& record : selection.Assets(session.Store())) ids.push_back(record.Info.ID);
  if (ids.empty()) return ExitCode::Fine;
  ProgressBar bar("Verifying");
  const auto progress = [&](const Cairn::VerifyProgress& now) {
    bar.Update(now.BytesDone, now.BytesTotal);
    return !Interrupt::Requested();
  };
  const Cairn::Result_t result = session.Store().VerifyDigests(ids, options.Threads, progress);
  return result == Ferro::RESULT_CANCELLED ? ExitCode::Interrupted : session.CheckIndex();
}

std::string VerdictText(const Json& report) {
  const size_t assets = report["assets"];
  if (report["interrupted"].get<bool>())
    return "Interrupted: what was verified is kept, and the next time it goes on from there.";
  if (report["exit_code"] == static_cast<int>(ExitCode::Fine)) {
    std::string text = std::to_string(assets) + (assets == 1 ? " asset, " : " assets, ") +
                       BytesText(report["bytes"].get<Ferro::ui64_t>()) + ": all files are there";
    if (!report["hash"].get<bool>()) return text + "; with --hash their digests are verified too.";
    const size_t unlisted = report["digests"]["unlisted"];
    text += ", and as their packing lists say";
    return unlisted == 0 ? text + "." : text + "; " + std::to_string(unlisted) + " without a listed digest.";
  }
  size_t bad = 0;
  for (const Json& finding : report["findings"]) bad += finding["severity"] != "warning" ? 1 : 0;
  return std::to_string(bad) + (bad == 1 ? " thing is" : " things are") + " missing or broken.";
}

Json MakeReport(const StoreOptions& options, const StoreSession& session, const std::vector<Cairn::AssetRecord>& assets,
                const std::vector<Finding>& findings, ExitCode code) {
  Json report = NewReport("store-verify");
  report["index"] = session.IndexFile();
  report["exit_code"] = static_cast<int>(code);
  report["interrupted"] = code == ExitCode::Interrupted;
  report["hash"] = options.Hash;
  report["assets"] = assets.size();
  Ferro::ui64_t bytes = 0;
  Json digests{{"verified", 0}, {"different", 0}, {"unknown", 0}, {"unlisted", 0}};
  for (const Cairn::AssetRecord& record : assets) {
    bytes += record.Info.FileSize;
    Json& count = digests[DigestState(record)];
    count = count.get<size_t>() + 1;
  }
  report["bytes"] = bytes;
  report["digests"] = digests;
  report["findings"] = Json::array();
  for (const Finding& finding : findings) report["findings"].push_back(FindingToJson(finding));
  report["verdict"] = VerdictText(report);
  return report;
}

std::string Render(const Json& report) {
  std::string text;
  for (const Json& finding : report["findings"]) text += FindingText(finding);
  return text + report["verdict"].get<std::string>() + '\n';
}

}  // namespace

ExitCode StoreVerify(const StoreOptions& options) {
  StoreSession session;
  if (const ExitCode code = session.Open(options, false); code != ExitCode::Fine) return code;
  StoreSelection selection;
  if (std::string unknown; !selection.Select(options.Names, session.Store(), unknown))
    return StoreTrouble(ExitCode::Usage, unknown + ": the index knows no such folder and no such asset.");
  ExitCode code = session.Refresh();
  if (code == ExitCode::Fine && options.Hash) code = ComputeDigests(options, selection, session);
  if (code != ExitCode::Fine && code != ExitCode::Interrupted) return code;

  std::vector<Finding> findings;
  if (code == ExitCode::Fine) {
    findings = FindingsOf(session.Store(), selection, options.Hash);
    if (selection.All()) AddWarnings(session, findings);
    code = ExitCodeFor(findings);
  }
  const std::vector<Cairn::AssetRecord> assets = selection.Assets(session.Store());
  if (const ExitCode trouble = session.CheckIndex(); trouble != ExitCode::Fine) return trouble;
  if (code == ExitCode::Interrupted && options.AsJson)
    static_cast<void>(StoreTrouble(code, "interrupted"));  // else the verdict says so
  PrintReport(MakeReport(options, session, assets, findings, code), options.AsJson, Render);
  return code;
}

}  // namespace Tool
