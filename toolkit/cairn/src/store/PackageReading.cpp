// SPDX-License-Identifier: BSD-3-Clause
#include "PackageReading.h"

#include <Cairn/AssetMap.h>
#include <Cairn/AssetMapPath.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/PackingList.h>

#include <Ferro/Path.h>

#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <set>
#include <utility>

namespace Cairn {

namespace {

bool IsAssetMap(const std::string& path, const ScannedFile& file) {
  const std::string name = Ferro::PathBasename(path);
  return file.Content.Type == FT_ASSETMAP &&
         (strcasecmp(name.c_str(), "ASSETMAP") == 0 || strcasecmp(name.c_str(), "ASSETMAP.xml") == 0);
}

std::string LowerCase(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

/// An asset of which no file that is here is the whole.
constexpr ui32_t NotWhole = AP_CHUNKED | AP_OTHER_VOLUME | AP_PARTIAL;

/// Leads the paths of asset maps to files of a package.
class PathResolver {
 public:
  PathResolver(const std::string& root, const ScannedFiles& all) : m_Root(root), m_Files(all) {}

  /// The file that an asset map names; empty, with the problem's bit, when there is none.
  std::string Resolve(const AssetMap::Asset& asset, ui32_t& problems) {
    if (asset.ChunkList.size() != 1) {
      problems |= asset.ChunkList.empty() ? AP_MISSING_FILE : AP_CHUNKED;
      return {};
    }
    const AssetMap::Chunk& chunk = asset.ChunkList.front();
    if (chunk.VolumeIndex > 1) problems |= AP_OTHER_VOLUME;
    if (chunk.Offset != 0) problems |= AP_PARTIAL;
    return (problems & NotWhole) == 0 ? ResolvePath(chunk.Path, problems) : std::string();
  }

  std::string ResolvePath(const std::string& text, ui32_t& problems) {
    std::vector<std::string> candidates;
    if (AssetMapPathCandidates(text, candidates).Failure()) {
      problems |= AP_BAD_PATH;
      return {};
    }
    std::string path = Find(candidates, problems);
    if (path.empty()) {
      problems |= AbsenceOf(candidates);
    } else if (!LiesInside(path)) {
      problems |= AP_BAD_PATH;
      path.clear();
    }
    return path;
  }

 private:
  std::string Find(const std::vector<std::string>& candidates, ui32_t& problems) {
    for (const std::string& candidate : candidates)
      if (const std::string path = m_Root + '/' + candidate; m_Files.contains(path)) return path;
    for (const std::string& candidate : candidates)
      if (const std::string path = FindDisregardingCase(candidate); !path.empty()) {
        problems |= AP_PATH_CASE;
        return path;
      }
    return {};
  }

  // What stands at a path that names no file of the package.
  ui32_t AbsenceOf(const std::vector<std::string>& candidates) const {
    struct stat status = {};
    for (const std::string& candidate : candidates) {
      if (lstat((m_Root + '/' + candidate).c_str(), &status) != 0) continue;
      if (S_ISLNK(status.st_mode)) return AP_LINK;
      if (!S_ISREG(status.st_mode)) return AP_NOT_A_FILE;
    }
    return AP_MISSING_FILE;
  }

  // Only a name that fits one file alone will do.
  std::string FindDisregardingCase(const std::string& candidate) {
    if (m_LowerCase.empty())
      for (auto file = m_Files.lower_bound(m_Root + '/');
           file != m_Files.end() && file->first.starts_with(m_Root + '/'); ++file) {
        const auto [known, is_new] =
            m_LowerCase.try_emplace(LowerCase(file->first.substr(m_Root.size() + 1)), file->first);
        if (!is_new) known->second.clear();
      }
    const auto found = m_LowerCase.find(LowerCase(candidate));
    return found == m_LowerCase.end() ? std::string() : found->second;
  }

  // The file itself may be a symbolic link out of the package.
  bool LiesInside(const std::string& path) const {
    char target[PATH_MAX];
    return realpath(path.c_str(), target) == nullptr || std::string_view(target).starts_with(m_Root + '/');
  }

  const std::string& m_Root;
  const ScannedFiles& m_Files;
  std::map<std::string, std::string> m_LowerCase;  // to the path; to nothing where several files have the name
};

/// Works one package out; holds what is known of it so far.
class PackageReader {
 public:
  PackageReader(const std::string& root, const ScannedFiles& own, const ScannedFiles& all)
      : m_Root(root), m_Own(own), m_All(all), m_Resolver(root, all) {
    m_Reading.Package.Folder = root;
    for (const auto& [path, file] : own)
      if (file.Content.ID.HasValue()) m_ByID.try_emplace(file.Content.ID, path);
  }

  PackageReading Read() {
    const bool has_map = ReadAssetMap();
    ReadPackingLists();
    if (has_map && m_Reading.Package.PackingLists.empty()) AddFinding(PP_NO_PACKING_LIST);
    if (!has_map && !m_Reading.Package.PackingLists.empty()) AddFinding(PP_NO_ASSET_MAP);
    for (const AssetMap::Asset& asset : m_Map.AssetList) AddMapped(asset);
    AddUnpacked(has_map);
    AddFound(has_map);
    return std::move(m_Reading);
  }

 private:
  void AddFinding(PackageProblem_t problem, const std::string& path = {}, const UUID& asset = {}) {
    m_Reading.Package.Findings.push_back({problem, path.empty() ? path : path.substr(m_Root.size() + 1), asset});
  }

  // Of several asset maps the one counts more of whose paths lead to files.
  bool ReadAssetMap() {
    size_t best = 0;
    bool found = false;
    for (const auto& [path, file] : m_Own) {
      if (!IsAssetMap(path, file) || Ferro::PathDirname(path) != m_Root) continue;
      AssetMap map;
      if (InitObjectWithFile(map, path).Failure()) {
        AddFinding(PP_ASSET_MAP_UNREADABLE, path);
        continue;
      }
      if (found) AddFinding(PP_SEVERAL_ASSET_MAPS, path);
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

  size_t CountResolved(const AssetMap& map) {
    return static_cast<size_t>(std::count_if(map.AssetList.begin(), map.AssetList.end(), [&](const auto& asset) {
      ui32_t problems = 0;
      return !m_Resolver.Resolve(asset, problems).empty();
    }));
  }

  void ReadPackingLists() {
    for (const auto& [path, file] : m_Own) {
      if (file.Content.Type != FT_PKL) continue;
      PackingList list;
      if (InitObjectWithFile(list, path).Failure()) {
        AddFinding(PP_PACKING_LIST_UNREADABLE, path);
        continue;
      }
      m_Reading.Package.PackingLists.push_back(list.ID);
      bool disagrees = false;
      for (const PackingList::Asset& asset : list.AssetList) {
        const auto [known, is_new] = m_Listed.try_emplace(asset.ID, asset);
        disagrees |= !is_new && (known->second.Digest != asset.Digest || known->second.Size != asset.Size);
      }
      if (disagrees) AddFinding(PP_LISTS_DISAGREE, path);
    }
  }

  AssetRecord RecordOf(const UUID& id, const std::string& path) {
    AssetRecord record;
    record.Info.ID = id;
    record.Info.RealFilename = path;
    record.Package = m_Root;
    if (const auto file = m_All.find(path); file != m_All.end()) {
      record.Info.FileSize = file->second.Stamp.Size;
      record.Info.FileType = file->second.Content.Type;
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

  // The same asset at the same place twice does no harm.
  void AddMapped(const AssetMap::Asset& asset) {
    ui32_t problems = 0;
    const std::string path = m_Resolver.Resolve(asset, problems);
    auto& paths = m_Mapped[asset.ID];
    if (!paths.insert(path).second) return;
    if (paths.size() == 2) AddFinding(PP_REPEATED_ASSET, {}, asset.ID);
    AssetRecord record = RecordOf(asset.ID, path);
    record.Problems |= problems;
    if ((problems & NotWhole) != 0) TakeChunks(asset);
    const bool cut =
        !path.empty() && asset.ChunkList.front().HasLength && asset.ChunkList.front().Length != record.Info.FileSize;
    if (cut) record.Problems |= AP_WRONG_SIZE;
    m_Reading.Assets.push_back(std::move(record));
  }

  // A file that holds a chunk may say that it is the asset, but is not the whole of it.
  void TakeChunks(const AssetMap::Asset& asset) {
    ui32_t problems = 0;
    for (const AssetMap::Chunk& chunk : asset.ChunkList) m_Taken.insert(m_Resolver.ResolvePath(chunk.Path, problems));
  }

  // Listed, but not mapped: such an asset serves when a file says that it is it.
  void AddUnpacked(bool has_map) {
    for (const auto& [id, listed] : m_Listed) {
      if (m_Mapped.contains(id)) continue;
      AssetRecord record = RecordOf(id, FindUnmapped(id, listed.OriginalFileName));
      if (has_map) record.Problems |= AP_NOT_PACKED;
      if (record.Info.RealFilename.empty()) record.Problems |= AP_MISSING_FILE;
      m_Reading.Assets.push_back(std::move(record));
    }
  }

  // By what a file says of itself; by its name where its kind says nothing.
  std::string FindUnmapped(const UUID& id, const std::string& name) const {
    if (const auto found = m_ByID.find(id); found != m_ByID.end()) return found->second;
    const auto named = m_Own.find(m_Root + '/' + name);
    return named == m_Own.end() || named->second.Content.ID.HasValue() ? std::string() : named->first;
  }

  // Neither mapped nor listed, but with an identifier of its own.
  void AddFound(bool has_map) {
    for (const auto& [path, file] : m_Own) {
      const bool is_asset = file.Content.ID.HasValue() && file.Content.Type != FT_ASSETMAP;
      if (!is_asset || m_Taken.contains(path)) continue;
      AssetRecord record = RecordOf(file.Content.ID, path);
      if (has_map) record.Problems |= AP_NOT_LISTED;
      m_Reading.Assets.push_back(std::move(record));
    }
  }

  const std::string& m_Root;
  const ScannedFiles& m_Own;
  const ScannedFiles& m_All;
  PathResolver m_Resolver;
  std::map<UUID, std::string> m_ByID;  // what files say of themselves
  AssetMap m_Map;
  std::map<UUID, PackingList::Asset> m_Listed;
  std::map<UUID, std::set<std::string>> m_Mapped;
  std::set<std::string> m_Taken;  // files that an asset was found to be
  PackageReading m_Reading;
};

// Calls `visit` with each folder around a path that is a root, from the innermost on, until it answers false.
template <class Visitor>
void VisitRoots(std::string_view path, const std::vector<std::string>& sorted_roots, Visitor visit) {
  for (std::string folder = Ferro::PathDirname(path); folder.size() > 1; folder = Ferro::PathDirname(folder))
    if (std::binary_search(sorted_roots.begin(), sorted_roots.end(), folder) && !visit(folder)) return;
}

}  // namespace

std::vector<std::string> PackageRoots(const ScannedFiles& files) {
  std::set<std::string> roots;
  for (const auto& [path, file] : files)
    if (IsAssetMap(path, file)) roots.insert(Ferro::PathDirname(path));
  const std::vector<std::string> mapped(roots.begin(), roots.end());
  for (const auto& [path, file] : files)
    if (file.Content.Type == FT_PKL && !std::binary_search(mapped.begin(), mapped.end(), RootOf(path, mapped)))
      roots.insert(Ferro::PathDirname(path));
  return {roots.begin(), roots.end()};
}

std::string RootOf(std::string_view path, const std::vector<std::string>& sorted_roots) {
  std::string innermost;
  VisitRoots(path, sorted_roots, [&](const std::string& root) {
    innermost = root;
    return false;
  });
  return innermost.empty() ? Ferro::PathDirname(path) : innermost;
}

std::vector<std::string> PackagesAround(std::string_view path, const std::vector<std::string>& sorted_roots) {
  std::vector<std::string> packages;
  VisitRoots(path, sorted_roots, [&](const std::string& root) {
    packages.push_back(root);
    return true;
  });
  if (packages.empty()) packages.push_back(Ferro::PathDirname(path));
  return packages;
}

PackageReading ReadPackage(const std::string& root, const ScannedFiles& own, const ScannedFiles& all) {
  return PackageReader(root, own, all).Read();
}

}  // namespace Cairn
