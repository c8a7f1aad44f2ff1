// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/RPCInitInfo.h>

#include "../../support/RecordCheck.h"

namespace Strata {
namespace {

using namespace StrataTest;

TEST(RPCInitInfo, FormIsCutAtEveryByte) {
  RPCInitInfo before;
  RPCInitInfo after;
  after.WantNotify = true;
  after.UpdateFrequency = UF_PER_MINUTE;
  CheckRecord(before, after, {Number("01", "00"), Number("00000002", "00000000")});
}

TEST(RPCInitInfo, TakesFiveBytesAndAlwaysHasAValue) {
  EXPECT_EQ(RPCInitInfo().ArchiveLength(), 5u);
  EXPECT_TRUE(RPCInitInfo().HasValue());
}

TEST(RPCInitInfo, OnlyAByteOfOneReadsAsTrue) {
  RPCInitInfo info;
  info.WantNotify = true;
  ReadWhole(info, Hex("02 00000001"));
  EXPECT_FALSE(info.WantNotify);
  EXPECT_EQ(info.UpdateFrequency, UF_PER_SECOND);
  ReadWhole(info, Hex("01 00000000"));
  EXPECT_TRUE(info.WantNotify);
  ReadWhole(info, Hex("ff 00000000"));
  EXPECT_FALSE(info.WantNotify);
  ReadWhole(info, Hex("00 00000000"));
  EXPECT_FALSE(info.WantNotify);
}

TEST(RPCInitInfoDeathTest, NullWriterNamesArgumentAndOperation) {
  EXPECT_DEATH(static_cast<void>(RPCInitInfo().Archive(nullptr)),
               "virtual bool Strata::RPCInitInfo::Archive\\(Ferro::MemIOWriter\\*\\) const: "
               "Assertion 'Writer' failed\\.");
}

TEST(RPCInitInfoDeathTest, NullReaderNamesArgumentAndOperation) {
  RPCInitInfo info;
  EXPECT_DEATH(static_cast<void>(info.Unarchive(nullptr)),
               "virtual bool Strata::RPCInitInfo::Unarchive\\(Ferro::MemIOReader\\*\\): "
               "Assertion 'Reader' failed\\.");
}

}  // namespace
}  // namespace Strata
