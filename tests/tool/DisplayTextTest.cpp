// SPDX-License-Identifier: BSD-3-Clause
#include "terminal/DisplayText.h"

#include <gtest/gtest.h>

using namespace Tool;

namespace {

constexpr const char* R = "\xef\xbf\xbd";  // U+FFFD

TEST(DisplayText, KeepsTextAsItIs) {
  EXPECT_EQ(DisplayText("Gro\u00dfe \u6620\u753b \U0001f3ac"), "Gro\u00dfe \u6620\u753b \U0001f3ac");
}

TEST(DisplayText, MalformedBytesAreReplacedOneByOne) {
  EXPECT_EQ(DisplayText("a\xff"), std::string("a") + R);
  EXPECT_EQ(DisplayText("\xc0\xaf"), std::string(R) + R);          // overlong
  EXPECT_EQ(DisplayText("\xe0\x80\xaf"), std::string(R) + R + R);  // overlong
  EXPECT_EQ(DisplayText("\xe6\x98"), std::string(R) + R);          // cut short
  EXPECT_EQ(DisplayText("\xf4\x90\x80\x80"), R);                   // beyond U+10FFFF
  EXPECT_EQ(DisplayText("\xed\xa0\x80"), R);                       // a surrogate
  EXPECT_EQ(DisplayText("\x80z"), std::string(R) + "z");
}

TEST(DisplayText, ControlCharactersCannotReachTheTerminal) {
  EXPECT_EQ(DisplayText("\x1b[31m"), std::string(R) + "[31m");
  EXPECT_EQ(DisplayText("a\u009bz"), std::string("a") + R + "z");
  EXPECT_EQ(DisplayText(std::string("a\0z", 3)), std::string("a") + R + "z");
}

TEST(DisplayText, NothingTurnsTheDirectionAround) {
  EXPECT_EQ(DisplayText("a\u202ez"), std::string("a") + R + "z");
  EXPECT_EQ(DisplayText("a\u2067z"), std::string("a") + R + "z");
}

TEST(DisplayText, LineBreaksAndTabsBecomeBlanks) {
  EXPECT_EQ(DisplayText("a\n\tb\r"), "a  b ");
}

TEST(DisplayLines, KeepsLinesAndMakesEachSafe) {
  EXPECT_EQ(DisplayLines("one\x1b[2J\n\ttwo\n"), "one\uFFFD[2J\n two\n");
  EXPECT_EQ(DisplayLines("one"), "one");
  EXPECT_EQ(DisplayLines(""), "");
}

TEST(ColumnsOf, WideLettersTakeTwoAndCombiningMarksNone) {
  EXPECT_EQ(ColumnsOf("abc"), 3U);
  EXPECT_EQ(ColumnsOf("\u6620\u753b"), 4U);
  EXPECT_EQ(ColumnsOf("e\u0301"), 1U);
  EXPECT_EQ(ColumnsOf(""), 0U);
}

TEST(FitColumns, WhatFitsIsNotShortened) {
  EXPECT_EQ(FitColumns("abcd", 4), "abcd");
}

TEST(FitColumns, WhatDoesNotFitEndsWithAnEllipsis) {
  EXPECT_EQ(FitColumns("abcde", 4), "abc\u2026");
  EXPECT_EQ(FitColumns("abcde", 1), "\u2026");
  EXPECT_EQ(FitColumns("abcde", 0), "");
}

TEST(FitColumns, WideLettersAreNotCutInTwo) {
  EXPECT_EQ(FitColumns("\u6620\u753b\u9928", 4), "\u6620\u2026");
  EXPECT_EQ(FitColumns("\u6620\u753b\u9928", 5), "\u6620\u753b\u2026");
}

TEST(FitPixels, ShortensByTheRoom) {
  EXPECT_EQ(FitPixels("SampleFeature", 12, 1000), "SampleFeature");
  const std::string fitted = FitPixels("SampleFeature", 12, 60);
  EXPECT_TRUE(fitted.ends_with("\u2026"));
  EXPECT_LE(PixelsOf(fitted, 12), 60);
}

TEST(FitPixels, LeavesNoEllipsisAlone) {
  EXPECT_EQ(FitPixels("SampleFeature", 12, 10), "");
  EXPECT_EQ(FitPixels("SampleFeature", 12, -5), "");
}

}  // namespace
