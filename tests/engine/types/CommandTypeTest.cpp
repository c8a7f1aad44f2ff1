// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/CommandType.h>
#include <Strata/RPCInitInfo.h>
#include <Strata/TrackType.h>

#include <gtest/gtest.h>

namespace Strata {
namespace {

// Values that travel on the protocol.
static_assert(CMD_NONE == 0 && CMD_PLAY == 1 && CMD_LOCATE == 2 && CMD_SHUTTLE == 3 && CMD_JOG == 4 && CMD_PAUSE == 5 &&
              CMD_STOP == 6);
static_assert(DIR_FORWARD == 0 && DIR_REVERSE == 1);
static_assert(UF_PER_EDIT_UNIT == 0 && UF_PER_SECOND == 1 && UF_PER_MINUTE == 2);
static_assert(TRKT_IMAGE == 0 && TRKT_SOUND == 1 && TRKT_ON_SCREEN_TEXT == 2 && TRKT_OFF_SCREEN_TEXT == 3 &&
              TRKT_AUX_DATA == 4 && TRKT_MAX == 5);
static_assert(sizeof(CommandType_t) == 4 && sizeof(Direction_t) == 4 && sizeof(UpdateFrequency_t) == 4);

TEST(CommandType, EveryCommandHasItsName) {
  EXPECT_STREQ(StringCommandType(CMD_NONE), "NONE");
  EXPECT_STREQ(StringCommandType(CMD_PLAY), "Play");
  EXPECT_STREQ(StringCommandType(CMD_LOCATE), "Locate");
  EXPECT_STREQ(StringCommandType(CMD_SHUTTLE), "Shuttle");
  EXPECT_STREQ(StringCommandType(CMD_JOG), "Jog");
  EXPECT_STREQ(StringCommandType(CMD_PAUSE), "Pause");
  EXPECT_STREQ(StringCommandType(CMD_STOP), "Stop");
}

TEST(CommandType, ValueBeyondTheLastIsUnknown) {
  EXPECT_STREQ(StringCommandType(static_cast<CommandType_t>(7)), "*UNKNOWN*");
}

TEST(CommandType, NegativeValueIsUnknown) {
  EXPECT_STREQ(StringCommandType(static_cast<CommandType_t>(0xFFFFFFFF)), "*UNKNOWN*");
}

}  // namespace
}  // namespace Strata
