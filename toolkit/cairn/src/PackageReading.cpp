// SPDX-License-Identifier: BSD-3-Clause
#include "PackageReading.h"

#include <Cairn/AssetMap.h>
#include <Cairn/AssetMapPath.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/PackingList.h>

#include <Ferro/Path.h>

#include <strings.h>

#include <algorithm>
#include <set>
#include <utility>

namespace Cairn {

namespace {

bool is_asset_map(const std::string& path, const ScannedFile& file) {
  const std::string name = Ferro::PathBasename(path);
  return file.Content.Type == FT_ASSETMAP &&
         (strcasecmp(name.c_str(), "ASSETMAP") == 0 || strcasecmp(name.c_str(), "ASSETMAP.xml") == 0);
}

/// Works one package out; holds what is known of it so far.
class PackageReader {
 public:
  PackageReader(const std::string& root, const ScannedFiles& files) : m_Root(root), m_Files(files) {
    m_Reading.Package.Folder = root;
  }

  PackageReading Read() {
    const bool has_map = ReadAssetMap();
    ReadPackingLists();
    for (const AssetMap::Asset& asset : m_Map.AssetList) AddMapped(asset);
    AddUnpacked(has_map);
    AddFound(has_map);
    return std::move(m_Reading);
  }

 private:
  void AddFinding(const std::string& path, const char* text) {
    m_Reading.Package.Findings.push_back(path.substr(m_Root.size() + 1) + ": " + text);
  }

  // Of several asset maps the one counts more of whose paths lead to files.
  bool ReadAssetMap() {
    size_t best = 0;
    bool found = false;
    for (const auto& [path, file] : m_Files) {
      if (!is_asset_map(path, file) || Ferro::PathDirname(path) != m_Root) continue;
      AssetMap map;
      if (InitObjectWithFile(map, path).Failure()) {
        AddFinding(path, "The asset map could not be understood.");
        continue;
      }
      if (found) AddFinding(path, "The package has several asset maps.");
      const size_t resolved = CountResolved(map);
      if (!found || resolved > best) {
        best = resolved;
        m_Map = std::move(map);
      }
      found = true;
    }
    if (found) m_Reading.Package.AssetMapID = m_Map.ID;
    return found;
  }

  size_t CountResolved(const AssetMap& map) const {
    return static_cast<size_t>(std::count_if(map.AssetList.begin(), map.AssetList.end(), [&](const auto& asset) {
      ui32_t problems = 0;
      return !ResolvePath(asset, problems).empty();
    }));
  }

  void ReadPackingLists() {
    for (const auto& [path, file] : m_Files) {
      if (file.Content.Type != FT_PKL) continue;
      PackingList list;
      if (InitObjectWithFile(list, path).Failure()) {
        AddFinding(path, "The packing list could not be understood.");
        continue;
      }
      m_Reading.Package.PackingLists.push_back(list.ID);
      for (const PackingList::Asset& asset : list.AssetList) {
        const auto [known, is_new] = m_Listed.try_emplace(asset.ID, asset);
        if (!is_new && (known->second.Digest != asset.Digest || known->second.Size != asset.Size))
          AddFinding(path, "Packing lists disagree on an asset; the first counts.");
      }
    }
  }

  // The file that an asset map's path names, among the package's own; empty with the problem's bit when there is none.
  std::string ResolvePath(const AssetMap::Asset& asset, ui32_t& problems) const {
    if (asset.ChunkList.size() != 1 || asset.ChunkList.front().Offset != 0 || asset.ChunkList.front().VolumeIndex > 1) {
      problems |= asset.ChunkList.empty() ? AP_MISSING_FILE : AP_SPLIT;
      return {};
    }
    std::vector<std::string> candidates;
    if (AssetMapPathCandidates(asset.ChunkList.front().Path, candidates).Failure()) {
      problems |= AP_BAD_PATH;
      return {};
    }
    for (const std::string& candidate : candidates) {
      const std::string path = m_Root + '/' + candidate;
      if (m_Files.contains(path)) return path;
    }
    for (const std::string& candidate : candidates)
      if (const std::string path = FindDisregardingCase(candidate); !path.empty()) {
        problems |= AP_PATH_CASE;
        return path;
      }
    problems |= AP_MISSING_FILE;
    return {};
  }

  std::string FindDisregardingCase(const std::string& candidate) const {
    std::string found;
    const std::string sought = m_Root + '/' + candidate;
    for (const auto& [path, file] : m_Files) {
      if (strcasecmp(path.c_str(), sought.c_str()) != 0) continue;
      if (!found.empty()) return {};  // not unique
      found = path;
    }
    return found;
  }

