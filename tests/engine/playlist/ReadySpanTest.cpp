// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ReadySpan.h"

#include "../../support/AssertionText.h"
#include "../../support/FakeTimeline.h"
#include "../../support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

using testsupport::Asserts;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::FakeTrack;
using testsupport::ui32_t;
using Numbers = std::vector<size_t>;

/// Ten reels of ten edit units, each with picture, sound, on-screen text and two aux data tracks.
struct ReadySpan : testing::Test {
  ReadySpan() {
    Fake.Append(Composition(1), std::vector<ui32_t>(10, 10));
    for (Strata::TimelineReel& reel : Fake.State.Timeline) {
      FakeTimeline::Add(reel.MainSound);
      FakeTimeline::Add(reel.OnScreenText);
      FakeTimeline::Add(reel.AuxData);
      FakeTimeline::Add(reel.AuxData);
    }
    Fake.Finish();
  }
  FakeTimeline Fake;
  const Strata::IPlaylist& Playlist = Fake.Playlist;

  FakeTrack& Track(size_t reel, Strata::TrackType_t type, ui32_t channel = 0) {
    return static_cast<FakeTrack&>(*Fake.Reel(reel).GetReaderForChannel(type, channel, 0));
  }
  /// The reels, by number, of whose track `test` is true.
  Numbers Where(Strata::TrackType_t type, bool (*test)(const FakeTrack&), ui32_t channel = 0) {
    Numbers numbers;
    for (size_t reel = 0; reel < 10; ++reel)
      if (test(Track(reel, type, channel))) numbers.push_back(reel);
    return numbers;
  }
  void MakeAllReady(Strata::TrackType_t type) {
    for (size_t reel = 0; reel < 10; ++reel) Track(reel, type).Ready = true;
  }
};

bool IsReady(const FakeTrack& track) {
  return track.Ready;
}
bool WasMadeReady(const FakeTrack& track) {
  return track.Calls.MakeReady == 1;
}
bool WasPutToRest(const FakeTrack& track) {
  return track.Calls.MakeDormant == 1;
}

TEST_F(ReadySpan, ReelZeroOfTenReadiesReelsZeroToTwo) {
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 9), &Fake.Picture(0));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({0, 1, 2}));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, WasMadeReady), Numbers({0, 1, 2}));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, WasPutToRest), Numbers({3}));
}

TEST_F(ReadySpan, ReelFiveOfTenReadiesReelsThreeToSeven) {
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 50), &Fake.Picture(5));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({3, 4, 5, 6, 7}));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, WasMadeReady), Numbers({3, 4, 5, 6, 7}));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, WasPutToRest), Numbers({2, 8})) << "each walk ends at the first reel at rest";
}

TEST_F(ReadySpan, LastReelReadiesTheTwoBefore) {
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 99), &Fake.Picture(9));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({7, 8, 9}));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, WasPutToRest), Numbers({6}));
}

TEST_F(ReadySpan, OnePastTheEndServesTheLastReel) {
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 100), &Fake.Picture(9));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({7, 8, 9}));
}

TEST_F(ReadySpan, ReadyReelsOutsideArePutToRestBothWays) {
  MakeAllReady(Strata::TRKT_IMAGE);
  EXPECT_NE(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 50), nullptr);
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({3, 4, 5, 6, 7}));
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, WasPutToRest), Numbers({0, 1, 2, 8, 9}));
}

TEST_F(ReadySpan, ReelAtRestShieldsThoseBehindIt) {
  MakeAllReady(Strata::TRKT_IMAGE);
  for (const size_t reel : {1u, 8u}) Track(reel, Strata::TRKT_IMAGE).Ready = false;
  EXPECT_NE(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 50), nullptr);
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({0, 3, 4, 5, 6, 7, 9}));
}

TEST_F(ReadySpan, StepToTheNextReelMovesTheSpanByOne) {
  EXPECT_NE(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 49), nullptr);
  EXPECT_NE(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 50), nullptr);
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({3, 4, 5, 6, 7}));
  EXPECT_EQ(Track(2, Strata::TRKT_IMAGE).Calls.MakeDormant, 1u);
}

TEST_F(ReadySpan, OnlyTheTypeAskedForIsTouched) {
  MakeAllReady(Strata::TRKT_SOUND);
  EXPECT_NE(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 0), nullptr);
  EXPECT_EQ(Where(Strata::TRKT_SOUND, IsReady).size(), 10u);
  EXPECT_EQ(Where(Strata::TRKT_SOUND, WasMadeReady), Numbers());
  EXPECT_EQ(Where(Strata::TRKT_AUX_DATA, WasMadeReady), Numbers());
}

TEST_F(ReadySpan, WalkGoesOnThroughSilence) {
  MakeAllReady(Strata::TRKT_SOUND);
  for (const size_t reel : {1u, 2u, 8u}) {
    Track(reel, Strata::TRKT_SOUND).Is.AlwaysPutToRest = true;
    Track(reel, Strata::TRKT_SOUND).Ready = false;
  }
  EXPECT_NE(Playlist.GetReaderForChannel(Strata::TRKT_SOUND, 0, 50), nullptr);
  EXPECT_EQ(Where(Strata::TRKT_SOUND, IsReady), Numbers({3, 4, 5, 6, 7}));
}

