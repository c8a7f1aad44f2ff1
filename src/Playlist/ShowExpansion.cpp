// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ShowExpansion.h"

#include "Playlist/CompositionLoading.h"

#include <Cairn/InitObjectWithFile.h>
#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>
#include <QUIRE/Result.h>

#include <algorithm>
#include <utility>

namespace Strata {

namespace {

constexpr std::string_view UUIDPrefix = "urn:uuid:";

Result_t DecodeShowURI(const std::string& uri, UUID& SPL_ID) {
  if (!uri.starts_with(UUIDPrefix)) {
    Ferro::DefaultLogSink().Error("Unrecognized Show Playlist URI: %s\n", uri.c_str());
    return Ferro::RESULT_NOT_FOUND;
  }
  if (!SPL_ID.DecodeHex(std::string_view(uri).substr(UUIDPrefix.size()))) {
    Ferro::DefaultLogSink().Error("Show playlist URI is not a valid urn:uuid (%s)\n", uri.c_str());
    return Ferro::RESULT_NOT_FOUND;
  }
  FERRO_ASSERT(SPL_ID.HasValue());
  return Ferro::RESULT_OK;
}

}  // namespace

ShowExpander::ShowExpander(const Timeline_t& timeline, EventList& events, AssetInfoMap& assets,
                           const Cairn::IAssetLookup& lookup, LoadComposition load)
    : m_Timeline(timeline), m_Events(events), m_Assets(assets), m_Lookup(lookup), m_Load(std::move(load)) {}

Result_t ShowExpander::InitWithSPL(const ShowPlaylist& spl, Ferro::PathList_t& paths) {
  Ferro::DefaultLogSink().Debug("Loading Show Playlist %s\n", spl.ID.EncodeString().c_str());
  Result_t result = Ferro::RESULT_OK;
  for (auto si = spl.ShowSequence.begin(); si != spl.ShowSequence.end() && result.Success(); ++si) {
    FERRO_ASSERT_TEXT(*si != nullptr, "*si != 0");
    const ShowPlaylist::ShowItem& item = **si;
    result = CountItem(spl, item);
    if (result.Failure()) return result;
    switch (item.m_Type) {
      case ShowPlaylist::SIT_CPL:
        result = AddComposition(static_cast<const ShowPlaylist::CompositionItem&>(item));
        break;
      case ShowPlaylist::SIT_SHOW:
        result = AddShow(static_cast<const ShowPlaylist::ShowPlaylistItem&>(item), paths);
        break;
      case ShowPlaylist::SIT_MARKER:
        AddEvent(static_cast<const ShowPlaylist::MarkerItem&>(item), TimelineEnd());
        break;
      default:
        break;
    }
  }
  return result;
}

Result_t ShowExpander::AddComposition(const ShowPlaylist::CompositionItem& item) {
  AssetInfoMap::const_iterator asset;
  Result_t result = get_info_map_item(item.ID, asset, m_Assets, m_Lookup);
  if (result.Failure()) return result;
  if (asset->second.FileType != Cairn::FT_CPL) {
    Ferro::DefaultLogSink().Error("Playlist %s is not a composition playlist.\n", item.ID.EncodeString().c_str());
    return RESULT_SX_PLAYLIST_CTYPE;
  }
  Cairn::CompositionPlaylist cpl;
  result = Cairn::InitObjectWithFile(cpl, asset->second.RealFilename);
  if (result.Failure()) return result;

  const ui32_t start = TimelineEnd();
  const ui32_t duration = calc_cpl_duration(cpl);
  result = m_Load(cpl);
  if (result.Failure()) return result;
  // A marker beyond the composition's end stands on its last edit unit, or on its start where it has none.
  const ui32_t last = duration == 0 ? 0 : duration - 1;
  for (const ShowPlaylist::MarkerItem& marker : item.MarkerList)
    AddEvent(marker, start + std::min(static_cast<ui32_t>(marker.Offset), last));
  return result;
}

Result_t ShowExpander::AddShow(const ShowPlaylist::ShowPlaylistItem& item, Ferro::PathList_t& paths) {
  UUID SPL_ID;
  Result_t result = DecodeShowURI(item.URI, SPL_ID);
  AssetInfoMap::const_iterator asset;
  if (result.Success()) result = get_info_map_item(SPL_ID, asset, m_Assets, m_Lookup);
  if (result.Failure()) return result;
  if (asset->second.FileType != Cairn::FT_SHOW) {
    Ferro::DefaultLogSink().Error("Playlist %s is not a show playlist.\n", SPL_ID.EncodeString().c_str());
    return RESULT_SX_PLAYLIST_PTYPE;
  }
  ShowPlaylist spl;
  const std::string& path = asset->second.RealFilename;
  result = Cairn::InitObjectWithFile(spl, path);
  if (result.Failure()) return result;
  if (std::find(paths.begin(), paths.end(), path) != paths.end()) return RESULT_SX_PLAYLIST_REC;

  result = CheckNesting(item.URI, paths);
  if (result.Failure()) return result;
  paths.push_back(path);
  result = InitWithSPL(spl, paths);
  paths.pop_back();
  return result;
}

Result_t ShowExpander::CheckNesting(const std::string& uri, const Ferro::PathList_t& paths) {
  if (paths.size() < MaxShowDepth && ++m_NestedShows <= MaxNestedShows) return Ferro::RESULT_OK;
  Ferro::DefaultLogSink().Error("Show playlists nest too deep or too often at %s (limits: %zu deep, %zu in all).\n",
                                uri.c_str(), MaxShowDepth, MaxNestedShows);
  return QUIRE::RESULT_FORMAT;
}

Result_t ShowExpander::CountItem(const ShowPlaylist& spl, const ShowPlaylist::ShowItem& item) {
  m_Items += 1;
  if (item.m_Type == ShowPlaylist::SIT_CPL)
    m_Items += static_cast<const ShowPlaylist::CompositionItem&>(item).MarkerList.size();
  if (m_Items <= MaxShowItems) return Ferro::RESULT_OK;
  Ferro::DefaultLogSink().Error(
      "Show is full, no room for the next item of show playlist %s (limit: %zu items and "
      "markers in all).\n",
      spl.ID.EncodeString().c_str(), MaxShowItems);
  return QUIRE::RESULT_FORMAT;
}

void ShowExpander::AddEvent(const ShowPlaylist::MarkerItem& marker, ui32_t position) {
  PlaylistEvent event;
  event.Label = marker.Label;
  event.LabelScope = marker.Scope;
  event.ShowPosition = position;
  m_Events.push_back(event);
}

}  // namespace Strata
