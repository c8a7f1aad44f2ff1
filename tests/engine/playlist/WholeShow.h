// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <Strata/PlaylistEvent.h>
#include <Strata/ShowPlaylist.h>

#include <Cairn/AssetStore.h>
#include <Cairn/CompositionPlaylist.h>

#include <optional>
#include <string>
#include <vector>

namespace testsupport {

/// A track file of the show, by what it was written from.
struct ShowTrack {
  TrackKind Kind;
  TrackFileSpec Spec;
};

/// A reel of the show, in the order in which the timeline has to have them.
struct ShowReel {
  size_t Composition = 0;
  QUIRE::ui32_t Offset = 0;    ///< in the show
  QUIRE::ui32_t Duration = 0;  ///< edit units that play
  std::optional<ShowTrack> Picture;
  std::optional<ShowTrack> Sound;  ///< none: silence
  std::optional<ShowTrack> Subtitle;
  std::vector<ShowTrack> Captions;
  std::vector<ShowTrack> Data;
};

/// A show on disk: six compositions of different formats, 40 reels, a nested show playlist and markers of every sort.
/// Every track file has one edit unit before and one after those that play.
class WholeShow {
 public:
  static constexpr QUIRE::ui32_t EntryPoint = 1;

  WholeShow();

  Cairn::AssetStore Store;
  std::string Document;  ///< the outer show playlist
  std::vector<ShowReel> Reels;
  std::vector<Strata::PlaylistEvent> Events;  ///< in the order in which they have to fire
  [[nodiscard]] QUIRE::ui32_t Duration() const { return Reels.back().Offset + Reels.back().Duration; }
  [[nodiscard]] size_t ReelAt(QUIRE::ui32_t position) const;

 private:
  struct Format;
  Ferro::UUID MakeComposition(const Format& format);
  Cairn::Reel MakeReel(const Format& format, size_t number);
  template <class AssetT>
  ShowTrack MakeAsset(AssetT& asset, const Format& format, TrackKind kind);
  void MakeShows(const std::vector<Ferro::UUID>& compositions);
  void Expect(const std::string& label, QUIRE::ui32_t position);

  TemporaryFolder m_Folder;
  QUIRE::ui32_t m_LastNumber = 0;
};

}  // namespace testsupport
