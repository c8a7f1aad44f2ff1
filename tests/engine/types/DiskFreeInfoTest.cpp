// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/DiskFreeInfo.h>

#include "../../support/RecordCheck.h"

#include <iomanip>
#include <sstream>

namespace Strata {
namespace {

using namespace StrataTest;

DiskFreeInfo Store() {
  DiskFreeInfo info;
  info.Path = "/store";
  info.VolumeSize = 4000000000000;
  info.FreeSize = 1500000000000;
  return info;
}

TEST(DiskFreeInfo, FormIsCutAtEveryByte) {
  DiskFreeInfo before;
  before.Path = "/";
  before.VolumeSize = 1;
  before.FreeSize = 0xFFFFFFFFFFFFFFFF;
  CheckRecord(before, Store(),
              {Text("00000006 2f73746f7265", "00000001 2f"), Number("000003a352944000", "0000000000000001"),
               Number("0000015d3ef79800", "ffffffffffffffff")});
}

TEST(DiskFreeInfo, ArchiveLengthCountsThePath) {
  EXPECT_EQ(DiskFreeInfo().ArchiveLength(), 20u);
  EXPECT_EQ(Store().ArchiveLength(), 26u);
}

TEST(DiskFreeInfo, HasValueFollowsThePath) {
  EXPECT_FALSE(DiskFreeInfo().HasValue());
  EXPECT_TRUE(Store().HasValue());
}

TEST(DiskFreeInfo, EmptyPathLeavesTheOneThatIsThere) {
  DiskFreeInfo info = Store();
  ReadWhole(info, Hex("00000000 0000000000000001 0000000000000002"));
  EXPECT_EQ(info.Path, "/store");
  EXPECT_EQ(info.VolumeSize, 1u);
  EXPECT_EQ(info.FreeSize, 2u);
}

TEST(DiskFreeInfoDeathTest, NullWriterNamesArgumentAndOperation) {
  EXPECT_DEATH(static_cast<void>(Store().Archive(nullptr)),
               "virtual bool Strata::DiskFreeInfo::Archive\\(Ferro::MemIOWriter\\*\\) const: "
               "Assertion 'Writer' failed\\.");
}

TEST(DiskFreeInfoDeathTest, NullReaderNamesArgumentAndOperation) {
  DiskFreeInfo info;
  EXPECT_DEATH(static_cast<void>(info.Unarchive(nullptr)),
               "virtual bool Strata::DiskFreeInfo::Unarchive\\(Ferro::MemIOReader\\*\\): "
               "Assertion 'Reader' failed\\.");
}

TEST(DiskFreeInfoDump, IsThreeLines) {
  std::ostringstream stream;
  stream << Store();
  EXPECT_EQ(stream.str(), "Path: /store\nVolumeSize: 4000000000000\nFreeSize: 1500000000000\n");
}

TEST(DiskFreeInfoDump, SizesPrintSigned) {
  DiskFreeInfo info;
  info.VolumeSize = 0xFFFFFFFFFFFFFFFF;
  info.FreeSize = 0x8000000000000000;
  std::ostringstream stream;
  stream << info;
  EXPECT_EQ(stream.str(), "Path: \nVolumeSize: -1\nFreeSize: -9223372036854775808\n");
}

TEST(DiskFreeInfoDump, TakesTheStreamsFormatAndReturnsTheStream) {
  std::ostringstream stream;
  stream << std::setfill('.') << std::setw(10) << std::hex << Store() << 255;
  EXPECT_EQ(stream.str(), "....Path: /store\nVolumeSize: 4000000000000\nFreeSize: 1500000000000\nff");
}

}  // namespace
}  // namespace Strata
