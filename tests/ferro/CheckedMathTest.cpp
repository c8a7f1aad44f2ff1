// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/CheckedMath.h>
#include <Ferro/Types.h>

#include <gtest/gtest.h>

#include <limits>

using namespace Ferro;

namespace {

constexpr ui64_t Most = std::numeric_limits<ui64_t>::max();

}  // namespace

TEST(CheckedMath, SumsThatFit) {
  EXPECT_EQ(CheckedAdd<ui64_t>(2, 3), 5U);
  EXPECT_EQ(CheckedAdd<ui64_t>(Most, 0), Most);
  EXPECT_EQ(CheckedAdd<ui64_t>(Most, 1), std::nullopt);
  EXPECT_EQ(CheckedAdd<ui8_t>(200, 56), std::nullopt);
}

TEST(CheckedMath, ProductsThatFit) {
  EXPECT_EQ(CheckedMul<ui32_t>(0xffff, 0x10001), 0xffffffffU);
  EXPECT_EQ(CheckedMul<ui32_t>(0x10000, 0x10000), std::nullopt);
  EXPECT_EQ(CheckedMul<ui64_t>(Most, 0), 0U);
}

TEST(CheckedMath, CastsThatKeepTheValue) {
  EXPECT_EQ(CheckedCast<ui8_t>(255), 255);
  EXPECT_EQ(CheckedCast<ui8_t>(256), std::nullopt);
  EXPECT_EQ(CheckedCast<ui32_t>(-1), std::nullopt);
  EXPECT_EQ(CheckedCast<i64_t>(Most), std::nullopt);
}

TEST(CheckedMath, RangesWithinASize) {
  EXPECT_TRUE(RangeFits<ui64_t>(0, 0, 0));
  EXPECT_TRUE(RangeFits<ui64_t>(4, 6, 10));
  EXPECT_TRUE(RangeFits<ui64_t>(10, 0, 10));
  EXPECT_FALSE(RangeFits<ui64_t>(4, 7, 10));
  EXPECT_FALSE(RangeFits<ui64_t>(11, 0, 10));
  EXPECT_FALSE(RangeFits<ui64_t>(4, Most, 10));
}
