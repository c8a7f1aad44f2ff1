// SPDX-License-Identifier: BSD-3-Clause
#include "StoreList.h"

#include "StoreReports.h"
#include "findings/AssetFindings.h"
#include "show/AssetUses.h"
#include "show/Description.h"
#include "show/DocumentTitle.h"
#include "show/InfoKinds.h"
#include "show/Paths.h"
#include "terminal/Messages.h"

#include <Cairn/InitObjectWithFile.h>

#include <cstdio>

namespace Tool {

namespace {

std::string DescriptionOf(const Cairn::AssetInfo& info) {
  if (info.RealFilename.empty()) return "";
  if (info.FileType != Cairn::FT_CPL)
    return IsMXF(info.FileType) ? Describe(ReadTrackFileFacts(info.RealFilename, info.FileType)) : "";
  Cairn::CompositionPlaylist composition;
  return Cairn::InitObjectWithFile(composition, info.RealFilename).Success() ? Describe(TraitsOf(composition)) : "";
}

std::string UseOf(const Cairn::UUID& id, AssetUses& uses) {
  const AssetUse* use = uses.Find(id);
  return use == nullptr ? "" : use->Text();
}

ListedAsset ListAsset(const Cairn::AssetRecord& record, MappedPaths& paths, AssetUses& uses) {
  ListedAsset asset;
  asset.Record = record;
  asset.File = record.Info.RealFilename;
  if (asset.File.empty()) asset.File = paths.Of(record);
  asset.Title = record.Info.RealFilename.empty() ? UseOf(record.Info.ID, uses)
                                                 : DocumentTitle(record.Info.FileType, record.Info.RealFilename);
  asset.Description = DescriptionOf(record.Info);
  asset.Findings = FindingsOfAsset(record, paths);
  return asset;
}

StoreList MakeList(const StoreSession& session, const Cairn::AssetStore& store, const StoreSelection& selection) {
  StoreList list;
  list.Index = session.IndexFile();
  for (const std::string& folder : store.Folders())
    if (selection.HasFolder(folder)) list.Folders.push_back({folder, IsFolder(folder)});
  for (const Cairn::PackageRecord& package : store.Packages())
    if (selection.HasFolder(package.Folder)) list.Packages.push_back({package, FindingsOfPackage(package)});
  MappedPaths paths;
  AssetUses uses(store);
  for (const Cairn::AssetRecord& record : selection.Assets(store)) {
    list.Assets.push_back(ListAsset(record, paths, uses));
    list.Bytes += record.Info.FileSize;
    list.WithProblems += record.Problems != 0 ? 1 : 0;
  }
  return list;
}

}  // namespace

DigestState DigestStateOf(const Cairn::AssetRecord& record) {
  if (!record.Info.Digest.HasValue()) return DigestState::Unlisted;
  if ((record.Problems & Cairn::AP_DIGEST_MISMATCH) != 0) return DigestState::Different;
  return record.DigestVerified ? DigestState::Verified : DigestState::Unknown;
}

ExitCode ListStore(const StoreOptions& options) {
  StoreSession session;
  if (const ExitCode code = session.Open(options, false); code != ExitCode::Fine) return code;
  StoreSelection selection;
  if (const ExitCode code = selection.Select(options.Names, session.Store()); code != ExitCode::Fine) return code;
  if (const ExitCode code = options.Refresh ? session.Refresh() : ExitCode::Fine; code != ExitCode::Fine)
    return code == ExitCode::Interrupted ? StoreTrouble(code, "interrupted") : code;
  const StoreList list = MakeList(session, session.Store(), selection);
  if (const ExitCode code = session.CheckIndex(); code != ExitCode::Fine) return code;
  for (const std::string& warning : session.Warnings()) TellWarning(warning);
  std::fputs((options.AsJson ? StoreListJson(list) : StoreListText(list)).c_str(), stdout);
  return ExitCode::Fine;
}

}  // namespace Tool
