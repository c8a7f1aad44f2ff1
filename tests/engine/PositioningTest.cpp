// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ReelSearch.h"

#include "../support/AssertionText.h"
#include "../support/FakeTimeline.h"
#include "../support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

using Strata::CompositionInfo;
using Strata::FindReelHavingEditUnit;
using Strata::TimelinePosition;
using Strata::TimelineReel;
using testsupport::Asserts;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::LogCapture;
using testsupport::NumberedID;
using testsupport::ui32_t;

constexpr ui32_t Largest = 0xffffffff;

/// Composition 1 with reels of 100 and 200 edit units, then composition 2 with one of 150: 450 in all.
struct Positioning : testing::Test {
  Positioning() {
    Fake.Append(Composition(1), {100, 200});
    Fake.Append(Composition(2), {150});
    Fake.Finish();
    Fake.State.HasChanges = 0;
  }
  FakeTimeline Fake;
  Strata::IPlaylist& Playlist = Fake.Playlist;

  /// The change bits, which are then cleared.
  ui32_t TakeChanges() { return std::exchange(Fake.State.HasChanges, 0u); }
};

void ExpectPosition(const TimelinePosition& at, ui32_t duration, ui32_t position, const Ferro::UUID& asset) {
  EXPECT_EQ(at.Duration, duration);
  EXPECT_EQ(at.Position, position);
  EXPECT_EQ(at.AssetID, asset);
}

// Moves.

TEST_F(Positioning, MoveForwardInsideIsNotClamped) {
  EXPECT_FALSE(Playlist.MoveForward(1));
  EXPECT_EQ(Playlist.GetPosition(), 1u);
  EXPECT_FALSE(Playlist.MoveForward(300));
  EXPECT_EQ(Playlist.GetPosition(), 301u);
}

TEST_F(Positioning, MoveForwardExactlyOntoTheLastEditUnitIsNotClamped) {
  EXPECT_FALSE(Playlist.MoveForward(449));
  EXPECT_EQ(Playlist.GetPosition(), 449u);
}

TEST_F(Positioning, MoveForwardToTheEndIsClamped) {
  EXPECT_TRUE(Playlist.MoveForward(450));
  EXPECT_EQ(Playlist.GetPosition(), 449u);
  EXPECT_EQ(TakeChanges(), 3u);
}

TEST_F(Positioning, MoveForwardByOneOnTheLastEditUnitRecomputesNothing) {
  Playlist.MoveToEditUnit(449);
  TakeChanges();
  EXPECT_TRUE(Playlist.MoveForward(1));
  EXPECT_EQ(Playlist.GetPosition(), 449u);
  EXPECT_EQ(TakeChanges(), 0u);
}

TEST_F(Positioning, MoveForwardByNothingIsNotClampedAndRecomputesNothing) {
  Playlist.MoveToEditUnit(449);
  TakeChanges();
  EXPECT_FALSE(Playlist.MoveForward(0));
  EXPECT_EQ(TakeChanges(), 0u);
}

TEST_F(Positioning, MoveForwardAddsIn32Bits) {
  Playlist.MoveToEditUnit(10);
  EXPECT_TRUE(Playlist.MoveForward(Largest - 10)) << "to the largest number";
  EXPECT_EQ(Playlist.GetPosition(), 449u);
  Playlist.MoveToEditUnit(10);
  EXPECT_FALSE(Playlist.MoveForward(Largest)) << "one less than round";
  EXPECT_EQ(Playlist.GetPosition(), 9u);
}

TEST_F(Positioning, MoveBackwardByThePositionIsNotClamped) {
  Playlist.MoveToEditUnit(120);
  EXPECT_FALSE(Playlist.MoveBackward(120));
  EXPECT_EQ(Playlist.GetPosition(), 0u);
}

TEST_F(Positioning, MoveBackwardByOneMoreThanThePositionIsClamped) {
  Playlist.MoveToEditUnit(120);
  EXPECT_TRUE(Playlist.MoveBackward(121));
  EXPECT_EQ(Playlist.GetPosition(), 0u);
}

TEST_F(Positioning, MoveBackwardAtTheStartIsClampedAndRecomputesNothing) {
  EXPECT_TRUE(Playlist.MoveBackward(1));
  EXPECT_TRUE(Playlist.MoveBackward(Largest));
  EXPECT_FALSE(Playlist.MoveBackward(0));
  EXPECT_EQ(Playlist.GetPosition(), 0u);
  EXPECT_EQ(TakeChanges(), 0u);
}

