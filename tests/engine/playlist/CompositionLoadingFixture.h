// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../../support/FakeTimeline.h"
#include "../../support/LogCapture.h"
#include "../../support/PackageMaker.h"

#include "Playlist/CompositionLoading.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace StrataTest {

using Cairn::AssetInfo;
using Cairn::AuxDataAsset;
using Cairn::CompositionPlaylist;
using Cairn::Reel;
using Cairn::SoundAsset;
using Cairn::TimedTextAsset;
using QUIRE::Rational;
using testsupport::AssetOf;
using testsupport::PackageMaker;
using testsupport::ReelOf;
using testsupport::TrackFileSpec;
using testsupport::TrackKind;

/// The track files that the tests share, each written when first asked for.
class Files {
 public:
  static PackageMaker& Package() {
    static PackageMaker package;
    return package;
  }
  static const AssetInfo& Of(TrackKind kind) {
    static std::map<TrackKind, AssetInfo> made;
    const auto known = made.find(kind);
    return known != made.end() ? known->second : made.emplace(kind, Package().Track(kind)).first->second;
  }
};

inline const AssetInfo& Picture() {
  return Files::Of(TrackKind::Picture);
}

template <class EditT>
TrackFileSpec Spec(EditT edit) {
  TrackFileSpec spec;
  edit(spec);
  return spec;
}

class CompositionLoading : public testing::Test {
 protected:
  CompositionLoading() : CPL(testsupport::EmptyComposition("Title")) { static_cast<void>(Picture()); }

  Reel& AddReel(const AssetInfo& picture = Picture(), Ferro::ui32_t duration = 5) {
    CPL.ReelList.push_back(ReelOf(picture, duration));
    return CPL.ReelList.back();
  }

  Strata::Result_t Load(const CompositionPlaylist& cpl) {
    for (const auto& [id, info] : Files::Package().Lookup.Table) Lookup.Table.try_emplace(id, info);
    for (const auto& id : Unknown) Lookup.Table.erase(id);
    for (const auto& info : Replaced) Lookup.Table[info.ID] = info;
    Strata::CompositionLoader loader({State.Timeline, State.ReelCount, State.ShowPosition.Duration, State.Compositions,
                                      State.HasStereoImage, State.PictureType, State.ChangeMode, State.LastCPL,
                                      State.LastCPLAssets});
    const testsupport::LogCapture log;
    const auto result = loader.InitWithCPL(cpl, Lookup);
    Log = log.TextWithLevels();
    return result;
  }
  Strata::Result_t Load() { return Load(CPL); }

  /// The composition fails with this result, logging just that after the first line, and leaves `reels` reels.
  void ExpectFailure(const Strata::Result_t& result, const std::string& line, size_t reels = 1) {
    EXPECT_EQ(Load(), result);
    EXPECT_EQ(Log, Loading() + line);
    EXPECT_EQ(State.Timeline.size(), reels);
    EXPECT_EQ(State.ReelCount, reels);
    EXPECT_TRUE(State.Compositions.empty());
    EXPECT_TRUE(Lookup.FlagWasAlwaysSet);
  }
  void ExpectSuccess(const std::string& lines = "") {
    EXPECT_EQ(Load(), Ferro::RESULT_OK);
    EXPECT_EQ(Log, Loading() + lines);
    EXPECT_EQ(State.Compositions.count(CPL.ID), 1u);
  }
  [[nodiscard]] std::string ID() const { return CPL.ID.EncodeString(); }
  [[nodiscard]] std::string Loading() const { return "I Loading CPL " + ID() + "\n"; }
  /// How messages end: the reel and the composition.
  [[nodiscard]] std::string In(int reel) const { return " reel " + std::to_string(reel) + " of " + ID(); }

  CompositionPlaylist CPL;
  std::vector<Ferro::UUID> Unknown;
  std::vector<AssetInfo> Replaced;
  testsupport::TableLookup Lookup;
  Strata::h__Playlist Playlist;
  Strata::PlaylistInspector State{Playlist};
  std::string Log;
};

}  // namespace StrataTest
