// SPDX-License-Identifier: BSD-3-Clause
#include "PackageFindings.h"

#include "base/Text.h"

#include <Cairn/AssetMapPath.h>

#include <algorithm>

namespace Assay {
namespace {

constexpr size_t MaxPathLength = 100;
constexpr size_t MaxSegments = 10;

bool IsFileURL(std::string_view path) {
  return ToLower(path.substr(0, 5)) == "file:";
}

/// What in a path not all equipment can use; empty where all can.
std::string CharacterFault(std::string_view path) {
  for (const char c : path)
    if (!IsLetter(c) && !IsDigit(c) && c != '-' && c != '_' && c != '.' && c != '/')
      return std::string("the character ") + Quoted(std::string_view(&c, 1));
  if (path.size() > MaxPathLength) return std::to_string(path.size()) + " characters";
  const size_t segments = Split(path, '/').size();
  return segments > MaxSegments ? std::to_string(segments) + " segments" : std::string();
}

void FindPath(const Package& package, const MapAsset& asset, FindingList& findings) {
  const Node* chunk = asset.Element->Path({"ChunkList", "Chunk"});
  const Node* path = chunk == nullptr ? nullptr : chunk->Child("Path");
  if (path == nullptr) return;
  std::vector<std::string> candidates;
  const bool is_refused = Cairn::AssetMapPathCandidates(asset.Written, candidates).Failure();
  const bool is_url = IsFileURL(asset.Written);
  const FindingPlace place = AssetPlace(*package.Map, path, asset.ID);
  if (is_refused || is_url) {
    const bool is_usual = !is_refused && package.IsInterop();
    Add(findings, Finding(FindingID::AmPath, is_usual ? FindingClass::Warning : FindingClass::Error), place,
        "a path within the package", Quoted(asset.Written));
    return;
  }
  if (const std::string fault = CharacterFault(asset.Written); !fault.empty())
    Add(findings, Finding(FindingID::AmPathCharacters), place,
        "letters, digits, hyphen, underscore, full stop; at most 100 characters and 10 segments", fault);
  if (asset.HasOtherCase) Add(findings, Finding(FindingID::AmPathCase), place, Quoted(asset.Written), asset.File);
}

void FindChunks(const Package& package, const MapAsset& asset, FindingList& findings) {
  const Node* chunks = asset.Element->Child("ChunkList");
  if (chunks == nullptr) return;
  if (!asset.IsWhole)
    Add(findings, Finding(FindingID::AmChunks), AssetPlace(*package.Map, chunks, asset.ID),
        "one chunk that begins at 0", std::to_string(chunks->Children.size()) + " chunks");
  for (const Node& chunk : chunks->Children) {
    const Node* index = chunk.Child("VolumeIndex");
    if (index != nullptr && HasForm(ValueForm::Integer, index->Text) && CountOf(index) != 1U)
      Add(findings, Finding(FindingID::AmVolumeIndex), AssetPlace(*package.Map, index, asset.ID), "1",
          std::string(TextOf(index)));
  }
  const Node* length = chunks->Path({"Chunk", "Length"});
  const auto size = CountOf(length);
  const auto file = package.Files.find(asset.File);
  if (asset.IsWhole && size && file != package.Files.end() && *size != file->second.Size)
    Add(findings, Finding(FindingID::AmChunkLength), AssetPlace(*package.Map, length, asset.ID),
        std::to_string(*size) + " bytes", std::to_string(file->second.Size) + " bytes");
}

void FindDuplicates(const Package& package, FindingList& findings) {
  for (const MapAsset& asset : package.MapAssets) {
    if (asset.ID && package.FindMapped(*asset.ID) != &asset)
      Add(findings, Finding(FindingID::AmDuplicateID), AssetPlace(*package.Map, asset.Element, asset.ID));
    else if (!asset.File.empty() && package.FindMappedFile(asset.File) != &asset)
      Add(findings, Finding(FindingID::AmDuplicatePath), AssetPlace(*package.Map, asset.Element, asset.ID), "",
          asset.File);
  }
}

void FindHead(const Package& package, FindingList& findings) {
  const Node& root = *package.Map->Root();
  for (const char* name : {"AnnotationText", "Creator", "Issuer"}) {
    const Node* element = root.Child(name);
    if (element != nullptr && TextOf(element).empty())
      Add(findings, Finding(FindingID::AmEmptyElement), package.Map->At(element), "", name);
  }
  const Node* count = root.Child("VolumeCount");
  if (count != nullptr && HasForm(ValueForm::Integer, count->Text) && CountOf(count) != 1U)
    Add(findings, Finding(FindingID::AmVolumeCount), package.Map->At(count), "1", std::string(TextOf(count)));
}

/// The name that the document's flavour gives it, against the one that it has.
void FindName(const DocumentFile& document, const char* name, FindingList& findings) {
  if (document.Root() == nullptr) return;
  const std::string expected = document.IsInterop() ? name : std::string(name) + ".xml";
  if (document.Path != expected)
    Add(findings, Finding(FindingID::AmName), document.At(nullptr), expected, document.Path);
}

void FindNames(const Package& package, FindingList& findings) {
  if (package.Maps.size() > 1 || package.VolumeIndexes.size() > 1) {
    const auto& several = package.Maps.size() > 1 ? package.Maps : package.VolumeIndexes;
    Add(findings, Finding(FindingID::AmSeveral), several.back()->At(nullptr), "one",
        several.front()->Path + " and " + several.back()->Path);
    return;
  }
  for (const DocumentFile* map : package.Maps) FindName(*map, "ASSETMAP", findings);
  for (const DocumentFile* index : package.VolumeIndexes) FindName(*index, "VOLINDEX", findings);
}

void FindVolumeIndex(const Package& package, FindingList& findings) {
  if (package.VolumeIndexes.empty()) Add(findings, Finding(FindingID::ViMissing), FolderPlace(package));
  for (const DocumentFile* document : package.VolumeIndexes) {
    const Node* index = document->Root() == nullptr ? nullptr : document->Root()->Child("Index");
    if (CountOf(index).value_or(1) > 1)
      Add(findings, Finding(FindingID::ViIndex), document->At(index), "1", std::string(TextOf(index)));
  }
}

}  // namespace

void FindInAssetMap(const Package& package, FindingList& findings) {
  if (package.Maps.empty()) {
    Add(findings, Finding(FindingID::AmMissing), FolderPlace(package));
    return;
  }
  FindNames(package, findings);
  FindVolumeIndex(package, findings);
  for (const DocumentFile* map : package.Maps)
    if (map->Parsed.Root && map->Kind() != DocumentKind::AssetMap)
      Add(findings, Finding(FindingID::AmSchema), map->At(&*map->Parsed.Root), "an asset map in a known namespace",
          Quoted(map->Parsed.Root->Name + " in " + map->Parsed.Root->Namespace));
  if (package.Map->Kind() != DocumentKind::AssetMap || package.Map->Root() == nullptr) return;
  FindHead(package, findings);
  FindDuplicates(package, findings);
  for (const MapAsset& asset : package.MapAssets) {
    FindPath(package, asset, findings);
    FindChunks(package, asset, findings);
  }
  if (std::ranges::none_of(package.MapAssets, [](const MapAsset& asset) { return asset.IsPackingList; }))
    Add(findings, Finding(FindingID::AmNoPackingList), package.Map->At(package.Map->Root()));
}

}  // namespace Assay
