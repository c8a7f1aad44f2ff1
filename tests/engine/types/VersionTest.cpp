// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Version.h>

#include <gtest/gtest.h>

namespace {

TEST(Version, LibraryIs2_0_3) {
  EXPECT_STREQ(Strata::Version(), "2.0.3");
}

TEST(Version, ProtocolIs0_2) {
  EXPECT_STREQ(Strata::ProtocolVersion(), "0.2");
}

TEST(Version, ProtocolTextIsTheSameBufferForAllCallers) {
  EXPECT_EQ(Strata::ProtocolVersion(), Strata::ProtocolVersion());
}

}  // namespace
