// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/TaskType.h>

#include <gtest/gtest.h>

namespace Strata {
namespace {

// Values that travel on the protocol.
static_assert(TT_INIT == 0 && TT_INGEST == 1 && TT_TEST == 2 && TT_REGISTER == 3 && TT_DELETE == 4);
static_assert(Cairn::TS_NEW == 0 && Cairn::TS_READY == 1 && Cairn::TS_RUNNING == 2 && Cairn::TS_HALTED == 3 &&
              Cairn::TS_FAILURE == 4 && Cairn::TS_SUCCESS == 5);

TEST(TaskType, EveryTypeHasItsName) {
  EXPECT_STREQ(StringTaskType(TT_INIT), "Initializing");
  EXPECT_STREQ(StringTaskType(TT_INGEST), "Ingest");
  EXPECT_STREQ(StringTaskType(TT_TEST), "Test");
  EXPECT_STREQ(StringTaskType(TT_REGISTER), "Register");
  EXPECT_STREQ(StringTaskType(TT_DELETE), "Delete");
}

TEST(TaskType, ValueBeyondTheLastOrNegativeIsUnknown) {
  EXPECT_STREQ(StringTaskType(static_cast<TaskType_t>(5)), "*UNKNOWN*");
  EXPECT_STREQ(StringTaskType(static_cast<TaskType_t>(0xFFFFFFFF)), "*UNKNOWN*");
}

TEST(TaskState, EveryStateHasItsName) {
  EXPECT_STREQ(Cairn::StringTaskState(Cairn::TS_NEW), "New");
  EXPECT_STREQ(Cairn::StringTaskState(Cairn::TS_READY), "Ready to run");
  EXPECT_STREQ(Cairn::StringTaskState(Cairn::TS_RUNNING), "Running");
  EXPECT_STREQ(Cairn::StringTaskState(Cairn::TS_HALTED), "Halted, will re-run");
  EXPECT_STREQ(Cairn::StringTaskState(Cairn::TS_FAILURE), "Finished: failed");
  EXPECT_STREQ(Cairn::StringTaskState(Cairn::TS_SUCCESS), "Finished: success");
}

TEST(TaskState, ValueBeyondTheLastOrNegativeIsUnknown) {
  EXPECT_STREQ(Cairn::StringTaskState(static_cast<Cairn::TaskState_t>(6)), "*UNKNOWN*");
  EXPECT_STREQ(Cairn::StringTaskState(static_cast<Cairn::TaskState_t>(0xFFFFFFFF)), "*UNKNOWN*");
}

}  // namespace
}  // namespace Strata
