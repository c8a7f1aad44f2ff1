// SPDX-License-Identifier: BSD-3-Clause
#include "StoreVerify.h"

#include "StoreReports.h"
#include "findings/AssetFindings.h"
#include "findings/FindingReport.h"
#include "show/AssetUses.h"
#include "show/Paths.h"
#include "show/StoreProgress.h"

#include <algorithm>
#include <cstdio>

namespace Tool {

namespace {

/// Finds what is wrong with assets, and says which composition a missing one is of.
class AssetCheck {
 public:
  explicit AssetCheck(const Cairn::AssetStore& store) : m_Uses(store) {}

  void Find(const Cairn::AssetRecord& record, FindingList& findings) {
    for (Finding& finding : FindingsOfAsset(record, m_Paths)) {
      findings.push_back(std::move(finding));
      if (record.Info.RealFilename.empty()) TakeUse(findings.back());
    }
  }

 private:
  void TakeUse(Finding& finding) {
    const AssetUse* use = m_Uses.Find(finding.Place.Asset);
    if (use == nullptr) return;
    finding.Place.Composition = use->CompositionID;
    finding.Place.CompositionTitle = use->Composition;
    finding.Place.Reel = use->Reel;
    if (use->Kind) finding.Place.Use = UseOf(*use->Kind);
  }

  MappedPaths m_Paths;
  AssetUses m_Uses;
};

/// Folders that are not there; what was in them is not told one by one.
std::vector<std::string> AbsentFolders(const Cairn::AssetStore& store) {
  std::vector<std::string> folders = store.Folders();
  std::erase_if(folders, IsFolder);
  return folders;
}

FindingList FindInStore(const Cairn::AssetStore& store, const StoreSelection& selection) {
  FindingList findings;
  const std::vector<std::string> absent = AbsentFolders(store);
  const auto is_absent = [&](const std::string& path) {
    return std::any_of(absent.begin(), absent.end(), [&](const auto& folder) { return IsInside(path, folder); });
  };
  for (const std::string& folder : absent)
    if (selection.HasFolder(folder)) findings.emplace_back(FindingID::StoreFolderMissing).Place = PlaceOf(folder);
  for (const Cairn::PackageRecord& package : store.Packages()) {
    if (!selection.HasFolder(package.Folder) || is_absent(package.Folder)) continue;
    for (const Finding& finding : FindingsOfPackage(package)) findings.push_back(finding);
  }
  AssetCheck check(store);
  for (const Cairn::AssetRecord& record : selection.Assets(store))
    if (!is_absent(record.Package) || !selection.HasFolder(record.Package)) check.Find(record, findings);
  for (const Cairn::UnreadableEntry& entry : store.Unreadable()) {
    const auto tells = [&](const Finding& finding) { return PathOf(finding.Place) == entry.Path; };
    if (selection.HasFolder(entry.Path) && std::none_of(findings.begin(), findings.end(), tells))
      findings.push_back(FindingOfUnreadable(entry));
  }
  return findings;
}

/// Interrupted when the user stopped it.
ExitCode ComputeDigests(const StoreOptions& options, const StoreSelection& selection, StoreSession& session) {
  Cairn::UUIDList ids;
  for (const Cairn::AssetRecord& record : selection.Assets(session.Store())) ids.push_back(record.Info.ID);
  const Cairn::Result_t result = VerifyDigests(session.Store(), ids, options.Threads);
  return result == Ferro::RESULT_CANCELLED ? ExitCode::Interrupted : session.CheckIndex();
}

void Count(const Cairn::AssetRecord& record, StoreVerification& verification) {
  ++verification.Assets;
  verification.Bytes += record.Info.FileSize;
  switch (DigestStateOf(record)) {
    case DigestState::Verified:
      ++verification.Digests.Verified;
      break;
    case DigestState::Different:
      ++verification.Digests.Different;
      break;
    case DigestState::Unknown:
      ++verification.Digests.Unknown;
      break;
    case DigestState::Unlisted:
      ++verification.Digests.Unlisted;
      break;
  }
}

}  // namespace

ExitCode VerifyStore(const StoreOptions& options) {
  StoreSession session;
  if (const ExitCode code = session.Open(options, false); code != ExitCode::Fine) return code;
  StoreSelection selection;
  if (const ExitCode code = selection.Select(options.Names, session.Store()); code != ExitCode::Fine) return code;
  StoreVerification verification;
  verification.Index = session.IndexFile();
  verification.Hash = options.Hash;
  verification.Code = session.Refresh();
  if (verification.Code == ExitCode::Fine && options.Hash)
    verification.Code = ComputeDigests(options, selection, session);
  if (verification.Code == ExitCode::Fine) {
    verification.Findings = FindInStore(session.Store(), selection);
    verification.Code = ExitCodeFor(verification.Findings);
  } else if (verification.Code != ExitCode::Interrupted) {
    return verification.Code;
  }
  for (const Cairn::AssetRecord& record : selection.Assets(session.Store())) Count(record, verification);
  if (const ExitCode trouble = session.CheckIndex(); trouble != ExitCode::Fine) return trouble;
  if (verification.Code == ExitCode::Interrupted && options.AsJson)
    static_cast<void>(StoreTrouble(verification.Code, "interrupted"));  // else the verdict says so
  std::fputs((options.AsJson ? StoreVerifyJson(verification) : StoreVerifyText(verification)).c_str(), stdout);
  return verification.Code;
}

}  // namespace Tool