  AssetRecord RecordOf(const UUID& id, const std::string& path) {
    AssetRecord record;
    record.Info.ID = id;
    record.Info.RealFilename = path;
    record.Package = m_Root;
    if (const auto file = m_Files.find(path); file != m_Files.end()) {
      record.Info.FileSize = file->second.Stamp.Size;
      record.Info.FileType = file->second.Content.Type;
      const UUID& own = file->second.Content.ID;
      if (own.HasValue() && own != id && record.Info.FileType != FT_DCST) record.Problems |= AP_WRONG_ID;
      m_Taken.insert(path);
    }
    if (const auto listed = m_Listed.find(id); listed != m_Listed.end()) {
      record.Info.Digest = listed->second.Digest;
      record.HasListedSize = true;
      record.ListedSize = listed->second.Size;
      if (!path.empty() && record.ListedSize != record.Info.FileSize) record.Problems |= AP_WRONG_SIZE;
    } else if (!m_Listed.empty() && record.Info.FileType != FT_PKL) {
      record.Problems |= AP_NOT_LISTED;
    }
    return record;
  }

  void AddMapped(const AssetMap::Asset& asset) {
    ui32_t problems = 0;
    const std::string path = ResolvePath(asset, problems);
    AssetRecord record = RecordOf(asset.ID, path);
    record.Problems |= problems;
    const bool cut =
        !path.empty() && asset.ChunkList.front().HasLength && asset.ChunkList.front().Length != record.Info.FileSize;
    if (cut) record.Problems |= AP_WRONG_SIZE;
    if (!m_Mapped.insert(asset.ID).second)
      m_Reading.Package.Findings.push_back("The asset map names " + asset.ID.EncodeString() + " more than once.");
    m_Reading.Assets.push_back(std::move(record));
  }

  // Listed, but not mapped: such an asset serves when a file says that it is it.
  void AddUnpacked(bool has_map) {
    for (const auto& [id, listed] : m_Listed) {
      if (m_Mapped.contains(id)) continue;
      AssetRecord record = RecordOf(id, FindByOwnID(id, listed.OriginalFileName));
      if (has_map) record.Problems |= AP_NOT_PACKED;
      if (record.Info.RealFilename.empty()) record.Problems |= AP_MISSING_FILE;
      m_Reading.Assets.push_back(std::move(record));
    }
  }

  std::string FindByOwnID(const UUID& id, const std::string& name) const {
    for (const auto& [path, file] : m_Files)
      if (file.Content.ID.HasValue() && file.Content.ID == id) return path;
    const auto named = m_Files.find(m_Root + '/' + name);
    return named == m_Files.end() || named->second.Content.ID.HasValue() ? std::string() : named->first;
  }

  // Neither mapped nor listed, but with an identifier of its own.
  void AddFound(bool has_map) {
    for (const auto& [path, file] : m_Files) {
      const bool is_asset = file.Content.ID.HasValue() && file.Content.Type != FT_ASSETMAP;
      if (!is_asset || m_Taken.contains(path)) continue;
      AssetRecord record = RecordOf(file.Content.ID, path);
      if (has_map) record.Problems |= AP_NOT_LISTED;
      m_Reading.Assets.push_back(std::move(record));
    }
  }

  const std::string& m_Root;
  const ScannedFiles& m_Files;
  AssetMap m_Map;
  std::map<UUID, PackingList::Asset> m_Listed;
  std::set<UUID> m_Mapped;
  std::set<std::string> m_Taken;  // files that an asset was found to be
  PackageReading m_Reading;
};

}  // namespace

std::vector<std::string> PackageRoots(const ScannedFiles& files) {
  std::set<std::string> roots;
  for (const auto& [path, file] : files)
    if (is_asset_map(path, file)) roots.insert(Ferro::PathDirname(path));
  const std::vector<std::string> mapped(roots.begin(), roots.end());
  for (const auto& [path, file] : files) {
    const std::string folder = Ferro::PathDirname(path);
    if (file.Content.Type == FT_PKL && !std::binary_search(mapped.begin(), mapped.end(), RootOf(path, mapped)))
      roots.insert(folder);
  }
  return {roots.begin(), roots.end()};
}

std::string RootOf(std::string_view path, const std::vector<std::string>& sorted_roots) {
  for (std::string folder = Ferro::PathDirname(path); folder.size() > 1; folder = Ferro::PathDirname(folder))
    if (std::binary_search(sorted_roots.begin(), sorted_roots.end(), folder)) return folder;
  return Ferro::PathDirname(path);
}

PackageReading ReadPackage(const std::string& root, const ScannedFiles& files) {
  return PackageReader(root, files).Read();
}

}  // namespace Cairn
