// SPDX-License-Identifier: BSD-3-Clause
#include "form/DateTime.h"

#include <gtest/gtest.h>

namespace {

using Assay::DateTime;

TEST(DateTime, SecondsAreCountedInUTC) {
  EXPECT_EQ(DateTime::FromText("1970-01-01T00:00:00Z")->Seconds, 0);
  EXPECT_EQ(DateTime::FromText("2024-03-01T09:30:00+00:00")->Seconds, 1'709'285'400);
  EXPECT_EQ(DateTime::FromText("2024-03-01T09:30:00+01:30")->Seconds, 1'709'285'400 - 5'400);
  EXPECT_EQ(DateTime::FromText("2024-03-01T09:30:00-08:00")->Seconds, 1'709'285'400 + 28'800);
  EXPECT_EQ(DateTime::FromText("2024-03-01T24:00:00Z")->Seconds, DateTime::FromText("2024-03-02T00:00:00Z")->Seconds);
}

TEST(DateTime, AnOffsetMayBeMissing) {
  EXPECT_FALSE(DateTime::FromText("2024-03-01T09:30:00")->HasOffset);
  EXPECT_TRUE(DateTime::FromText("2024-03-01T09:30:00-00:00")->HasOffset);
  EXPECT_EQ(DateTime::FromText("2024-03-01T09:30:00.125")->Day, 1);
}

TEST(DateTime, OtherTextsAreNone) {
  for (const char* text : {"",
                           "2024-03-01",
                           "2024-03-01T09:30",
                           "2024-03-01 09:30:00",
                           "24-03-01T09:30:00",
                           "2024-02-30T00:00:00",
                           "2023-02-29T00:00:00",
                           "2024-03-01T25:00:00",
                           "2024-03-01T09:60:00",
                           "2024-03-01T09:30:60",
                           "2024-03-01T24:00:01",
                           "2024-03-01T09:30:00+15:00",
                           "2024-03-01T09:30:00+1:00",
                           "0000-01-01T00:00:00",
                           "2024-03-01T09:30:00.",
                           "2024-03-0T09:30:00",
                           "-T",
                           "T",
                           "99999999-01-01T00:00:00",
                           "2024-03-01T09:30:00ZZ",
                           "2024-3-01T09:30:00"})
    EXPECT_FALSE(DateTime::FromText(text).has_value()) << text;
}

}  // namespace
