// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/AssetResolution.h"
#include "Playlist/TimelineReel.h"
#include "Playlist/TimelineSummary.h"

#include <Strata/Result.h>
#include <Strata/ShowPlaylist.h>

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/IAssetLookup.h>
#include <Ferro/Path.h>

#include <functional>
#include <string>

namespace Strata {

/// How deep show playlists may nest, and how many nested ones, items and markers a show may expand to; documents that
/// ask for more are refused. All are far beyond any show, and keep small files that name each other twice from growing
/// without end.
inline constexpr size_t MaxShowDepth = 64;
inline constexpr size_t MaxNestedShows = 10'000;
inline constexpr size_t MaxShowItems = 250'000;

/// Expands show playlists, depth first, into a flat timeline, and turns their markers into events.
class ShowExpander {
 public:
  /// Appends a composition to the timeline.
  using LoadComposition = std::function<Result_t(const Cairn::CompositionPlaylist&)>;

  /// @param timeline  read for where the next composition starts; `load` appends to it.
  /// @param events    receives the markers, in the order met.
  /// All arguments outlive the expander.
  ShowExpander(const Timeline_t& timeline, EventList& events, AssetInfoMap& assets, const Cairn::IAssetLookup& lookup,
               LoadComposition load);

  /// Expands `spl`. `paths` holds the files of the show playlists being expanded, outermost first, `spl`'s own last; it
  /// is as before on return.
  /// @return RESULT_OK; RESULT_SX_PLAYLIST_CTYPE, RESULT_SX_PLAYLIST_PTYPE for a reference to an asset of another kind;
  ///         RESULT_SX_PLAYLIST_REC for a show playlist inside itself; RESULT_NOT_FOUND for a reference that is none;
  ///         QUIRE::RESULT_FORMAT beyond the limits; or what reading a document or loading a composition failed with.
  [[nodiscard]] Result_t InitWithSPL(const ShowPlaylist& spl, Ferro::PathList_t& paths);

 private:
  [[nodiscard]] Result_t AddComposition(const ShowPlaylist::CompositionItem& item);
  [[nodiscard]] Result_t AddShow(const ShowPlaylist::ShowPlaylistItem& item, Ferro::PathList_t& paths);
  [[nodiscard]] Result_t CheckNesting(const std::string& uri, const Ferro::PathList_t& paths);
  [[nodiscard]] Result_t CountItem(const ShowPlaylist& spl, const ShowPlaylist::ShowItem& item);
  void AddEvent(const ShowPlaylist::MarkerItem& marker, ui32_t position);
  [[nodiscard]] ui32_t TimelineEnd() const { return m_Timeline.empty() ? 0 : m_Timeline.back().End(); }

  const Timeline_t& m_Timeline;
  EventList& m_Events;
  AssetInfoMap& m_Assets;
  const Cairn::IAssetLookup& m_Lookup;
  const LoadComposition m_Load;
  size_t m_NestedShows = 0;
  size_t m_Items = 0;  // of all show playlists expanded, each of their markers counted
};

}  // namespace Strata
