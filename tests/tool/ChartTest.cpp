// SPDX-License-Identifier: BSD-3-Clause
#include "Judges.h"
#include "ModelBuilder.h"
#include "TemporaryFolder.h"
#include "drawing/LevelChart.h"
#include "drawing/RateChart.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace Tool;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr double Silence = -std::numeric_limits<double>::infinity();

void ExpectWellFormed(const std::string& svg) {
  const testsupport::TemporaryFolder folder;
  ASSERT_TRUE(Ferro::WriteStringIntoFile(folder.Path("a.svg"), svg).Success());
  testsupport::RunJudge({"xmllint", "--nonet", "--noout", folder.Path("a.svg")});
}

TEST(RateCurve, StepsHoldTheLargestRateInThem) {
  RateCurve curve(1000);
  curve.Add({0, 10, 5, 0});
  curve.Add({5, 10, 7, 0});
  curve.Add({6, 1, 6, 0});
  EXPECT_EQ(curve.Steps()[4].Rate, 5);
  EXPECT_EQ(curve.Steps()[5].Rate, 7);
  EXPECT_EQ(curve.Steps()[6].Rate, 7);
  EXPECT_EQ(curve.Steps()[14].Rate, 7);
  EXPECT_LT(curve.Steps()[15].Rate, 0);
  EXPECT_EQ(curve.Peak(), 7);
  EXPECT_EQ(curve.PeakSeconds(), 5);
}

TEST(RateCurve, WhatIsShorterThanAStepIsSeen) {
  RateCurve curve(1000);
  curve.Add({500.2, 0.04, 9, 0});
  EXPECT_EQ(curve.Steps()[500].Rate, 9);
  EXPECT_LT(curve.Steps()[499].Rate, 0);
  EXPECT_LT(curve.Steps()[501].Rate, 0);
}

TEST(RateCurve, WhatLiesBeyondItsEndsIsLeftOut) {
  RateCurve curve(10);
  curve.Add({-5, 5, 1, 0});
  curve.Add({10, 5, 1, 0});
  curve.Add({3, 0, 1, 0});
  EXPECT_TRUE(curve.IsEmpty());
  curve.Add({-5, 100, 2, 0});
  EXPECT_EQ(curve.Steps().front().Rate, 2);
  EXPECT_EQ(curve.Steps().back().Rate, 2);
  EXPECT_EQ(curve.PeakSeconds(), 0);
}

TEST(RateCurve, TheLeastLimitCounts) {
  RateCurve curve(1000);
  EXPECT_EQ(curve.LeastLimit(), 0);
  curve.Add({0, 500, 240, 250});
  EXPECT_EQ(curve.SecondsOver(), 0);
  curve.Add({0, 500, 250, 250});
  EXPECT_EQ(curve.SecondsOver(), 0);
  curve.Add({0, 20, 250.1, 250});
  curve.Add({500, 500, 250.1, 500});
  EXPECT_DOUBLE_EQ(curve.SecondsOver(), 20);
  EXPECT_EQ(curve.LeastLimit(), 250);
}

TEST(RateCurve, MeansAreWeighedByTime) {
  RateCurve curve(40);
  curve.AddMean(10, 100);
  curve.AddMean(30, 20);
  EXPECT_DOUBLE_EQ(curve.Mean(), 40);
}

TEST(RateCurve, NumbersHaveThreeDigits) {
  EXPECT_EQ(MegabitText(0), "0");
  EXPECT_EQ(MegabitText(0.01234), "0.012");
  EXPECT_EQ(MegabitText(0.5), "0.5");
  EXPECT_EQ(MegabitText(1.234), "1.23");
  EXPECT_EQ(MegabitText(78.25), "78.2");
  EXPECT_EQ(MegabitText(99.97), "100");
  EXPECT_EQ(MegabitText(250), "250");
}

TEST(RateCurve, SaysItInWords) {
  RateCurve curve(1000);
  EXPECT_EQ(RateCurveText(curve), "");
  curve.Add({723, 1, 231, 250});
  curve.AddMean(1, 78.2);
  EXPECT_EQ(RateCurveText(curve), "78.2 Mbit/s on average, 231 Mbit/s at most, at 12:03. The limit is 250 Mbit/s.");
  curve.Add({800, 1, 251, 250});
  EXPECT_EQ(RateCurveText(curve),
            "78.2 Mbit/s on average, 251 Mbit/s at most, at 13:20. The limit is 250 Mbit/s, and it is exceeded.");
}

