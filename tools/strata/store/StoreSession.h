// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/ExitCode.h"
#include "terminal/LogView.h"

#include <Cairn/AssetStore.h>

#include <set>
#include <string>
#include <vector>

namespace Tool {

/// What the user gave to a command about the asset index.
struct StoreOptions {
  std::string Index;               ///< the index's file; empty: the user's own
  Ferro::ui32_t BusyTimeout = 30;  ///< seconds to wait for another program that keeps the index locked
  std::vector<std::string> Names;  ///< folders, files, identifiers
  bool Refresh = false;            ///< list: look for changes first
  bool Hash = false;               ///< verify: digests too
  Ferro::ui32_t Threads = 0;       ///< verify: files read at once; 0: chosen by the processor
  bool AsJson = false;
};

/// The folders and assets of an index that the user named.
class StoreSelection {
 public:
  /// All there is.
  StoreSelection() = default;
  /// @return Usage, told on standard error, for a name that means nothing in the index.
  [[nodiscard]] ExitCode Select(const std::vector<std::string>& names, const Cairn::AssetStore& store);

  [[nodiscard]] bool All() const { return m_IDs.empty() && m_Folders.empty(); }
  [[nodiscard]] bool HasFolder(const std::string& folder) const;
  [[nodiscard]] bool HasAsset(const Cairn::AssetRecord& record) const;
  [[nodiscard]] std::vector<Cairn::AssetRecord> Assets(const Cairn::AssetStore& store) const;

 private:
  std::set<Cairn::UUID> m_IDs;
  std::vector<std::string> m_Folders;
};

/// Work on an asset index. Tells on standard error what goes wrong.
class StoreSession {
 public:
  /// @param may_create  whether an index that is not there is made.
  [[nodiscard]] ExitCode Open(const StoreOptions& options, bool may_create);
  [[nodiscard]] Cairn::AssetStore& Store() { return m_Store; }
  [[nodiscard]] const std::string& IndexFile() const { return m_IndexFile; }

  /// Looks for changes in all folders. Interrupted when the user stopped it.
  [[nodiscard]] ExitCode Refresh();
  /// Shows a failure of the index, if there was one since it was opened. NotPlayable then, else Fine.
  [[nodiscard]] ExitCode CheckIndex();
  /// What the store warned of before the last CheckIndex, such as files that could not be read.
  [[nodiscard]] const std::vector<std::string>& Warnings() const { return m_Warnings; }

 private:
  QuietLog m_Log;
  Cairn::AssetStore m_Store;
  std::string m_IndexFile;
  std::vector<std::string> m_Warnings;
};

/// Shows one line of trouble, and hands the code back.
ExitCode StoreTrouble(ExitCode code, const std::string& text);

/// The real path of what is there; of what is not, the path as it stands, made absolute and without separator at its end.
[[nodiscard]] std::string StorePath(const std::string& name);

/// True for a path that is the folder or lies below it.
[[nodiscard]] bool IsInside(const std::string& path, const std::string& folder);

}  // namespace Tool
