// SPDX-License-Identifier: BSD-3-Clause
#include "StoreChanges.h"

#include "show/Inputs.h"
#include "show/StoreProgress.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ReasonText.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace Tool {

namespace {

namespace fs = std::filesystem;

/// The folder of the index that holds a path; empty where there is none.
std::string FolderAround(const Cairn::AssetStore& store, const std::string& path) {
  for (const std::string& folder : store.Folders())
    if (IsInside(path, folder)) return folder;
  return "";
}

void TellAdded(const Cairn::AssetStore& store, const std::string& path) {
  size_t assets = 0;
  size_t unusable = 0;
  for (const Cairn::AssetRecord& record : store.Assets()) {
    if (!IsInside(record.Info.RealFilename.empty() ? record.Package : record.Info.RealFilename, path)) continue;
    ++assets;
    unusable += (record.Problems & Cairn::FatalAssetProblems) != 0 ? 1 : 0;
  }
  const std::string around = FolderAround(store, path);
  std::printf("Added %s: %zu asset%s%s\n", path.c_str(), assets, assets == 1 ? "" : "s",
              around == path || around.empty() ? "." : (", as a part of " + around + ".").c_str());
  if (unusable > 0)
    std::printf("%zu of them cannot be used: `strata store verify '%s'` tells why.\n", unusable, path.c_str());
  std::fflush(stdout);
}

ExitCode AddFolder(StoreSession& session, const std::string& folder) {
  const Cairn::Result_t result = ScanFolder(session.Store(), folder);
  if (result == Ferro::RESULT_CANCELLED)
    return StoreTrouble(ExitCode::Interrupted, "interrupted; of " + folder + " the index knows what it knew before.");
  if (const ExitCode code = session.CheckIndex(); code != ExitCode::Fine) return code;
  return result.Success()
             ? ExitCode::Fine
             : StoreTrouble(ExitCode::NotPlayable, folder + ": it cannot be scanned: " + ReasonText(result));
}

ExitCode AddFile(StoreSession& session, const std::string& path) {
  Cairn::AssetInfo info;
  const Cairn::Result_t result = session.Store().RegisterAsset(path, Cairn::SHA1(), info);
  if (const ExitCode code = session.CheckIndex(); code != ExitCode::Fine) return code;
  if (result == Cairn::RESULT_CN_VALUE)
    return StoreTrouble(ExitCode::Usage,
                        path + ": this file says no identifier of its own; add the folder of its package.");
  return result.Success() ? ExitCode::Fine
                          : StoreTrouble(ExitCode::NotPlayable, path + ": it cannot be read: " + ReasonText(result));
}

ExitCode AddName(StoreSession& session, const std::string& name) {
  std::error_code error;
  if (!fs::exists(name, error)) return StoreTrouble(ExitCode::Usage, name + ": there is no such file or folder.");
  const std::string path = StorePath(name);
  ExitCode code = ExitCode::Fine;
  if (fs::is_directory(path, error))
    code = AddFolder(session, path);
  else if (const std::string around = FolderAround(session.Store(), path); !around.empty())
    code = AddFolder(session, around);
  else
    code = AddFile(session, path);
  if (code == ExitCode::Fine) TellAdded(session.Store(), path);
  return code;
}

/// The assets of an index that are the one named, or lie where it says.
std::vector<Cairn::AssetRecord> AssetsNamed(const Cairn::AssetStore& store, const std::string& name) {
  if (const auto id = IdentifierOf(name)) return store.FindAsset(*id);
  std::vector<Cairn::AssetRecord> assets = store.Assets();
  std::erase_if(assets, [path = StorePath(name)](const auto& record) { return record.Info.RealFilename != path; });
  return assets;
}

ExitCode ForgetName(StoreSession& session, const std::string& name) {
  Cairn::AssetStore& store = session.Store();
  Cairn::Result_t result = store.Forget(StorePath(name));
  const std::vector<Cairn::AssetRecord> assets = AssetsNamed(store, name);
  if (result == Ferro::RESULT_NOT_FOUND && !assets.empty()) result = store.ForgetAsset(assets.front().Info.ID);
  if (const ExitCode code = session.CheckIndex(); code != ExitCode::Fine) return code;
  if (result.Success()) {
    std::printf("Forgot %s. Its files are as they were.\n", name.c_str());
    return ExitCode::Fine;
  }
  const std::string path = assets.empty() ? StorePath(name) : assets.front().Package;
  const std::string around = FolderAround(store, path);
  if (around.empty())
    return StoreTrouble(ExitCode::Usage, name + ": the index knows no such folder and no such asset.");
  return StoreTrouble(ExitCode::Usage, name + ": it lies in the folder " + around +
                                           ", which is known as a whole: forget that folder, or remove the files.");
}

ExitCode ForEachName(const StoreOptions& options, bool may_create,
                     ExitCode (*work)(StoreSession&, const std::string&)) {
  StoreSession session;
  ExitCode code = session.Open(options, may_create);
  if (code != ExitCode::Fine) return code;
  for (const std::string& name : options.Names) {
    if (Interrupt::Requested()) return StoreTrouble(ExitCode::Interrupted, "interrupted before " + name + '.');
    if (code = work(session, name); code != ExitCode::Fine) break;
  }
  for (const std::string& warning : session.Warnings()) TellWarning(warning);
  return code;
}

}  // namespace

ExitCode StoreAdd(const StoreOptions& options) {
  return ForEachName(options, true, AddName);
}

ExitCode StoreForget(const StoreOptions& options) {
  return ForEachName(options, false, ForgetName);
}

}  // namespace Tool
