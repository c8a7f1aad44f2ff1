// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/DeviceStatus.h>

#include "../../support/RecordCheck.h"

namespace Strata {
namespace {

using namespace StrataTest;

std::string Dumped(const DeviceStatus& status) {
  return Printed([&](FILE* stream) { status.Dump(stream); });
}

TEST(DeviceStatusDump, ZerosPrintSixteenLettersAndNoLineEnd) {
  EXPECT_EQ(Dumped(DeviceStatus()),
            "BPS:       0  Skp: 0  Und: 0  Audio: _L_ _R_ _C_ _e_ _l_ _r_ _D_ _H_ _z_ _0_ _1_ _2_ _3_ _4_ _5_ _6_");
}

TEST(DeviceStatusDump, EachBitHasItsMark) {
  DeviceStatus status;
  status.ImageBPS = 250000000;
  status.FrameSkipCount = 12;
  status.FrameUnderrunCount = 0xFFFFFFFF;
  for (ui32_t i = 0; i < DeviceStatus::AudioChannelCount; ++i) status.m_AudioChannelStatus[i] = i;
  EXPECT_EQ(Dumped(status),
            "BPS: 250000000  Skp: 12  Und: -1  Audio:"
            " _L_ ___ _C* __* !l_ !__ !D* !_* _z_ ___ _1* __* !3_ !__ !5* !_*");
}

TEST(DeviceStatusDump, AllThreeBitsOnTheFirstChannel) {
  DeviceStatus status;
  status.m_AudioChannelStatus[0] = 7;
  EXPECT_EQ(Dumped(status).substr(0, 45), "BPS:       0  Skp: 0  Und: 0  Audio: !_* _R_ ");
}

TEST(DeviceStatusDump, NullStreamIsStandardError) {
  testing::internal::CaptureStderr();
  DeviceStatus().Dump();
  std::fflush(stderr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), Dumped(DeviceStatus()));
}

TEST(DeviceStatus, FormIsTheChannelsThenTheCountersCutAtEveryByte) {
  DeviceStatus before;
  DeviceStatus after;
  std::vector<Field> fields;
  for (ui32_t i = 0; i < DeviceStatus::AudioChannelCount; ++i) {
    after.m_AudioChannelStatus[i] = i % 8;
    fields.push_back({Field::Number, {0, 0, 0, static_cast<ui8_t>(i % 8)}, {0, 0, 0, 0}});
  }
  after.ImageBPS = 0x0ee6b280;
  after.FrameSkipCount = 1;
  after.FrameUnderrunCount = 2;
  fields.push_back(Number("0ee6b280", "00000000"));
  fields.push_back(Number("00000001", "00000000"));
  fields.push_back(Number("00000002", "00000000"));
  CheckRecord(before, after, fields);
}

TEST(DeviceStatus, Takes76BytesAndAlwaysHasAValue) {
  EXPECT_EQ(DeviceStatus().ArchiveLength(), 76u);
  EXPECT_EQ(Archived(DeviceStatus()).size(), 76u);
  EXPECT_TRUE(DeviceStatus().HasValue());
}

TEST(DeviceStatusDeathTest, NullCursorsNameArgumentAndOperation) {
  DeviceStatus status;
  EXPECT_DEATH(static_cast<void>(status.Archive(nullptr)),
               "virtual bool Strata::DeviceStatus::Archive\\(Ferro::MemIOWriter\\*\\) const: "
               "Assertion 'Writer' failed\\.");
  EXPECT_DEATH(static_cast<void>(status.Unarchive(nullptr)),
               "virtual bool Strata::DeviceStatus::Unarchive\\(Ferro::MemIOReader\\*\\): "
               "Assertion 'Reader' failed\\.");
}

}  // namespace
}  // namespace Strata
