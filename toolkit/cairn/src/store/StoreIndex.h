// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Database.h"
#include "FolderUpdate.h"

#include <Cairn/AssetRecord.h>

#include <string>
#include <vector>

namespace Cairn {

/// The asset store's tables. Every operation throws DatabaseError; those that change run inside a caller's Transaction.
class StoreIndex {
 public:
  /// Stands for the folder of those files that were registered one by one.
  static constexpr const char* RegisteredFiles = "";

  /// What the index knows of a folder.
  struct FolderState {
    i64_t Revision = 0;    ///< another number after each change; 0 for an unknown folder
    bool Present = false;  ///< found when it was last looked for
    ScannedFiles Files;
  };

  /// Opens or creates the index; `filename` empty: in memory.
  StoreIndex(const std::string& filename, ui32_t busy_timeout_ms);

  [[nodiscard]] const Database& Connection() const { return m_Database; }

  /// All folders but RegisteredFiles.
  [[nodiscard]] std::vector<std::string> Folders() const;
  [[nodiscard]] i64_t Revision(const std::string& folder) const;
  [[nodiscard]] FolderState Folder(const std::string& folder) const;
  /// Says that a folder cannot be found on disk now; no change for one that is not there.
  void MarkAbsent(const std::string& folder);
  /// False when the folder is not there.
  bool RemoveFolder(const std::string& folder);
  /// Adds the folder where it is not there.
  void Apply(const std::string& folder, const FolderUpdate& update);

  /// Makes one file known, instead of what was known of it before.
  void PutRegistered(const ScannedFile& file, const AssetRecord& record);
  /// Makes the files registered as an asset unknown. False where there is none.
  bool RemoveRegistered(const UUID& id);
  [[nodiscard]] std::vector<std::string> RegisteredPaths() const;
  /// The computed digest of a file, kept for as long as it has this stamp.
  void PutDigest(const std::string& path, const FileStamp& stamp, const SHA1& digest);

  [[nodiscard]] std::vector<AssetRecord> Assets() const;
  /// The assets that a file is, by its path.
  [[nodiscard]] std::vector<AssetRecord> FindFile(const std::string& path) const;
  [[nodiscard]] std::vector<PackageRecord> Packages() const;
  [[nodiscard]] UUIDList AssetIDs() const;

 private:
  void PutFolder(const std::string& folder);
  /// False for an empty database; throws for one that is no index of this version. Runs inside a Transaction, lest another
  /// process create the index meanwhile.
  [[nodiscard]] bool IsCreated() const;
  [[nodiscard]] i64_t Ask(const char* sql) const;

  Database m_Database;
};

/// Looks assets up by identifier, all in one state of the index. One for many look-ups is quickest.
class AssetFinder {
 public:
  explicit AssetFinder(const StoreIndex& index);
  /// Every place of an asset.
  [[nodiscard]] std::vector<AssetRecord> Find(const UUID& id);

 private:
  Transaction m_Transaction;
  Statement m_Rows;
};

/// Those without problems first, then those that can be used; of equal ones those that a packing list names.
void SortBestFirst(std::vector<AssetRecord>& records);

}  // namespace Cairn
