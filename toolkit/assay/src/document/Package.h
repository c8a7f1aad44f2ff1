// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DocumentFile.h"

#include <QUIRE/EssenceType.h>

#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Assay {

/// A file that lies in a package's folder.
struct PackagedFile {
  ui64_t Size = 0;  ///< bytes
  bool IsHidden = false;
};

/// An asset of an asset map.
struct MapAsset {
  const Node* Element = nullptr;
  std::optional<UUID> ID;
  std::string Written;   ///< the path as it stands
  std::string File;      ///< the path of the file that it leads to, from the folder on; empty where there is none
  std::string Obstacle;  ///< of what cannot be read, the path of what stands in the way; empty where nothing does
  bool IsPackingList = false;
  bool IsWhole = true;        ///< one chunk that begins at 0
  bool HasOtherCase = false;  ///< the file was found only by disregarding letter case
  /// What the file holds; ESS_UNKNOWN where it was not opened.
  QUIRE::EssenceType_t Essence = QUIRE::ESS_UNKNOWN;
};

/// An asset of a packing list.
struct ListAsset {
  const Node* Element = nullptr;
  std::optional<UUID> ID;
  std::string Hash;  ///< Base64
  std::optional<ui64_t> Size;
  std::string Type;
};

struct ListFile {
  const DocumentFile* Document = nullptr;
  std::optional<UUID> ID;
  std::vector<ListAsset> Assets;
};

/// A package as its folder and its documents tell of it. Documents stay where they are: what points to them holds as long
/// as the package, which is therefore not copied.
struct Package {
  Package() = default;
  Package(const Package&) = delete;
  Package& operator=(const Package&) = delete;

  std::string Folder;
  std::map<std::string, PackagedFile> Files;  ///< by their path from the folder on
  std::set<std::string> EmptyFolders;
  /// Paths of what cannot be read, and what stands there; that of a folder ends with a slash. None is ever opened: not a
  /// pipe, which would wait for its writer, and not a device, for which that can be an order.
  std::map<std::string, std::string> Unreadable;

  std::deque<DocumentFile> Documents;  ///< all that were read
  std::vector<const DocumentFile*> Maps, VolumeIndexes;
  const DocumentFile* Map = nullptr;  ///< the asset map that counts
  std::vector<MapAsset> MapAssets;
  std::vector<ListFile> Lists;
  std::vector<const DocumentFile*> Compositions;

  // Filled by ReadPackage; of several under one key the first.
  std::map<std::string_view, const DocumentFile*> DocumentsByPath;
  std::map<UUID, const MapAsset*> MappedByID;
  std::map<std::string_view, const MapAsset*> MappedByFile;
  std::map<UUID, const ListAsset*> ListedByID;

  [[nodiscard]] bool IsInterop() const { return Map != nullptr && Map->IsInterop(); }
  /// The asset map's entry for an identifier; null where there is none.
  [[nodiscard]] const MapAsset* FindMapped(const UUID& id) const;
  /// The first entry of the packing lists for an identifier; null where there is none.
  [[nodiscard]] const ListAsset* FindListed(const UUID& id) const;
  /// The asset map's first entry that leads to a file; null where there is none.
  [[nodiscard]] const MapAsset* FindMappedFile(std::string_view path) const;
  /// The document that was read from a file; null where there is none.
  [[nodiscard]] const DocumentFile* FindDocument(std::string_view path) const;
};

/// Documents beyond this size are not read: no packing list is that long.
inline constexpr ui64_t MaxPackageDocument = 8 * 1024 * 1024;  // bytes

/// Looks at the folder and reads its documents.
void ReadPackage(const std::string& folder, Package& package);

/// Whether a name is that of an asset map or a volume index, in any letter case.
[[nodiscard]] bool IsMapName(std::string_view name);
[[nodiscard]] bool IsVolumeIndexName(std::string_view name);

/// What is wrong with the package as a whole: am-*, vi-*, package-*, pkl-*, and with each of its documents by itself.
/// @param now  seconds since 1970-01-01T00:00:00Z, by which dates lie in the future.
void FindInPackage(const Package& package, i64_t now, FindingList& findings);

}  // namespace Assay
