// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFiles.h"

#include "TrackFileReading.h"
#include "base/Parallel.h"
#include "base/Text.h"

#include <Cairn/IAssetLookup.h>

#include <Ferro/Path.h>

#include <algorithm>
#include <atomic>
#include <limits>

namespace Assay {
namespace {

// Reading headers waits for disks more than it computes.
constexpr unsigned ReadingThreads = 8;

bool IsDocumentName(std::string_view path) {
  return ToLower(path).ends_with(".xml");
}

/// Fonts and images of Interop texts, which no reel plays.
bool IsResourceName(std::string_view path) {
  const std::string name = ToLower(path);
  return name.ends_with(".ttf") || name.ends_with(".otf") || name.ends_with(".png");
}

}  // namespace

void NotePlayed(const Composition& composition, PlayedUnits& played) {
  for (const Reel& reel : composition.Reels)
    for (const ReelAsset& asset : reel.Assets) {
      if (!asset.IsFile() || !asset.ID) continue;
      constexpr ui64_t Largest = std::numeric_limits<ui64_t>::max();
      const ui64_t entry = asset.Entry.value_or(0);
      const bool is_told = asset.Duration && *asset.Duration <= Largest - entry;
      const ui64_t end = is_told ? entry + *asset.Duration : Largest;
      ui64_t& last = played[*asset.ID];
      last = std::max(last, end - std::min<ui64_t>(end, 1));
    }
}

std::string DocumentPlace::FullPath() const {
  return Package.empty() ? Path : Ferro::PathJoin(Package, Path);
}

TrackFiles::TrackFiles(const std::deque<Package>& packages, const PlayedUnits& played, const Cairn::IAssetLookup* store)
    : m_Played(played) {
  for (const Package& package : packages) AddPackage(package, played);
  if (store == nullptr) return;
  for (const auto& [id, last] : played)
    if (!Has(id)) AddFromStore(id, *store);
}

TrackFile& TrackFiles::AddFile(const UUID& id) {
  TrackFile& file = m_Files.emplace_back();
  file.ID = id;
  m_ByID[id].push_back(&file);
  return file;
}

void TrackFiles::AddPackage(const Package& package, const PlayedUnits& played) {
  for (const MapAsset& asset : package.MapAssets) {
    const auto found = package.Files.find(asset.File);
    if (!asset.ID || !asset.IsWhole || asset.IsPackingList || found == package.Files.end()) continue;
    if (IsDocumentName(asset.File)) {
      m_Documents[*asset.ID].push_back({package.Folder, asset.File});
      continue;
    }
    const bool is_played = played.contains(*asset.ID) && !IsResourceName(asset.File);
    if (!is_played && !ToLower(asset.File).ends_with(".mxf")) continue;
    TrackFile& file = AddFile(*asset.ID);
    file.Package = package.Folder;
    file.Path = asset.File;
    file.Size = found->second.Size;
    if (const ListAsset* listed = package.FindListed(*asset.ID); listed != nullptr)
      static_cast<void>(file.Listed.DecodeBase64(listed->Hash));  // one of the wrong form is told with the list
  }
}

void TrackFiles::AddFromStore(const UUID& id, const Cairn::IAssetLookup& store) {
  Cairn::AssetInfo info;
  const bool has = store.GetInfoForAssetID(id, info, false) == Ferro::RESULT_OK && !info.RealFilename.empty();
  if (!has) return;
  if (info.FileType == Cairn::FT_TI_SUBTITLE) {
    m_Documents[id].push_back({"", info.RealFilename});
    return;
  }
  TrackFile& file = AddFile(id);
  file.Path = info.RealFilename;
  file.Size = info.FileSize;
  file.Listed = info.Digest;
}

bool TrackFiles::Read(const std::function<bool(size_t done)>& go_on) {
  std::atomic<size_t> done = 0;
  const auto read = [&](size_t number) {
    TrackFile& file = m_Files[number];
    const auto played = m_Played.find(file.ID);
    ReadTrackFile(file, played == m_Played.end() ? std::nullopt : std::optional(played->second));
    ++done;
  };
  return ForEachInParallel(m_Files.size(), ReadingThreads, read,
                           go_on ? [&] { return go_on(done); } : std::function<bool()>());
}

const TrackFile* TrackFiles::Find(const UUID& id, const std::string& package) const {
  const auto found = m_ByID.find(id);
  if (found == m_ByID.end()) return nullptr;
  const auto own = std::ranges::find(found->second, package, &TrackFile::Package);
  return own == found->second.end() ? found->second.front() : *own;
}

const DocumentPlace* TrackFiles::FindDocument(const UUID& id, const std::string& package) const {
  const auto found = m_Documents.find(id);
  if (found == m_Documents.end()) return nullptr;
  const auto own = std::ranges::find(found->second, package, &DocumentPlace::Package);
  return own == found->second.end() ? &found->second.front() : &*own;
}

}  // namespace Assay