TEST_F(Positioning, MoveToEditUnitTakesAnyInside) {
  EXPECT_FALSE(Playlist.MoveToEditUnit(449));
  EXPECT_EQ(Playlist.GetPosition(), 449u);
  EXPECT_FALSE(Playlist.MoveToEditUnit(0));
  EXPECT_EQ(Playlist.GetPosition(), 0u);
}

TEST_F(Positioning, MoveToEditUnitOfTheDurationIsClamped) {
  EXPECT_TRUE(Playlist.MoveToEditUnit(450));
  EXPECT_EQ(Playlist.GetPosition(), 449u);
  EXPECT_TRUE(Playlist.MoveToEditUnit(Largest));
  EXPECT_EQ(Playlist.GetPosition(), 449u);
}

TEST_F(Positioning, MoveToThePresentPositionRecomputesNothing) {
  Playlist.MoveToEditUnit(77);
  TakeChanges();
  EXPECT_FALSE(Playlist.MoveToEditUnit(77));
  EXPECT_EQ(TakeChanges(), 0u);
}

TEST(PositioningEmpty, MovesChangeNothingAndAnswerTrue) {
  FakeTimeline fake;
  EXPECT_TRUE(fake.Playlist.MoveForward(1));
  EXPECT_TRUE(fake.Playlist.MoveForward(0));
  EXPECT_TRUE(fake.Playlist.MoveBackward(1));
  EXPECT_TRUE(fake.Playlist.MoveBackward(0));
  EXPECT_TRUE(fake.Playlist.MoveToEditUnit(0));
  EXPECT_TRUE(fake.Playlist.MoveToEditUnit(5));
  EXPECT_EQ(fake.Playlist.GetPosition(), 0u);
  EXPECT_EQ(fake.State.HasChanges, 0u);
}

// Finding reels.

TEST_F(Positioning, EachEditUnitIsFoundInItsReel) {
  const Strata::Timeline_t& timeline = Fake.State.Timeline;
  const std::map<ui32_t, size_t> expected = {{0, 0},   {1, 0},   {99, 0},  {100, 1}, {101, 1},
                                             {299, 1}, {300, 2}, {301, 2}, {449, 2}, {450, 2}};
  for (const auto& [position, reel] : expected)
    EXPECT_EQ(FindReelHavingEditUnit(timeline, position), &timeline[reel]) << position;
}

TEST_F(Positioning, OnePastTheEndIsStillTheLastReelAndTwoPastIsNone) {
  EXPECT_EQ(FindReelHavingEditUnit(Fake.State.Timeline, 450), &Fake.Reel(2));
  EXPECT_EQ(FindReelHavingEditUnit(Fake.State.Timeline, 451), nullptr);
  EXPECT_EQ(FindReelHavingEditUnit(Fake.State.Timeline, Largest), nullptr);
}

TEST_F(Positioning, FirstReelOfTheCompositionIsFoundWithIt) {
  const std::map<ui32_t, size_t> expected = {{0, 0}, {99, 0}, {100, 0}, {299, 0}, {300, 2}, {450, 2}};
  for (const auto& [position, reel] : expected) {
    const TimelineReel* first = nullptr;
    EXPECT_NE(FindReelHavingEditUnit(Fake.State.Timeline, position, &first), nullptr);
    EXPECT_EQ(first, &Fake.Reel(reel)) << position;
  }
}

TEST(ReelSearch, EmptyTimelineHasNoReel) {
  const Strata::Timeline_t timeline;
  for (const ui32_t position : {0u, 1u, Largest}) EXPECT_EQ(FindReelHavingEditUnit(timeline, position), nullptr);
}

TEST(ReelSearch, EachReelOfALongTimelineHoldsItsEditUnits) {
  FakeTimeline fake;
  std::vector<ui32_t> durations;
  for (ui32_t i = 0; i < 200; ++i) durations.push_back(1 + i % 3);
  fake.Append(Composition(1), durations);
  for (const TimelineReel& reel : fake.State.Timeline)
    for (ui32_t position = reel.m_Offset; position < reel.m_Offset + reel.m_Duration; ++position)
      ASSERT_EQ(FindReelHavingEditUnit(fake.State.Timeline, position), &reel) << position;
}

TEST(ReelSearch, ReelsWithoutEditUnitsNeverHideTheReelBehindThem) {
  FakeTimeline fake;
  fake.Append(Composition(1), {5, 0, 0, 5, 0});
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 4), &fake.Reel(0));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 5), &fake.Reel(3));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 9), &fake.Reel(3));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 10), &fake.Reel(4)) << "one past the end";
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 11), nullptr);
}

