// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Database.h"
#include "PackageReading.h"

#include <Cairn/AssetRecord.h>

#include <string>
#include <vector>

namespace Cairn {

/// The asset store's tables. Every operation throws DatabaseError; those that change run inside a caller's Transaction.
class StoreIndex {
 public:
  /// Opens or creates the index; `filename` empty: in memory.
  explicit StoreIndex(const std::string& filename);

  [[nodiscard]] Database& Connection() { return m_Database; }
  [[nodiscard]] const Database& Connection() const { return m_Database; }

  [[nodiscard]] std::vector<std::string> Folders() const;
  /// Adds a folder, or says whether one that is there can be found on disk now.
  void PutFolder(const std::string& folder, bool present);
  /// False when the folder is not there.
  bool RemoveFolder(const std::string& folder);

  [[nodiscard]] ScannedFiles Files(const std::string& folder) const;
  /// Takes a new or changed file down; what was known of its digest is forgotten.
  void PutFile(const std::string& folder, const std::string& path, const ScannedFile& file);
  void RemoveFile(const std::string& path);
  /// The computed digest of a file, kept for as long as it has this stamp.
  void PutDigest(const std::string& path, const FileStamp& stamp, const SHA1& digest);

  void PutPackage(const std::string& folder, const PackageReading& reading);
  void PutAsset(const std::string& folder, const AssetRecord& asset);
  void RemoveAssets(const std::string& folder, const std::string& path);
  void RemovePackage(const std::string& root);
  void RemovePackagesOf(const std::string& folder);

  [[nodiscard]] std::vector<AssetRecord> Assets() const;
  [[nodiscard]] std::vector<PackageRecord> Packages() const;
  [[nodiscard]] UUIDList AssetIDs() const;

 private:
  void Create();

  Database m_Database;
};

/// Looks assets up by identifier; one for many look-ups is quickest.
class AssetFinder {
 public:
  explicit AssetFinder(const StoreIndex& index);
  /// Every place of an asset, those without problems first.
  [[nodiscard]] std::vector<AssetRecord> Find(const UUID& id);

 private:
  Statement m_Rows;
};

}  // namespace Cairn
