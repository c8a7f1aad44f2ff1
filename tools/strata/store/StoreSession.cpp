// SPDX-License-Identifier: BSD-3-Clause
#include "StoreSession.h"

#include "show/IndexFile.h"
#include "show/Inputs.h"
#include "show/StoreProgress.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"

#include <Ferro/UUID.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace Tool {

namespace fs = std::filesystem;

ExitCode StoreTrouble(ExitCode code, const std::string& text) {
  TellError(text);
  return code;
}

std::string StorePath(const std::string& name) {
  std::error_code error;
  fs::path path = fs::canonical(name, error);
  if (error) path = fs::absolute(name, error).lexically_normal();
  return path.has_filename() ? path.string() : path.parent_path().string();
}

bool IsInside(const std::string& path, const std::string& folder) {
  return path == folder || path.starts_with(folder == "/" ? folder : folder + '/');
}

ExitCode StoreSelection::Select(const std::vector<std::string>& names, const Cairn::AssetStore& store) {
  const std::vector<Cairn::AssetRecord> assets = store.Assets();
  const std::vector<std::string> folders = store.Folders();
  for (const std::string& name : names) {
    const auto id = IdentifierOf(name);
    const std::string path = StorePath(name);
    const bool is_known = id ? !store.FindAsset(*id).empty()
                             : std::find(folders.begin(), folders.end(), path) != folders.end() ||
                                   std::any_of(assets.begin(), assets.end(), [&](const Cairn::AssetRecord& record) {
                                     return IsInside(record.Info.RealFilename, path) || IsInside(record.Package, path);
                                   });
    if (!is_known) return StoreTrouble(ExitCode::Usage, name + ": the index knows no such folder and no such asset.");
    if (id)
      m_IDs.insert(*id);
    else
      m_Folders.push_back(path);
  }
  return ExitCode::Fine;
}

bool StoreSelection::HasFolder(const std::string& folder) const {
  return All() || std::any_of(m_Folders.begin(), m_Folders.end(),
                              [&](const std::string& selected) { return IsInside(folder, selected); });
}

bool StoreSelection::HasAsset(const Cairn::AssetRecord& record) const {
  const std::string& file = record.Info.RealFilename;
  return HasFolder(file.empty() ? record.Package : file) || m_IDs.contains(record.Info.ID);
}

std::vector<Cairn::AssetRecord> StoreSelection::Assets(const Cairn::AssetStore& store) const {
  std::vector<Cairn::AssetRecord> assets = store.Assets();
  std::erase_if(assets, [&](const Cairn::AssetRecord& record) { return !HasAsset(record); });
  return assets;
}

ExitCode StoreSession::Open(const StoreOptions& options, bool may_create) {
  m_IndexFile = options.Index.empty() ? DefaultIndexFile() : options.Index;
  if (m_IndexFile.empty())
    return StoreTrouble(ExitCode::Usage, "there is no home folder: name the asset index with --index.");
  std::error_code error;
  if (!may_create && !fs::exists(m_IndexFile, error))
    return StoreTrouble(ExitCode::Usage, m_IndexFile + ": there is no asset index yet: `strata store add` makes it.");
  if (options.Index.empty()) fs::create_directories(fs::path(m_IndexFile).parent_path(), error);
  std::string problem;
  return OpenIndexFile(m_IndexFile, m_Store, problem, 1000 * options.BusyTimeout)
             ? ExitCode::Fine
             : StoreTrouble(ExitCode::NotPlayable, problem);
}

ExitCode StoreSession::Refresh() {
  if (RescanFolders(m_Store) == Ferro::RESULT_CANCELLED || Interrupt::Requested()) return ExitCode::Interrupted;
  return CheckIndex();
}

ExitCode StoreSession::CheckIndex() {
  for (const Ferro::LogEntry& message : m_Log.Take())
    if (message.Level == Ferro::LogLevel::Warning) m_Warnings.push_back(message.Message);
  const std::string problem = IndexFailure(m_Store, m_IndexFile);
  return problem.empty() ? ExitCode::Fine : StoreTrouble(ExitCode::NotPlayable, problem);
}

}  // namespace Tool
