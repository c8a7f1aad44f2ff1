// SPDX-License-Identifier: BSD-3-Clause
// What initialisation does to a playlist that has been initialised before.
#include "../../support/AssertionText.h"
#include "PlaylistInitialisationFixture.h"

#include <QUIRE/Result.h>

namespace StrataTest {
namespace {

using testsupport::Asserts;

/// A playlist of two reels with an event, standing in the second reel.
class InitialisationState : public PlaylistInitialisation {
 protected:
  InitialisationState() : Loaded(Composition(2)) {
    ShowPlaylist spl = Show();
    AddComposition(spl, Loaded.ID).MarkerList.push_back(Marker("M", 3));
    EXPECT_EQ(InitShow(spl), Ferro::RESULT_OK);
    EXPECT_FALSE(Playlist.MoveToEditUnit(7));
  }
  void ExpectLoaded() const {
    EXPECT_EQ(State.Timeline.size(), 2u);
    ASSERT_NE(State.CurrentReel, nullptr);
    EXPECT_EQ(State.CurrentReel, &State.Timeline[1]);
    ExpectPosition(State.ShowPosition, 10, 7, false);
    ExpectPosition(State.CPLPosition, 10, 7, true);
    ExpectPosition(State.ReelPosition, 5, 2, true);
  }
  void ExpectEmptied() const {
    EXPECT_TRUE(State.Timeline.empty());
    EXPECT_EQ(State.CurrentReel, nullptr);
    for (const auto* position : {&State.ShowPosition, &State.CPLPosition, &State.ReelPosition})
      ExpectPosition(*position, 0, 0, false);
  }
  /// Events, composition records and the reel count.
  void ExpectRecordsKept() const {
    EXPECT_EQ(Events(), "M@3");
    EXPECT_EQ(State.Compositions.size(), 1u);
    EXPECT_EQ(State.Compositions.count(Loaded.ID), 1u);
    EXPECT_EQ(State.ReelCount, 2u);
  }
  const AssetInfo Loaded;

 private:
  static void ExpectPosition(const Strata::TimelinePosition& position, Ferro::ui32_t duration, Ferro::ui32_t at,
                             bool has_asset) {
    EXPECT_EQ(position.Duration, duration);
    EXPECT_EQ(position.Position, at);
    EXPECT_EQ(position.AssetID.HasValue(), has_asset);
  }
};

TEST_F(InitialisationState, TextEmptiesTheTimelineAndResetsThePositions) {
  ExpectLoaded();
  EXPECT_EQ(InitText("no document"), QUIRE::RESULT_FORMAT);
  ExpectEmptied();
}

TEST_F(InitialisationState, ListEmptiesTheTimelineAndResetsThePositions) {
  EXPECT_EQ(InitList({Ferro::UUID::Random()}), Ferro::RESULT_NOT_FOUND);
  ExpectEmptied();
}

TEST_F(InitialisationState, TextKeepsEventsCompositionRecordsAndTheReelCount) {
  EXPECT_EQ(InitText("no document"), QUIRE::RESULT_FORMAT);
  ExpectRecordsKept();
}

TEST_F(InitialisationState, ListKeepsEventsCompositionRecordsAndTheReelCount) {
  EXPECT_EQ(InitList({Ferro::UUID::Random()}), Ferro::RESULT_NOT_FOUND);
  ExpectRecordsKept();
}

TEST_F(InitialisationState, EmptyTextLeavesAllAsItWas) {
  EXPECT_EQ(InitText(""), Strata::RESULT_SX_EMPTY_PL);
  ExpectLoaded();
  ExpectRecordsKept();
}

TEST_F(InitialisationState, EmptyListLeavesAllAsItWas) {
  EXPECT_EQ(InitList({}), Strata::RESULT_SX_EMPTY_PL);
  ExpectLoaded();
  ExpectRecordsKept();
}

TEST_F(InitialisationState, ShowWithoutReelsEmptiesTheIdentifierLists) {
  EXPECT_EQ(InitShow(Show()), Ferro::RESULT_PARAM);
  ExpectEmptied();
  Ferro::UUIDList ids;
  Playlist.GetCPLIDList(ids);
  EXPECT_TRUE(ids.empty());
  EXPECT_EQ(Playlist.GetDurationSeconds(), 0u);
}

using InitialisationStateDeathTest = InitialisationState;

TEST_F(InitialisationStateDeathTest, ReelsOfASecondInitialisationAssert) {
  EXPECT_DEATH(static_cast<void>(InitList({Loaded.ID})), Asserts("m_ReelCount == m_Timeline.size()"));
}

}  // namespace
}  // namespace StrataTest
