// SPDX-License-Identifier: BSD-3-Clause
#include "Package.h"

#include "base/Text.h"

#include <Cairn/AssetMapPath.h>

#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <algorithm>
#include <filesystem>

namespace Assay {
namespace {

namespace fs = std::filesystem;

constexpr size_t MaxFiles = 200'000;
constexpr int MaxFolderDepth = 16;

bool IsSystemFile(std::string_view name) {
  return name.starts_with('.') || ToLower(name) == "thumbs.db" || ToLower(name) == "desktop.ini";
}

/// A drive's own folder, which is its administrator's alone.
bool IsLostAndFound(std::string_view path) {
  return path == "lost+found";
}

/// The name behind the last slash.
std::string_view NameOf(std::string_view path) {
  return path.substr(path.find_last_of('/') + 1);
}

bool HasMap(const fs::path& folder) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
    if (IsMapName(entry.path().filename().string())) return true;
  return false;
}

/// What an entry is that is neither a file nor a folder of the package; empty where it is one. Nothing is opened.
const char* OddityOf(const fs::directory_entry& entry, const fs::path& root) {
  std::error_code error;
  if (entry.is_regular_file(error) && !entry.is_symlink(error)) return "";
  fs::file_type type = entry.symlink_status(error).type();
  if (type == fs::file_type::symlink) {
    const fs::path target = fs::canonical(entry.path(), error);
    if (error) return "a link that leads nowhere";
    if (std::ranges::mismatch(root, target).in1 != root.end()) return "a link out of the package";
    type = fs::status(target, error).type();
    if (type == fs::file_type::directory) return "a link to a folder";
  }
  switch (type) {
    case fs::file_type::regular:
    case fs::file_type::directory:
      return "";
    case fs::file_type::fifo:
      return "a pipe";
    case fs::file_type::socket:
      return "a socket";
    case fs::file_type::block:
    case fs::file_type::character:
      return "a device";
    default:
      return "an entry that cannot be looked at";
  }
}

/// Notes the files of a folder and of those in it, but of no other package's.
class FolderWalk {
 public:
  explicit FolderWalk(Package& package) : m_Package(package) {
    std::error_code error;
    m_Root = fs::canonical(package.Folder, error);
  }

  void Walk(const fs::path& folder, const std::string& prefix, int depth) {
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    if (error) {
      m_Package.Unreadable.emplace(prefix, "a folder that cannot be opened");
      return;
    }
    bool is_empty = true;
    for (const fs::directory_entry& entry : entries) {
      is_empty = false;
      Note(entry, prefix + entry.path().filename().string(), depth);
    }
    if (is_empty && !prefix.empty()) m_Package.EmptyFolders.insert(prefix.substr(0, prefix.size() - 1));
  }

 private:
  void Note(const fs::directory_entry& entry, const std::string& path, int depth) {
    std::error_code error;
    if (const std::string_view oddity = OddityOf(entry, m_Root); !oddity.empty()) {
      if (m_Package.Unreadable.size() < MaxFiles) m_Package.Unreadable.emplace(path, oddity);
      return;
    }
    if (entry.is_directory(error)) {
      if (depth == MaxFolderDepth || IsLostAndFound(path) || HasMap(entry.path())) return;
      Walk(entry.path(), path + '/', depth + 1);
      return;
    }
    if (m_Package.Files.size() == MaxFiles) return;
    PackagedFile& file = m_Package.Files[path];
    file.Size = entry.file_size(error);
    file.IsHidden = IsSystemFile(NameOf(path));
  }

  Package& m_Package;
  fs::path m_Root;  // without links in it
};

const DocumentFile* Read(Package& package, const std::string& path) {
  if (const DocumentFile* document = package.FindDocument(path); document != nullptr) return document;
  std::string text;
  const auto result = Ferro::ReadFileIntoString(Ferro::PathJoin(package.Folder, path), text, MaxPackageDocument);
  if (result.Failure()) {
    package.Unreadable.emplace(path, result.Label());
    return nullptr;
  }
  const DocumentFile& document =
      package.Documents.emplace_back(DocumentFile::FromText(package.Folder, path, std::move(text)));
  package.DocumentsByPath[document.Path] = &document;
  return &document;
}

/// The files of a package, found by the paths of an asset map.
class FileSearch {
 public:
  explicit FileSearch(const Package& package) : m_Package(package) {}

  /// The file that a path leads to, as it stands in the folder; empty where there is none.
  std::string Find(const std::string& written, bool& has_other_case) {
    std::vector<std::string> candidates;
    if (Cairn::AssetMapPathCandidates(written, candidates).Failure()) return {};
    for (const std::string& candidate : candidates)
      if (m_Package.Files.contains(candidate)) return candidate;
    if (m_ByLowerCase.empty())
      for (const auto& [path, file] : m_Package.Files) m_ByLowerCase.try_emplace(ToLower(path), path);
    for (const std::string& candidate : candidates)
      if (const auto found = m_ByLowerCase.find(ToLower(candidate)); found != m_ByLowerCase.end()) {
        has_other_case = true;
        return std::string(found->second);
      }
    return {};
  }

