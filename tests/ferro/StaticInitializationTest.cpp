// SPDX-License-Identifier: BSD-3-Clause
#include "StaticInitializationProbe.h"

#include <gtest/gtest.h>

using namespace Ferro;
using namespace Ferro::Test;

namespace {

// Does not compile unless the constants are constant-initialised.
constinit const Result_t s_Copy = RESULT_CANCELLED;

}  // namespace

TEST(StaticInitialization, ResultConstantsAreCompleteBeforeMain) {
  EXPECT_EQ(SeenBeforeMain().Constant.Value(), -9);
  EXPECT_STREQ(SeenBeforeMain().Constant.Symbol(), "NOT_FOUND");
  EXPECT_STREQ(SeenBeforeMain().Constant.Label(), "The requested item was not found.");
  EXPECT_EQ(s_Copy.Value(), -21);
}

TEST(StaticInitialization, ResultsAreFoundBeforeMain) {
  EXPECT_STREQ(SeenBeforeMain().Found.Symbol(), "CANCELLED");
  EXPECT_STREQ(SeenBeforeMain().NotFound.Symbol(), "UNKNOWN");
}

TEST(StaticInitialization, IdentifiersAreMadeBeforeMain) {
  EXPECT_TRUE(SeenBeforeMain().ID.HasValue());
  EXPECT_NE(SeenBeforeMain().ID, UUID());
}

TEST(StaticInitialization, TimeIsKnownBeforeMain) {
  EXPECT_GT(SeenBeforeMain().Now, Timestamp(1'700'000'000'000));
  EXPECT_LE(SeenBeforeMain().Now, Timestamp());
}

TEST(StaticInitialization, LogsAreWrittenBeforeMain) {
  EXPECT_EQ(SeenBeforeMain().Logged.Message, "logged before main\n");
  EXPECT_EQ(SeenBeforeMain().Logged.Level, LogLevel::Warning);
  EXPECT_TRUE(SeenBeforeMain().StandardError.ends_with("] ERROR: standard error before main\n"))
      << SeenBeforeMain().StandardError;
}