TEST_F(ReadySpan, ReelWithoutSoundEndsTheWalk) {
  MakeAllReady(Strata::TRKT_SOUND);
  Fake.Reel(1).MainSound.set(nullptr);
  EXPECT_NE(Playlist.GetReaderForChannel(Strata::TRKT_SOUND, 0, 50), nullptr);
  EXPECT_FALSE(Track(2, Strata::TRKT_SOUND).Ready);
  EXPECT_TRUE(Track(0, Strata::TRKT_SOUND).Ready);
}

TEST_F(ReadySpan, AuxDataOfOneReelBeyondEachSideIsPutToRest) {
  for (const ui32_t channel : {0u, 1u})
    for (size_t reel = 0; reel < 10; ++reel) Track(reel, Strata::TRKT_AUX_DATA, channel).Ready = true;
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_AUX_DATA, 1, 50), &Track(5, Strata::TRKT_AUX_DATA, 1));
  for (const ui32_t channel : {0u, 1u}) {
    EXPECT_EQ(Where(Strata::TRKT_AUX_DATA, IsReady, channel), Numbers({0, 1, 3, 4, 5, 6, 7, 9}));
    EXPECT_EQ(Where(Strata::TRKT_AUX_DATA, WasPutToRest, channel), Numbers({2, 8}));
  }
}

TEST_F(ReadySpan, TextIsServedWithoutTouchingReadiness) {
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_ON_SCREEN_TEXT, 0, 50), &Track(5, Strata::TRKT_ON_SCREEN_TEXT));
  EXPECT_EQ(Where(Strata::TRKT_ON_SCREEN_TEXT, WasMadeReady), Numbers());
  EXPECT_EQ(Where(Strata::TRKT_ON_SCREEN_TEXT, WasPutToRest), Numbers());
}

TEST_F(ReadySpan, ChannelThatIsNotThereStillMovesTheSpan) {
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 1, 50), nullptr);
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers({3, 4, 5, 6, 7}));
}

TEST_F(ReadySpan, ReelWithoutPictureInsideTheSpanIsPassedOver) {
  Fake.Reel(4).MainPicture.set(nullptr);
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 40), nullptr);
  for (const size_t reel : {2u, 3u, 5u, 6u}) EXPECT_TRUE(Fake.Picture(reel).Ready);
}

TEST_F(ReadySpan, EditUnitBeyondTheTimelineIsLoggedAndNull) {
  const testsupport::LogCapture log;
  EXPECT_EQ(Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 101), nullptr);
  ASSERT_EQ(log.Entries().size(), 1u);
  EXPECT_EQ(log.Entries()[0].Level, Ferro::LogLevel::Debug);
  EXPECT_EQ(log.Entries()[0].Message, "Playlist does not contain edit unit 101\n");
  EXPECT_EQ(Where(Strata::TRKT_IMAGE, IsReady), Numbers());
}

TEST_F(ReadySpan, ChannelCountIsTheReels) {
  Fake.Reel(3).MainPicture.set(nullptr);
  EXPECT_EQ(Playlist.GetChannelCountForType(Strata::TRKT_IMAGE, 30), 1u) << "even without a picture";
  EXPECT_EQ(Playlist.GetChannelCountForType(Strata::TRKT_AUX_DATA, 30), 2u);
  EXPECT_EQ(Playlist.GetChannelCountForType(Strata::TRKT_OFF_SCREEN_TEXT, 30), 0u);
}

TEST_F(ReadySpan, ChannelCountBeyondTheTimelineIsLoggedAndZero) {
  const testsupport::LogCapture log;
  EXPECT_EQ(Playlist.GetChannelCountForType(Strata::TRKT_IMAGE, 101), 0u);
  ASSERT_EQ(log.Entries().size(), 1u);
  EXPECT_EQ(log.Entries()[0].Level, Ferro::LogLevel::Debug);
  EXPECT_EQ(log.Entries()[0].Message, "Playlist does not contain edit unit 101\n");
}

TEST(ReadySpanShort, TimelinesBelowTheSpanAreReadyWhole) {
  for (ui32_t count = 1; count <= 3; ++count) {
    FakeTimeline fake;
    fake.Append(Composition(1), std::vector<ui32_t>(count, 10));
    EXPECT_NE(fake.Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 0), nullptr);
    for (size_t reel = 0; reel < count; ++reel) {
      EXPECT_TRUE(fake.Picture(reel).Ready);
      EXPECT_EQ(fake.Picture(reel).Calls.MakeDormant, 0u);
    }
  }
}

using ReadySpanDeathTest = ReadySpan;

TEST_F(ReadySpanDeathTest, ReelOutsideTheSpanWithoutPictureAsserts) {
  Fake.Reel(2).MainPicture.set(nullptr);
  EXPECT_DEATH((void)Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 50), Asserts("!MainPicture.empty()"));
}

TEST_F(ReadySpanDeathTest, UnknownTypeAsserts) {
  EXPECT_DEATH((void)Playlist.GetReaderForChannel(Strata::TRKT_MAX, 0, 50), Asserts("type!=type"));
}

TEST_F(ReadySpanDeathTest, ReelNumberBeyondTheTimelineAsserts) {
  Fake.Reel(5).m_PlaylistReelNumber = 20;
  EXPECT_DEATH((void)Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 50), Asserts("i1 >= 0 && i1 < ListSize"));
}

}  // namespace
