// SPDX-License-Identifier: BSD-3-Clause
#include "drawing/TimelineLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Tool;
using testing::ElementsAre;

namespace {

std::vector<std::string> Labels(double seconds, double width) {
  std::vector<std::string> texts;
  for (const TimelineTick& tick : TimelineTicks(TimelineScale(seconds, 0, width), 70)) texts.push_back(tick.Label);
  return texts;
}

TEST(TimelineScale, PlacesTimesInProportion) {
  const TimelineScale scale(10, 100, 500);
  EXPECT_EQ(scale.Place(0), 100);
  EXPECT_EQ(scale.Place(2.5), 225);
  EXPECT_EQ(scale.Place(10), 600);
}

TEST(TimelineScale, TimesOutsideAreAtItsEnds) {
  const TimelineScale scale(10, 100, 500);
  EXPECT_EQ(scale.Place(-1), 100);
  EXPECT_EQ(scale.Place(11), 600);
}

TEST(TimelineScale, ShowWithoutLengthHasAScale) {
  const TimelineScale scale(0, 100, 500);
  EXPECT_EQ(scale.Place(0), 100);
  EXPECT_EQ(scale.Seconds(), 1);
}

TEST(TimelineTicks, StandAtRoundTimes) {
  EXPECT_THAT(Labels(7, 560), ElementsAre("0:00", "0:01", "0:02", "0:03", "0:04", "0:05", "0:06", "0:07"));
  EXPECT_THAT(Labels(7200, 350), ElementsAre("0:00", "30:00", "1:00:00", "1:30:00", "2:00:00"));
}

TEST(TimelineTicks, ShowFractionsWhereTheyAreCloserThanASecond) {
  EXPECT_THAT(Labels(1, 200), ElementsAre("0:00.00", "0:00.50", "0:01.00"));
}

TEST(TimelineTicks, AreNeverCloserThanAsked) {
  for (const double seconds : {0.04, 1.0, 59.0, 5400.0, 90000.0, 1e7, 4.3e9}) {
    const TimelineScale scale(seconds, 0, 1000);
    const auto ticks = TimelineTicks(scale, 70);
    ASSERT_GE(ticks.size(), 1U);
    EXPECT_LE(ticks.size(), 15U) << seconds;
    for (size_t index = 1; index < ticks.size(); ++index)
      EXPECT_GE(scale.Place(ticks[index].Seconds) - scale.Place(ticks[index - 1].Seconds), 69.99) << seconds;
  }
}

TEST(PlaceLabels, ThoseThatTouchStandInDifferentRows) {
  EXPECT_THAT(PlaceLabels({{0, 10}, {5, 10}, {20, 10}}, 3, 2), ElementsAre(0, 1, 0));
}

TEST(PlaceLabels, AtOnePlaceEachHasItsRowUntilThereIsNone) {
  EXPECT_THAT(PlaceLabels({{0, 10}, {0, 10}, {0, 10}}, 2, 2), ElementsAre(0, 1, -1));
}

TEST(PlaceLabels, KeepTheGap) {
  EXPECT_THAT(PlaceLabels({{0, 10}, {11, 10}, {12, 10}}, 2, 2), ElementsAre(0, 1, 0));
}

TEST(JoinNarrow, WideItemsStandAlone) {
  const auto joined = JoinNarrow({{0, 10, 0, 0, 1}, {10, 20, 0, 1, 1}}, 2);
  EXPECT_EQ(joined.size(), 2U);
}

TEST(JoinNarrow, NarrowNeighboursOfAClassBecomeOne) {
  const auto joined = JoinNarrow({{0, 1, 0, 0, 1}, {1, 2, 0, 1, 1}, {2, 3, 0, 2, 1}}, 2);
  ASSERT_EQ(joined.size(), 1U);
  EXPECT_EQ(joined[0].Left, 0);
  EXPECT_EQ(joined[0].Right, 3);
  EXPECT_EQ(joined[0].Count, 3U);
  EXPECT_EQ(joined[0].Index, 0U);
}

TEST(JoinNarrow, AnotherClassIsNeverHidden) {
  const auto joined = JoinNarrow({{0, 1, 0, 0, 1}, {1, 2, 7, 1, 1}, {2, 3, 0, 2, 1}}, 2);
  ASSERT_EQ(joined.size(), 2U);
  EXPECT_EQ(joined[0].Count, 2U);
  EXPECT_EQ(joined[1].Class, 7U);
}

TEST(JoinNarrow, WhatIsApartStaysApart) {
  EXPECT_EQ(JoinNarrow({{0, 1, 0, 0, 1}, {50, 51, 0, 1, 1}}, 2).size(), 2U);
}

TEST(JoinNarrow, NoMoreIsDrawnThanTheLineHolds) {
  std::vector<TimelineItem> items;
  for (unsigned number = 0; number < 100'000; ++number)
    items.push_back({number * 0.01, number * 0.01 + 0.01, number % 3, number, 1});
  EXPECT_LE(JoinNarrow(items, 2).size(), 3U);
}

}  // namespace