TEST(ReelSearch, TimelineUpToTheLargestNumberIsSearchedWhole) {
  FakeTimeline fake;
  fake.Append(Composition(1), {0x80000000, 0x7fffffff});
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0x7fffffff), &fake.Reel(0));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0x80000000), &fake.Reel(1));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0xfffffffe), &fake.Reel(1));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0xffffffff), &fake.Reel(1)) << "one past the end";
}

// Counters.

TEST_F(Positioning, FirstComputationSetsEveryCounter) {
  ExpectPosition(Fake.State.ShowPosition, 450, 0, Ferro::UUID());
  EXPECT_FALSE(Fake.State.ShowPosition.AssetID.HasValue());
  ExpectPosition(Fake.State.CPLPosition, 300, 0, NumberedID(1));
  ExpectPosition(Fake.State.ReelPosition, 100, 0, NumberedID(1000));
  EXPECT_EQ(Fake.State.CurrentReel, &Fake.Reel(0));
}

TEST_F(Positioning, CountersFollowThePosition) {
  Playlist.MoveToEditUnit(250);
  ExpectPosition(Fake.State.ShowPosition, 450, 250, Ferro::UUID());
  ExpectPosition(Fake.State.CPLPosition, 300, 250, NumberedID(1));
  ExpectPosition(Fake.State.ReelPosition, 200, 150, NumberedID(1001));
  EXPECT_EQ(Fake.State.CurrentReel, &Fake.Reel(1));

  Playlist.MoveToEditUnit(310);
  ExpectPosition(Fake.State.CPLPosition, 150, 10, NumberedID(2));
  ExpectPosition(Fake.State.ReelPosition, 150, 10, NumberedID(1002));
  EXPECT_EQ(Fake.State.CurrentReel, &Fake.Reel(2));
}

TEST_F(Positioning, CompositionRecordNamesTheCurrentReelFromOne) {
  const CompositionInfo& first = Fake.State.Compositions.at(NumberedID(1));
  const CompositionInfo& second = Fake.State.Compositions.at(NumberedID(2));
  Playlist.MoveToEditUnit(100);
  EXPECT_EQ(first.CurrentReel, 2u);
  Playlist.MoveToEditUnit(300);
  EXPECT_EQ(first.CurrentReel, 2u) << "where it was left";
  EXPECT_EQ(second.CurrentReel, 1u);
  Playlist.MoveToEditUnit(99);
  EXPECT_EQ(first.CurrentReel, 1u);
}

TEST(PositioningTwice, SecondAppearanceOfACompositionCountsFromItsOwnFirstReel) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10, 20});
  fake.Append(Composition(1), {10, 20});
  fake.Finish();
  fake.Playlist.MoveToEditUnit(45);
  ExpectPosition(fake.State.CPLPosition, 30, 15, NumberedID(1));
  ExpectPosition(fake.State.ReelPosition, 20, 5, NumberedID(1003));
  fake.Playlist.MoveToEditUnit(30);
  ExpectPosition(fake.State.CPLPosition, 30, 0, NumberedID(1));
  ExpectPosition(fake.State.ReelPosition, 10, 0, NumberedID(1002));
}

// Change bits.

TEST(PositioningChanges, FirstComputationSetsPositionAndCompositionBitsOnly) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10});
  const LogCapture log;
  fake.State.AdjustCounters();
  EXPECT_EQ(fake.State.HasChanges, 3u);
  EXPECT_EQ(log.Text(), "");
}

TEST_F(Positioning, MoveInsideAReelSetsThePositionBit) {
  Playlist.MoveForward(99);
  EXPECT_EQ(TakeChanges(), 1u);
}

TEST_F(Positioning, MoveAcrossAReelBoundarySetsTheReelBitToo) {
  Playlist.MoveForward(100);
  EXPECT_EQ(TakeChanges(), 3u);
  Playlist.MoveBackward(1);
  EXPECT_EQ(TakeChanges(), 3u);
}

TEST_F(Positioning, BitsGatherUntilTheyAreTaken) {
  Playlist.MoveForward(100);
  Playlist.MoveForward(1);
  EXPECT_EQ(TakeChanges(), 3u);
}

TEST_F(Positioning, MoveIntoAnEquallyCodedCompositionIsNoChangeOfCoding) {
  const LogCapture log;
  Playlist.MoveToEditUnit(300);
  EXPECT_EQ(TakeChanges(), 3u);
  EXPECT_EQ(log.Text(), "");
  EXPECT_FALSE(Playlist.EssenceCodingChanged());
}