 private:
  const Package& m_Package;
  std::map<std::string, std::string_view> m_ByLowerCase;  // made when it is first needed
};

/// What stands in the way of a path that leads to no file: in its place, or as a folder above it. A folder in its place is
/// noted as unreadable.
std::string ObstacleOf(Package& package, const std::string& written) {
  std::vector<std::string> candidates;
  if (Cairn::AssetMapPathCandidates(written, candidates).Failure()) return {};
  for (const std::string& candidate : candidates) {
    for (size_t end = candidate.find('/'); end != std::string::npos; end = candidate.find('/', end + 1))
      for (const std::string& above : {candidate.substr(0, end), candidate.substr(0, end + 1)})
        if (package.Unreadable.contains(above)) return above;
    if (package.Unreadable.contains(candidate)) return candidate;
    std::error_code error;
    if (candidate.empty() || !fs::is_directory(fs::symlink_status(Ferro::PathJoin(package.Folder, candidate), error)))
      continue;
    package.EmptyFolders.erase(candidate);
    package.Unreadable.emplace(candidate, "a folder");
    return candidate;
  }
  return {};
}

std::vector<MapAsset> ReadMap(const Package& package, const DocumentFile& document) {
  std::vector<MapAsset> assets;
  FileSearch files(package);
  const Node* list = document.Root() == nullptr ? nullptr : document.Root()->Child("AssetList");
  if (list == nullptr) return assets;
  for (const Node& element : list->Children) {
    if (element.Name != "Asset") continue;
    MapAsset& asset = assets.emplace_back();
    asset.Element = &element;
    asset.ID = IDOf(element.Child("Id"));
    const Node* mark = element.Child("PackingList");
    asset.IsPackingList = mark != nullptr && TextOf(mark) != "false" && TextOf(mark) != "0";
    const Node* chunks = element.Child("ChunkList");
    const Node* chunk = chunks == nullptr ? nullptr : chunks->Child("Chunk");
    if (chunk == nullptr) continue;
    asset.Written = TextOf(chunk->Child("Path"));
    asset.IsWhole = chunks->Children.size() == 1 && CountOf(chunk->Child("Offset")).value_or(0) == 0;
    asset.File = files.Find(asset.Written, asset.HasOtherCase);
  }
  return assets;
}

/// Of several asset maps, the one that leads to most files.
void ChooseMap(Package& package) {
  size_t best = 0;
  for (const DocumentFile* map : package.Maps) {
    std::vector<MapAsset> assets = ReadMap(package, *map);
    const auto there =
        static_cast<size_t>(std::ranges::count_if(assets, [](const MapAsset& asset) { return !asset.File.empty(); }));
    if (package.Map != nullptr && there <= best) continue;
    package.Map = map;
    package.MapAssets = std::move(assets);
    best = there;
  }
}

ListFile ReadList(const DocumentFile& document) {
  ListFile list;
  list.Document = &document;
  list.ID = IDOf(document.Root()->Child("Id"));
  const Node* assets = document.Root()->Child("AssetList");
  if (assets == nullptr) return list;
  for (const Node& element : assets->Children) {
    if (element.Name != "Asset") continue;
    list.Assets.push_back({&element, IDOf(element.Child("Id")), HashOf(element.Child("Hash")),
                           CountOf(element.Child("Size")), std::string(TextOf(element.Child("Type")))});
  }
  return list;
}

/// Reads what the asset map has of documents, or, without one, the documents of the top folder.
void ReadDocuments(Package& package) {
  for (MapAsset& asset : package.MapAssets)
    if (asset.File.empty()) asset.Obstacle = ObstacleOf(package, asset.Written);
  for (const MapAsset& asset : package.MapAssets)
    if (ToLower(asset.File).ends_with(".xml") || (asset.IsPackingList && !asset.File.empty()))
      Read(package, asset.File);
  if (!package.MapAssets.empty()) return;
  for (const auto& [path, file] : package.Files)
    if (path.find('/') == std::string::npos && ToLower(path).ends_with(".xml") && !file.IsHidden) Read(package, path);
}

void Sort(Package& package) {
  for (const DocumentFile& document : package.Documents) {
    if (document.Root() == nullptr) continue;
    if (document.Kind() == DocumentKind::PackingList) package.Lists.push_back(ReadList(document));
    if (document.Kind() == DocumentKind::Composition) package.Compositions.push_back(&document);
  }
}

void MakeIndexes(Package& package) {
  for (const MapAsset& asset : package.MapAssets) {
    if (asset.ID) package.MappedByID.try_emplace(*asset.ID, &asset);
    if (!asset.File.empty()) package.MappedByFile.try_emplace(asset.File, &asset);
  }
  for (const ListFile& list : package.Lists)
    for (const ListAsset& asset : list.Assets)
      if (asset.ID) package.ListedByID.try_emplace(*asset.ID, &asset);
}

/// What a map of pointers has under a key; null where it has nothing.
template <class MapT, class KeyT>
typename MapT::mapped_type Look(const MapT& map, const KeyT& key) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : found->second;
}

}  // namespace

bool IsMapName(std::string_view name) {
  const std::string lower = ToLower(name);
  return lower == "assetmap" || lower == "assetmap.xml";
}

bool IsVolumeIndexName(std::string_view name) {
  const std::string lower = ToLower(name);
  return lower == "volindex" || lower == "volindex.xml";
}

const MapAsset* Package::FindMapped(const UUID& id) const {
  return Look(MappedByID, id);
}

const ListAsset* Package::FindListed(const UUID& id) const {
  return Look(ListedByID, id);
}

const MapAsset* Package::FindMappedFile(std::string_view path) const {
  return Look(MappedByFile, path);
}

const DocumentFile* Package::FindDocument(std::string_view path) const {
  return Look(DocumentsByPath, path);
}

void ReadPackage(const std::string& folder, Package& package) {
  package.Folder = folder;
  FolderWalk(package).Walk(folder, "", 0);
  for (const auto& [path, file] : package.Files) {
    if (!IsMapName(path) && !IsVolumeIndexName(path)) continue;
    const DocumentFile* document = Read(package, path);
    if (document != nullptr) (IsMapName(path) ? package.Maps : package.VolumeIndexes).push_back(document);
  }
  ChooseMap(package);
  ReadDocuments(package);
  Sort(package);
  MakeIndexes(package);
}

}  // namespace Assay
