// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ReelSearch.h"

#include "../../support/AssertionText.h"
#include "../../support/FakeTimeline.h"

#include <gtest/gtest.h>

namespace {

using Strata::FindReelHavingEditUnit;
using Strata::TimelineReel;
using testsupport::Asserts;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::ui32_t;

constexpr ui32_t Largest = 0xffffffff;

/// Composition 1 with reels of 100 and 200 edit units, then composition 2 with one of 150: 450 in all.
struct ReelSearch : testing::Test {
  ReelSearch() {
    Fake.Append(Composition(1), {100, 200});
    Fake.Append(Composition(2), {150});
  }
  FakeTimeline Fake;
};

TEST_F(ReelSearch, EachEditUnitIsFoundInItsReel) {
  const Strata::Timeline_t& timeline = Fake.State.Timeline;
  const std::map<ui32_t, size_t> expected = {{0, 0},   {1, 0},   {99, 0},  {100, 1}, {101, 1},
                                             {299, 1}, {300, 2}, {301, 2}, {449, 2}, {450, 2}};
  for (const auto& [position, reel] : expected)
    EXPECT_EQ(FindReelHavingEditUnit(timeline, position), &timeline[reel]) << position;
}

TEST_F(ReelSearch, OnePastTheEndIsStillTheLastReelAndTwoPastIsNone) {
  EXPECT_EQ(FindReelHavingEditUnit(Fake.State.Timeline, 450), &Fake.Reel(2));
  EXPECT_EQ(FindReelHavingEditUnit(Fake.State.Timeline, 451), nullptr);
  EXPECT_EQ(FindReelHavingEditUnit(Fake.State.Timeline, Largest), nullptr);
}

TEST_F(ReelSearch, FirstReelOfTheCompositionIsFoundWithIt) {
  const std::map<ui32_t, size_t> expected = {{0, 0}, {99, 0}, {100, 0}, {299, 0}, {300, 2}, {450, 2}};
  for (const auto& [position, reel] : expected) {
    const TimelineReel* first = nullptr;
    EXPECT_NE(FindReelHavingEditUnit(Fake.State.Timeline, position, &first), nullptr);
    EXPECT_EQ(first, &Fake.Reel(reel)) << position;
  }
}

TEST(ReelSearchAlone, EmptyTimelineHasNoReel) {
  const Strata::Timeline_t timeline;
  for (const ui32_t position : {0u, 1u, Largest}) EXPECT_EQ(FindReelHavingEditUnit(timeline, position), nullptr);
}

TEST(ReelSearchAlone, EachReelOfALongTimelineHoldsItsEditUnits) {
  FakeTimeline fake;
  std::vector<ui32_t> durations;
  for (ui32_t i = 0; i < 200; ++i) durations.push_back(1 + i % 3);
  fake.Append(Composition(1), durations);
  for (const TimelineReel& reel : fake.State.Timeline)
    for (ui32_t position = reel.m_Offset; position < reel.m_Offset + reel.m_Duration; ++position)
      ASSERT_EQ(FindReelHavingEditUnit(fake.State.Timeline, position), &reel) << position;
}

TEST(ReelSearchAlone, ReelsWithoutEditUnitsNeverHideTheReelBehindThem) {
  FakeTimeline fake;
  fake.Append(Composition(1), {5, 0, 0, 5, 0});
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 4), &fake.Reel(0));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 5), &fake.Reel(3));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 9), &fake.Reel(3));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 10), &fake.Reel(4)) << "one past the end";
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 11), nullptr);
}

TEST(ReelSearchAlone, TimelineUpToTheLargestNumberIsSearchedWhole) {
  FakeTimeline fake;
  fake.Append(Composition(1), {0x80000000, 0x7fffffff});
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0x7fffffff), &fake.Reel(0));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0x80000000), &fake.Reel(1));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0xfffffffe), &fake.Reel(1));
  EXPECT_EQ(FindReelHavingEditUnit(fake.State.Timeline, 0xffffffff), &fake.Reel(1)) << "one past the end";
}

using ReelSearchDeathTest = ReelSearch;

TEST_F(ReelSearchDeathTest, PositionBeforeTheFirstReelAsserts) {
  Fake.Reel(0).m_Offset = 10;
  for (const ui32_t position : {5u, 10u})
    EXPECT_DEATH((void)FindReelHavingEditUnit(Fake.State.Timeline, position), Asserts("ri != m_Timeline.begin()"));
}

}  // namespace