struct CodingChange : testing::Test {
  /// Moves from a composition of the first size into one of the second; answers the change bits.
  static ui32_t Changes(Strata::ImageEssenceChangeMode_t mode, ui32_t width_1, ui32_t height_1, ui32_t width_2,
                        ui32_t height_2) {
    FakeTimeline fake;
    for (const auto& [number, width, height] : {std::tuple(1u, width_1, height_1), std::tuple(2u, width_2, height_2)}) {
      CompositionInfo info = Composition(number);
      info.ImageWidth = width;
      info.ImageHeight = height;
      fake.Append(info, {10});
    }
    fake.State.ChangeMode = mode;
    fake.Finish();
    fake.State.HasChanges = 0;
    fake.Playlist.MoveToEditUnit(10);
    return fake.State.HasChanges;
  }
};

TEST_F(CodingChange, IsAWidthAcross2048In2KTo4KMode) {
  EXPECT_EQ(Changes(Strata::EECM_2K_4K, 2048, 1080, 2049, 1080), 7u);
  EXPECT_EQ(Changes(Strata::EECM_2K_4K, 4096, 2160, 2048, 1080), 7u);
}

TEST_F(CodingChange, IsNoChangeOfSizeWithin2KIn2KTo4KMode) {
  EXPECT_EQ(Changes(Strata::EECM_2K_4K, 1998, 1080, 2048, 858), 3u);
}

TEST_F(CodingChange, IsAnyChangeOfWidthOrHeightInAnyMode) {
  EXPECT_EQ(Changes(Strata::EECM_ANY, 1998, 1080, 2048, 1080), 7u);
  EXPECT_EQ(Changes(Strata::EECM_ANY, 2048, 858, 2048, 1080), 7u);
  EXPECT_EQ(Changes(Strata::EECM_ANY, 2048, 1080, 2048, 1080), 3u);
}

TEST_F(CodingChange, IsNoChangeOfSizeInNoneMode) {
  EXPECT_EQ(Changes(Strata::EECM_NONE, 2048, 1080, 4096, 2160), 3u);
}

TEST_F(CodingChange, IsLoggedAndAnsweredOnce) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10});
  CompositionInfo stereo = Composition(2);
  stereo.ImageFormat = Cairn::FT_QUIRE_JP2K_J2C_S;
  fake.Append(stereo, {10});
  fake.Finish();
  const LogCapture log;
  fake.Playlist.MoveToEditUnit(10);
  ASSERT_EQ(log.Entries().size(), 1u);
  EXPECT_EQ(log.Entries()[0].Level, Ferro::LogLevel::Debug);
  EXPECT_EQ(log.Entries()[0].Message, "Essence format has changed.\n");
  EXPECT_TRUE(fake.Playlist.EssenceCodingChanged());
  EXPECT_FALSE(fake.Playlist.EssenceCodingChanged());
  EXPECT_EQ(fake.State.HasChanges, 3u) << "the other bits stay";
}

TEST_F(CodingChange, NeverComesWithTheFirstComputation) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10});
  CompositionInfo stereo = Composition(2);
  stereo.ID = Ferro::UUID::FromHex("00000000-0000-0000-0000-000000000000").value();
  stereo.ImageFormat = Cairn::FT_QUIRE_JP2K_J2C_S;
  fake.Append(stereo, {10});
  fake.Finish();
  EXPECT_FALSE(fake.Playlist.EssenceCodingChanged());
  fake.Playlist.MoveToEditUnit(10);
  EXPECT_TRUE(fake.Playlist.EssenceCodingChanged());
}

TEST_F(CodingChange, IsDecidedFromTheCompositionBeforeTheMove) {
  FakeTimeline fake;
  CompositionInfo large = Composition(2);
  large.ImageWidth = 4096;
  fake.Append(Composition(1), {10});
  fake.Append(large, {10});
  fake.Append(Composition(3), {10});
  fake.Finish();
  fake.Playlist.MoveToEditUnit(20);
  EXPECT_FALSE(fake.Playlist.EssenceCodingChanged()) << "the composition between was jumped over";
  fake.Playlist.MoveBackward(1);
  EXPECT_TRUE(fake.Playlist.EssenceCodingChanged());
}

// Translations.

