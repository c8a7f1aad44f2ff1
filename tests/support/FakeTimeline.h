// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FakeTrack.h"
#include "LogCapture.h"

#include "Playlist/h__Playlist.h"

#include <array>
#include <cstdlib>
#include <iostream>
#include <vector>

namespace Strata {

/// Opens a playlist's state to tests.
struct PlaylistInspector {
  // The bits of HasChanges.
  static constexpr ui32_t ChangedPosition = h__Playlist::ChangedPosition;
  static constexpr ui32_t ChangedComposition = h__Playlist::ChangedComposition;
  static constexpr ui32_t ChangedEssenceCoding = h__Playlist::ChangedEssenceCoding;
  static constexpr ui32_t ChangedAll = ChangedPosition | ChangedComposition | ChangedEssenceCoding;

  explicit PlaylistInspector(h__Playlist& playlist)
      : m_Playlist(playlist),
        Timeline(playlist.m_Timeline),
        Events(playlist.m_EventList),
        HasChanges(playlist.m_HasChanges),
        CurrentReel(playlist.m_CurrentReel),
        ReelCount(playlist.m_ReelCount),
        PictureType(playlist.m_PictureType),
        Compositions(playlist.m_CompositionInfo),
        HasStereoImage(playlist.m_HasStereoImage),
        ShowPosition(playlist.m_ShowPosition),
        CPLPosition(playlist.m_CPLPosition),
        ReelPosition(playlist.m_ReelPosition),
        ChangeMode(playlist.m_ImageEssenceChangeMode),
        LastCPL(playlist.m_ThisCPL_ID),
        LastCPLAssets(playlist.m_ThisCPL_AssetList) {}

  [[nodiscard]] Result_t FixupPlaylist() { return m_Playlist.FixupPlaylist(); }
  void AdjustCounters() { m_Playlist.AdjustCounters(); }

 private:
  h__Playlist& m_Playlist;

 public:
  Timeline_t& Timeline;
  EventList& Events;
  ui32_t& HasChanges;
  const TimelineReel*& CurrentReel;
  ui32_t& ReelCount;
  Cairn::FileType_t& PictureType;
  CompositionInfoMap& Compositions;
  bool& HasStereoImage;
  TimelinePosition& ShowPosition;
  TimelinePosition& CPLPosition;
  TimelinePosition& ReelPosition;
  ImageEssenceChangeMode_t& ChangeMode;
  UUID& LastCPL;
  Cairn::AssetInfoList& LastCPLAssets;
};

}  // namespace Strata

namespace testsupport {

using Ferro::ui32_t;

/// 00000000-0000-4000-8000-0000 and eight digits: the identifier that stands for `number`.
inline Ferro::UUID NumberedID(ui32_t number) {
  std::array<Ferro::ui8_t, 16> bytes{};
  bytes[6] = 0x40;
  bytes[8] = 0x80;
  for (size_t i = 0; i < 4; ++i) bytes[15 - i] = static_cast<Ferro::ui8_t>(number >> (8 * i));
  return Ferro::UUID(std::span<const Ferro::ui8_t, 16>(bytes));
}

/// A composition of 24 edit units per second, JPEG 2000 of 2048 by 1080, six sound channels.
inline Strata::CompositionInfo Composition(ui32_t number) {
  Strata::CompositionInfo info;
  info.ID = NumberedID(number);
  info.Title = "Composition " + std::to_string(number);
  info.EditRate = QUIRE::Rational(24, 1);
  info.CurrentReel = 1;
  info.ImageFormat = Cairn::FT_QUIRE_JP2K_J2C;
  info.ImageWidth = 2048;
  info.ImageHeight = 1080;
  info.SoundFormat = 6;
  return info;
}

/// A playlist whose reels are made of fake tracks.
class FakeTimeline {
 public:
  Strata::h__Playlist Playlist;
  Strata::PlaylistInspector State{Playlist};

  /// Appends an appearance of a composition: per duration one reel, which has a picture track and nothing else. Reel n of
  /// the timeline has the identifier 1000 + n, and 2000 + n within its composition.
  void Append(Strata::CompositionInfo info, const std::vector<ui32_t>& durations) {
    ui32_t number = 0;
    for (const ui32_t duration : durations) {
      const auto index = static_cast<ui32_t>(State.Timeline.size());
      Strata::TimelineReel reel;
      reel.m_ID = NumberedID(1000 + index);
      reel.m_CPL = info.ID;
      reel.m_CPLReelID = NumberedID(2000 + index);
      reel.m_CPLReelNumber = number++;
      reel.m_PlaylistReelNumber = index;
      reel.m_Duration = duration;
      reel.m_Offset = State.ShowPosition.Duration;
      reel.m_EditRate = info.EditRate;
      FakeTrack& picture = Add(reel.MainPicture);
      picture.Is.Duration = duration;
      picture.Is.EditRate = info.EditRate;
      State.Timeline.push_back(reel);
      State.ReelCount = index + 1;
      State.ShowPosition.Duration += duration;
      info.Duration += duration;
    }
    info.TotalReels = number;
    State.Compositions.emplace(info.ID, info);
  }

  /// Completes the timeline as initialisation does; what that logs is dropped.
  void Finish() {
    const LogCapture log;
    if (State.FixupPlaylist() == Ferro::RESULT_OK) return;
    std::cerr << "a fake timeline could not be completed\n";
    std::abort();
  }

  static FakeTrack& Add(Strata::TrackPtr& slot, FakeTrack::Facts facts = {}) {
    auto* track = new FakeTrack(std::move(facts));
    slot.set(track);
    return *track;
  }
  static FakeTrack& Add(std::vector<Strata::TrackPtr>& list, FakeTrack::Facts facts = {}) {
    list.emplace_back();
    return Add(list.back(), std::move(facts));
  }
  static FakeTrack& Fake(const Strata::TrackPtr& slot) { return static_cast<FakeTrack&>(*slot); }

  [[nodiscard]] Strata::TimelineReel& Reel(size_t index) { return State.Timeline.at(index); }
  [[nodiscard]] FakeTrack& Picture(size_t index) { return Fake(Reel(index).MainPicture); }
};

}  // namespace testsupport
