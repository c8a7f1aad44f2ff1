// SPDX-License-Identifier: BSD-3-Clause
#include "base/Decimal.h"

#include <gtest/gtest.h>

namespace {

using namespace Cairn;
using QUIRE::Rational;

TEST(Decimal, DigitsWithAnOptionalPlusAreANumber) {
  EXPECT_EQ(ParseDecimal("0"), 0u);
  EXPECT_EQ(ParseDecimal("+0024"), 24u);
  EXPECT_EQ(ParseDecimal("18446744073709551615"), 18'446'744'073'709'551'615u);
}

TEST(Decimal, AnythingElseIsNone) {
  for (const char* text : {"", "+", "-1", "-0", "++1", "+-1", " 1", "1 ", "1.0", "1e3", "0x1", "18446744073709551616"})
    EXPECT_EQ(ParseDecimal(text), std::nullopt) << text;
}

TEST(Decimal, APairIsSeparatedByBlanks) {
  EXPECT_EQ(ParseDecimalPair("24 1"), std::pair(ui64_t{24}, ui64_t{1}));
  EXPECT_EQ(ParseDecimalPair("24\t\n +1"), std::pair(ui64_t{24}, ui64_t{1}));
  for (const char* text : {"", "24", "24 ", "24 1 1", "24/1", "24 -1"}) EXPECT_FALSE(ParseDecimalPair(text)) << text;
}

TEST(Decimal, AFractionKeepsItsDigits) {
  EXPECT_EQ(ParseDecimalFraction("1.85"), Rational(185, 100));
  EXPECT_EQ(ParseDecimalFraction("2.390"), Rational(2390, 1000));
  EXPECT_EQ(ParseDecimalFraction("2"), Rational(2, 1));
  EXPECT_EQ(ParseDecimalFraction("2."), Rational(2, 1));
  EXPECT_EQ(ParseDecimalFraction(".5"), Rational(5, 10));
  EXPECT_EQ(ParseDecimalFraction("1.0000000009"), Rational(1'000'000'000, 1'000'000'000));
}

TEST(Decimal, AFractionOutsideItsRangeIsNone) {
  for (const char* text : {"", ".", "1,85", "1.+5", "-1.5", "1.5.5", "99999999999", "9.999999999", "a"})
    EXPECT_FALSE(ParseDecimalFraction(text)) << text;
}

TEST(Decimal, AFractionIsWrittenWithoutTrailingZeros) {
  EXPECT_EQ(FormatDecimalFraction({185, 100}), "1.85");
  EXPECT_EQ(FormatDecimalFraction({2, 1}), "2");
  EXPECT_EQ(FormatDecimalFraction({2048, 858}), "2.386946");
  EXPECT_EQ(FormatDecimalFraction({1, 100}), "0.01");
  EXPECT_EQ(FormatDecimalFraction({0x7FFFFFFF, 1}), "2147483647");
}

}  // namespace