TEST_F(Positioning, ShowPositionTranslatesToItsReel) {
  const std::map<ui32_t, ui32_t> expected = {{0, 0},   {99, 99},   {100, 0},   {299, 199},
                                             {300, 0}, {449, 149}, {450, 150}, {451, 0}};
  for (const auto& [show, reel] : expected) EXPECT_EQ(Playlist.TranslateReelPosition(show), reel) << show;
}

struct Translation {
  ui32_t ReelPosition = 1;
  ui32_t ReelNumber = 2;
  ui32_t ReelDuration = 3;
  Ferro::UUID CompositionID = NumberedID(4);
  QUIRE::Rational EditRate{5, 6};
  bool DistinctCoding = true;

  explicit Translation(const Strata::IPlaylist& playlist, ui32_t position) {
    playlist.TranslateReelPosition(position, ReelPosition, ReelNumber, ReelDuration, CompositionID, EditRate,
                                   DistinctCoding);
  }
};

TEST_F(Positioning, ShowPositionTranslatesToItsReelInFull) {
  Fake.Reel(2).m_StartDistinctCoding = true;
  const Translation second(Playlist, 250);
  EXPECT_EQ(second.ReelPosition, 150u);
  EXPECT_EQ(second.ReelNumber, 1u);
  EXPECT_EQ(second.ReelDuration, 200u);
  EXPECT_EQ(second.CompositionID, NumberedID(1));
  EXPECT_EQ(second.EditRate, QUIRE::Rational(24, 1));
  EXPECT_FALSE(second.DistinctCoding);
  const Translation third(Playlist, 300);
  EXPECT_EQ(third.ReelPosition, 0u);
  EXPECT_EQ(third.ReelNumber, 0u);
  EXPECT_EQ(third.CompositionID, NumberedID(2));
  EXPECT_TRUE(third.DistinctCoding);
}

TEST_F(Positioning, TranslationBeyondTheEndClearsEveryOutput) {
  const Translation none(Playlist, 451);
  EXPECT_EQ(none.ReelPosition, 0u);
  EXPECT_EQ(none.ReelNumber, 0u);
  EXPECT_EQ(none.ReelDuration, 0u);
  EXPECT_FALSE(none.CompositionID.HasValue());
  EXPECT_EQ(none.CompositionID, Ferro::UUID());
  EXPECT_EQ(none.EditRate, QUIRE::Rational(0, 0));
  EXPECT_FALSE(none.DistinctCoding);
}

TEST_F(Positioning, CompositionRecordIsFoundByPosition) {
  EXPECT_EQ(&Playlist.GetCompositionInfoForPosition(299), &Fake.State.Compositions.at(NumberedID(1)));
  EXPECT_EQ(&Playlist.GetCompositionInfoForPosition(300), &Fake.State.Compositions.at(NumberedID(2)));
  Playlist.MoveToEditUnit(320);
  EXPECT_EQ(&Playlist.GetCompositionInfoForCurrentPosition(), &Fake.State.Compositions.at(NumberedID(2)));
}

TEST_F(Positioning, CompositionRecordBeyondTheEndIsOneEmptyObject) {
  const CompositionInfo& none = Playlist.GetCompositionInfoForPosition(451);
  EXPECT_FALSE(none.ID.HasValue());
  EXPECT_EQ(none.Title, "");
  EXPECT_EQ(none.Duration, 0u);
  EXPECT_EQ(none.CurrentReel, 0u);
  EXPECT_EQ(&Playlist.GetCompositionInfoForPosition(Largest), &none);
  const FakeTimeline empty;
  EXPECT_EQ(&empty.Playlist.GetCompositionInfoForCurrentPosition(), &none);
}

// Essence parameters.

TEST_F(Positioning, EssenceParametersAreTheCurrentReels) {
  FakeTimeline::Add(Fake.Reel(1).MainSound);
  auto& sound = FakeTimeline::Fake(Fake.Reel(1).MainSound).Is;
  sound.ChannelCount = 6;
  sound.ChannelAssignment.Set(NumberedID(7).Value());
  sound.MCALabelString = "51(L,R,C,LFE,Ls,Rs)";
  Fake.Picture(1).Is.ImageWidth = 1998;
  Fake.Picture(1).Is.ImageHeight = 1080;
  Fake.Picture(1).Is.HasStereoImage = true;
  Playlist.MoveToEditUnit(100);

  Strata::EssenceParams params;
  Playlist.GetCurrentReelEssenceInfo(params);
  EXPECT_EQ(params.AudioChannelCount, 6u);
  EXPECT_EQ(params.ChannelAssignment, sound.ChannelAssignment);
  EXPECT_EQ(params.MCALabelString, "51(L,R,C,LFE,Ls,Rs)");
  EXPECT_EQ(params.ImageSize, QUIRE::Rational(1998, 1080));
  EXPECT_TRUE(params.StereoscopicImage);

  Playlist.MoveToEditUnit(0);
  Playlist.GetCurrentReelEssenceInfo(params);
  EXPECT_EQ(params.AudioChannelCount, 0u) << "a reel without sound clears what was there";
  EXPECT_FALSE(params.ChannelAssignment.HasValue());
  EXPECT_EQ(params.MCALabelString, "");
  EXPECT_EQ(params.ImageSize, QUIRE::Rational(0, 0));
  EXPECT_FALSE(params.StereoscopicImage);
}

