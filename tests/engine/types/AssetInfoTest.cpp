// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/AssetInfo.h>

#include "../../support/RecordCheck.h"

#include <type_traits>

namespace Strata {
namespace {

using namespace StrataTest;

static_assert(std::is_same_v<AssetInfo, Cairn::AssetInfo>);

AssetInfo Composition() {
  AssetInfo info;
  info.ID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  EXPECT_TRUE(info.Digest.DecodeHex("000102030405060708090a0b0c0d0e0f10111213"));
  info.RealFilename = "/a/b.xml";
  info.FileSize = 0x0102030405060708;
  info.FileType = Cairn::FT_CPL;
  return info;
}

TEST(AssetInfo, FormIsCutAtEveryByte) {
  CheckRecord(AssetInfo(), Composition(),
              {Number("00112233445566778899aabbccddeeff", "00000000000000000000000000000000"),
               Number("000102030405060708090a0b0c0d0e0f10111213", "0000000000000000000000000000000000000000"),
               Text("00000008 2f612f622e786d6c", "00000000"), Number("0102030405060708", "0000000000000000"),
               Number("0000000c", "00000000")});
}

TEST(AssetInfo, ArchiveLengthCountsTheFilename) {
  EXPECT_EQ(AssetInfo().ArchiveLength(), 52u);
  EXPECT_EQ(Composition().ArchiveLength(), 60u);
}

TEST(AssetInfo, HasValueFollowsTheIdentifier) {
  EXPECT_FALSE(AssetInfo().HasValue());
  EXPECT_TRUE(Composition().HasValue());
}

TEST(AssetInfo, DigestWithoutValueIsWrittenAndReadsBackWithOne) {
  AssetInfo info = Composition();
  info.Digest.Reset();
  const Bytes form = Archived(info);
  EXPECT_EQ(form.size(), 60u);
  ReadWhole(info, form);
  EXPECT_TRUE(info.Digest.HasValue());
}

TEST(AssetInfo, DigestThatIsNotThereLosesItsFlag) {
  AssetInfo info = Composition();
  const Bytes bytes = Hex("00112233445566778899aabbccddeeff 00");
  Ferro::MemIOReader reader(bytes);
  EXPECT_FALSE(info.Unarchive(&reader));
  EXPECT_TRUE(info.ID.HasValue());
  EXPECT_FALSE(info.Digest.HasValue());
}

TEST(AssetInfoList, IsACountAndTheRecords) {
  Cairn::AssetInfoList list;
  list.push_back(Composition());
  EXPECT_EQ(list.ArchiveLength(), 64u);
  EXPECT_EQ(Archived(list), Hex("00000001 00112233445566778899aabbccddeeff 000102030405060708090a0b0c0d0e0f10111213"
                                "00000008 2f612f622e786d6c 0102030405060708 0000000c"));
}

}  // namespace
}  // namespace Strata
