// SPDX-License-Identifier: BSD-3-Clause
#include "BeforeMain.h"

#include <Strata/Strata.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

namespace {

// Constants of a constant expression need no code to run before they are used.
static_assert(Strata::RESULT_SX_DEVICE.Value() == -1000);
static_assert(std::string_view(Strata::RESULT_SX_NO_PICTURE.Symbol()) == "SX_NO_PICTURE");
static_assert(std::string_view(Strata::RestartInternals::DataDirectory) == "restart");
static_assert(std::string_view(Strata::ServerOptions::Player) == "Player");

TEST(BeforeMain, ResultsAreCompleteInAnotherConstructor) {
  EXPECT_EQ(StrataTest::SeenBeforeMain().FirstResult, "SX_DEVICE");
  EXPECT_EQ(StrataTest::SeenBeforeMain().LastResult, "The playlist includes a reel with empty picture.");
}

TEST(BeforeMain, ResultsAreFoundByValueInAnotherConstructor) {
  EXPECT_EQ(StrataTest::SeenBeforeMain().FoundByValue, "ASM Key load overflow.");
}

TEST(BeforeMain, TextsAreCompleteInAnotherConstructor) {
  EXPECT_EQ(StrataTest::SeenBeforeMain().Version, "2.0.3");
  EXPECT_EQ(StrataTest::SeenBeforeMain().ProtocolVersion, "0.2");
  EXPECT_EQ(StrataTest::SeenBeforeMain().CommandName, "Jog");
  EXPECT_THAT(StrataTest::SeenBeforeMain().Constants,
              testing::ElementsAre("restart/strata-restart-position", "transport-stop-error", "Stop", "Projectors"));
}

}  // namespace
