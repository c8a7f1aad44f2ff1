// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ReelSearch.h"

#include "../../support/AssertionText.h"
#include "../../support/FakeTimeline.h"
#include "../../support/LogCapture.h"

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

constexpr ui32_t ChangedComposition = Strata::PlaylistInspector::ChangedComposition;
constexpr ui32_t ChangedPosition = Strata::PlaylistInspector::ChangedPosition;

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
  EXPECT_EQ(TakeChanges(), ChangedPosition | ChangedComposition);
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
  EXPECT_EQ(fake.State.HasChanges, ChangedPosition | ChangedComposition);
  EXPECT_EQ(log.Text(), "");
}

TEST_F(Positioning, MoveInsideAReelSetsThePositionBit) {
  Playlist.MoveForward(99);
  EXPECT_EQ(TakeChanges(), ChangedPosition);
}

TEST_F(Positioning, MoveAcrossAReelBoundarySetsTheReelBitToo) {
  Playlist.MoveForward(100);
  EXPECT_EQ(TakeChanges(), ChangedPosition | ChangedComposition);
  Playlist.MoveBackward(1);
  EXPECT_EQ(TakeChanges(), ChangedPosition | ChangedComposition);
}

TEST_F(Positioning, BitsGatherUntilTheyAreTaken) {
  Playlist.MoveForward(100);
  Playlist.MoveForward(1);
  EXPECT_EQ(TakeChanges(), ChangedPosition | ChangedComposition);
}

TEST_F(Positioning, MoveIntoAnEquallyCodedCompositionIsNoChangeOfCoding) {
  const LogCapture log;
  Playlist.MoveToEditUnit(300);
  EXPECT_EQ(TakeChanges(), ChangedPosition | ChangedComposition);
  EXPECT_EQ(log.Text(), "");
  EXPECT_FALSE(Playlist.EssenceCodingChanged());
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