TEST_F(Positioning, OpenTextOfAnyReelIsShownAndNeverCleared) {
  Strata::EssenceParams params;
  Playlist.GetCurrentReelEssenceInfo(params);
  EXPECT_FALSE(params.OpenTextStatus);
  params.OpenTextStatus = true;
  Playlist.GetCurrentReelEssenceInfo(params);
  EXPECT_TRUE(params.OpenTextStatus) << "the caller's value survives";

  FakeTimeline::Add(Fake.Reel(2).OnScreenText);
  params.OpenTextStatus = false;
  Playlist.GetCurrentReelEssenceInfo(params);
  EXPECT_TRUE(params.OpenTextStatus) << "text of a reel that is not current";
}

TEST_F(Positioning, ClosedTextStatusIsLeftAlone) {
  FakeTimeline::Add(Fake.Reel(0).OffScreenText);
  Strata::EssenceParams params;
  params.ClosedTextStatus = {false, true, false, true, false, true};
  const auto before = params.ClosedTextStatus;
  Playlist.GetCurrentReelEssenceInfo(params);
  EXPECT_EQ(params.ClosedTextStatus, before);
  EXPECT_FALSE(params.OpenTextStatus) << "closed text is no open text";
}

TEST_F(Positioning, StereoscopyOfTheShowIsAnswered) {
  EXPECT_FALSE(Playlist.HasStereoImage());
  Fake.State.HasStereoImage = true;
  EXPECT_TRUE(Playlist.HasStereoImage());
}

// Broken invariants.

using PositioningDeathTest = Positioning;

TEST_F(PositioningDeathTest, PositionOutsideTheReelsAsserts) {
  Fake.State.ShowPosition.Duration = 1000;
  EXPECT_DEATH(Playlist.MoveToEditUnit(451), Asserts("Reel"));
}

TEST_F(PositioningDeathTest, ReelOfAnUnknownCompositionAsserts) {
  Fake.State.Compositions.erase(NumberedID(2));
  EXPECT_DEATH(Playlist.MoveToEditUnit(300), Asserts("cmi != m_CompositionInfo.end()"));
  EXPECT_DEATH(static_cast<void>(Playlist.GetCompositionInfoForPosition(300)),
               Asserts("cmi != m_CompositionInfo.end()"));
}

TEST_F(PositioningDeathTest, PositionBeforeTheFirstReelAsserts) {
  Fake.Reel(0).m_Offset = 10;
  for (const ui32_t position : {5u, 10u})
    EXPECT_DEATH((void)FindReelHavingEditUnit(Fake.State.Timeline, position), Asserts("ri != m_Timeline.begin()"));
}

TEST_F(PositioningDeathTest, ReelThatStartsAfterItsPositionAsserts) {
  Fake.Reel(0).m_Offset = 10;
  EXPECT_DEATH((void)Playlist.TranslateReelPosition(0), Asserts("pos >= reel->m_Offset"));
  EXPECT_DEATH(Translation(Playlist, 0), Asserts("show_position >= reel->m_Offset"));
}

TEST_F(PositioningDeathTest, EssenceParametersWithoutAPictureAssert) {
  Fake.Reel(0).MainPicture.set(nullptr);
  Strata::EssenceParams params;
  EXPECT_DEATH(Playlist.GetCurrentReelEssenceInfo(params), Asserts("!CurrentReel()->MainPicture.empty()"));
}

TEST(PositioningEmptyDeathTest, EssenceParametersBeforeTheFirstComputationAssert) {
  const FakeTimeline fake;
  Strata::EssenceParams params;
  EXPECT_DEATH(fake.Playlist.GetCurrentReelEssenceInfo(params), Asserts("CurrentReel()"));
}

}  // namespace