TEST(RateChart, IsDrawnToScaleBelowItsLimit) {
  RateCurve curve(100);
  curve.Add({0, 50, 100, 250});
  curve.Add({50, 50, 200, 250});
  const std::string svg = RateChart(curve, 680);
  ExpectWellFormed(svg);
  EXPECT_THAT(svg, HasSubstr("viewBox=\"0 0 680 164\""));
  // Time from 108 to 656, rate from 142 up to 22, a tenth above the limit.
  EXPECT_THAT(svg, HasSubstr("d=\"M108 142H108V98.36H382V54.73H656V142z\""));
  EXPECT_THAT(svg, HasSubstr("<line class=\"limit\" x1=\"108\" y1=\"32.91\" x2=\"656\" y2=\"32.91\"/>"));
  EXPECT_THAT(svg, HasSubstr(">limit 250</text>"));
  EXPECT_THAT(svg, HasSubstr(">Mbit/s</text>"));
  EXPECT_THAT(svg, HasSubstr(">1:30</text>"));
  EXPECT_THAT(svg, HasSubstr("<title>Bit rate of the picture over time</title>"));
  EXPECT_THAT(svg, HasSubstr("<desc>200 Mbit/s at most, at 0:50. The limit is 250 Mbit/s.</desc>"));
  EXPECT_THAT(svg, Not(HasSubstr("exceeding")));
}

TEST(RateChart, WhatExceedsTheLimitIsMarked) {
  RateCurve curve(100);
  curve.Add({0, 100, 100, 250});
  curve.Add({50, 10, 300, 250});
  const std::string svg = RateChart(curve, 360);
  ExpectWellFormed(svg);
  EXPECT_EQ(CountOf(svg, "class=\"exceeding\""), 1U);
  EXPECT_THAT(svg, HasSubstr("d=\"M222 142H222V32.91H244.8V142z\"")) << "a tenth of room above the peak";
}

TEST(RateChart, ALimitFarAboveIsNamed) {
  RateCurve curve(100);
  curve.Add({0, 100, 2, 250});
  const std::string svg = RateChart(curve, 360);
  EXPECT_THAT(svg, Not(HasSubstr("class=\"limit\"")));
  EXPECT_THAT(svg, HasSubstr("limit 250, above this drawing"));
  EXPECT_THAT(svg, HasSubstr("V32.91H336V142z"));
}

TEST(RateChart, LeavesOutWhatIsNotKnown) {
  RateCurve curve(100);
  curve.Add({0, 10, 100, 0});
  curve.Add({90, 10, 100, 0});
  const std::string svg = RateChart(curve, 680);
  EXPECT_EQ(CountOf(svg, "<path"), 2U);
  EXPECT_THAT(svg, HasSubstr("d=\"M108 142H108V32.91H162.8V142z\""));
  EXPECT_THAT(svg, Not(HasSubstr("limit")));
}

TEST(LevelChart, BarsAreToScale) {
  const std::string svg = LevelChart({{"L", -30}, {"R", 0}, {"LFE", -80}, {"<HI>", Silence}});
  ExpectWellFormed(svg);
  EXPECT_THAT(svg, HasSubstr("x=\"46\" y=\"23\" width=\"120\" height=\"14\""));
  EXPECT_THAT(svg, HasSubstr("x=\"46\" y=\"43\" width=\"240\" height=\"14\""));
  EXPECT_THAT(svg, HasSubstr("x=\"46\" y=\"63\" width=\"1\" height=\"14\""));
  EXPECT_EQ(CountOf(svg, "<rect"), 3U) << "digital silence has no bar";
  EXPECT_THAT(svg, HasSubstr("&lt;HI&gt;"));
  EXPECT_THAT(svg, HasSubstr("viewBox=\"0 0 340 102\""));
}

TEST(LevelChart, SaysItInWords) {
  EXPECT_EQ(LevelsText({{"L", -3.24}, {"R", -0.04}, {"C", Silence}}), "L \u22123.2, R 0.0, C silent");
}

}  // namespace
