// SPDX-License-Identifier: BSD-3-Clause
// Expected values were computed by hand from ST 428-1, the Bradford transform and IEC 61966-2-1.
#include "picture/ColourTransform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Tool;
using testing::ElementsAre;

namespace {

using Samples = std::array<Ferro::ui16_t, 3>;

}  // namespace

TEST(ColourTransform, TheWhiteOfTheCinemaIsTheWhiteOfTheScreen) {
  const ColourTransform transform(PictureColour::XYZ, WhitePoint::DCI, 12);
  EXPECT_THAT(transform(Samples{3794, 3960, 3890}), ElementsAre(255, 255, 255));
  EXPECT_THAT(transform(Samples{0, 0, 0}), ElementsAre(0, 0, 0));
}

TEST(ColourTransform, GreyOfThatWhiteStaysGrey) {
  const ColourTransform transform(PictureColour::XYZ, WhitePoint::DCI, 12);
  EXPECT_THAT(transform(Samples{2417, 2521, 2478}), ElementsAre(151, 151, 151));
}

TEST(ColourTransform, ColoursAreThoseOfTheStandards) {
  const ColourTransform transform(PictureColour::XYZ, WhitePoint::DCI, 12);
  EXPECT_THAT(transform(Samples{1000, 1000, 1000}), ElementsAre(54, 44, 48));
  EXPECT_THAT(transform(Samples{900, 1150, 900}), ElementsAre(3, 65, 37));
}

TEST(ColourTransform, WithWhiteD65NothingIsAdapted) {
  const ColourTransform transform(PictureColour::XYZ, WhitePoint::D65, 12);
  EXPECT_THAT(transform(Samples{3794, 3960, 3890}), ElementsAre(242, 255, 238));
  EXPECT_THAT(transform(Samples{1000, 1000, 1000}), ElementsAre(51, 45, 44));
}

TEST(ColourTransform, WhatTheScreenCannotShowIsClamped) {
  const ColourTransform transform(PictureColour::XYZ, WhitePoint::DCI, 12);
  EXPECT_THAT(transform(Samples{4095, 4095, 4095}), ElementsAre(255, 253, 255));
  EXPECT_THAT(transform(Samples{2000, 3960, 1000}), ElementsAre(0, 255, 0));
}

TEST(ColourTransform, RGBIsShownAsItIs) {
  EXPECT_THAT(ColourTransform(PictureColour::RGB, WhitePoint::DCI, 8)(Samples{1, 128, 255}), ElementsAre(1, 128, 255));
  EXPECT_THAT(ColourTransform(PictureColour::RGB, WhitePoint::DCI, 12)(Samples{0, 2048, 4095}),
              ElementsAre(0, 128, 255));
}

TEST(ColourTransform, WithoutALabelTwelveBitsAreXYZ) {
  EXPECT_THAT(ColourTransform(PictureColour::Unknown, WhitePoint::DCI, 12)(Samples{3794, 3960, 3890}),
              ElementsAre(255, 255, 255));
  EXPECT_THAT(ColourTransform(PictureColour::Unknown, WhitePoint::DCI, 8)(Samples{1, 128, 255}),
              ElementsAre(1, 128, 255));
}
