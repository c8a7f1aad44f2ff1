// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/PlayedSpan.h>

#include "../../support/FakeTrack.h"

#include <gtest/gtest.h>

namespace {

using Strata::PlayedDuration;
using Strata::PlayedFilePosition;
using Strata::ui32_t;

constexpr ui32_t Largest = 0xffffffff;

TEST(PlayedSpan, NothingOutlastsThePicture) {
  EXPECT_EQ(PlayedDuration(100, 100), 100u);
  EXPECT_EQ(PlayedDuration(90, 100), 90u);
  EXPECT_EQ(PlayedDuration(110, 100), 100u);
  EXPECT_EQ(PlayedDuration(0, 100), 0u);
}

TEST(PlayedSpan, PositionsOfTheReelLieBehindTheEntryPoint) {
  EXPECT_EQ(PlayedFilePosition(24, 100, 0), 24u);
  EXPECT_EQ(PlayedFilePosition(24, 100, 99), 123u);
}

TEST(PlayedSpan, NothingPlaysFromTheDurationOn) {
  EXPECT_EQ(PlayedFilePosition(24, 100, 100), std::nullopt);
  EXPECT_EQ(PlayedFilePosition(24, 100, Largest), std::nullopt);
  EXPECT_EQ(PlayedFilePosition(24, 0, 0), std::nullopt);
}

TEST(PlayedSpan, PositionThatIsNoNumberDoesNotPlay) {
  EXPECT_EQ(PlayedFilePosition(Largest - 1, 10, 1), Largest);
  EXPECT_EQ(PlayedFilePosition(Largest - 1, 10, 2), std::nullopt);
}

TEST(PlayedSpan, TrackSaysItsOwnSpan) {
  testsupport::FakeTrack track;
  track.Is.EntryPoint = 5;
  track.Is.Duration = 10;
  EXPECT_EQ(PlayedFilePosition(track, 9), 14u);
  EXPECT_EQ(PlayedFilePosition(track, 10), std::nullopt);
}

}  // namespace
