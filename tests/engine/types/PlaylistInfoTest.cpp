// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/PlaylistInfo.h>

#include "../../support/RecordCheck.h"

namespace Strata {
namespace {

using namespace StrataTest;

PlaylistInfo Feature() {
  PlaylistInfo info;
  info.ID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  info.Title = "Feature";
  info.Annotation = "2D";
  info.ContentKind = Cairn::CK_FEATURE;
  info.IsShowList = true;
  return info;
}

TEST(PlaylistInfo, FormIsCutAtEveryByte) {
  PlaylistInfo before;
  before.ID = StrataTest::ID("ffffffff-ffff-ffff-ffff-ffffffffffff");
  before.Title = "T";
  before.Annotation = "Ann";
  before.ContentKind = Cairn::CK_STEREO_CARD;
  CheckRecord(before, Feature(),
              {Number("00112233445566778899aabbccddeeff", "ffffffffffffffffffffffffffffffff"),
               Text("00000007 46656174757265", "00000001 54"), Text("00000002 3244", "00000003 416e6e"),
               Number("00000001", "0000000d"), Number("00000001", "00000000")});
}

TEST(PlaylistInfo, ArchiveLengthCountsBothTexts) {
  EXPECT_EQ(Feature().ArchiveLength(), 41u);
  EXPECT_EQ(PlaylistInfo().ArchiveLength(), 32u);
}

TEST(PlaylistInfo, HasValueFollowsTheIdentifier) {
  EXPECT_TRUE(Feature().HasValue());
  EXPECT_FALSE(PlaylistInfo().HasValue());
}

TEST(PlaylistInfo, AnyFlagWordButZeroReadsAsTrue) {
  PlaylistInfo info;
  ReadWhole(info, Hex("00112233445566778899aabbccddeeff 00000000 00000000 00000001 00000002"));
  EXPECT_TRUE(info.IsShowList);
  EXPECT_EQ(Archived(info), Hex("00112233445566778899aabbccddeeff 00000000 00000000 00000001 00000001"));
  ReadWhole(info, Hex("00112233445566778899aabbccddeeff 00000000 00000000 00000001 80000000"));
  EXPECT_TRUE(info.IsShowList);
  ReadWhole(info, Hex("00112233445566778899aabbccddeeff 00000000 00000000 00000001 00000000"));
  EXPECT_FALSE(info.IsShowList);
}

TEST(PlaylistInfo, EmptyTextsLeaveThoseThatAreThere) {
  PlaylistInfo info = Feature();
  ReadWhole(info, Hex("00112233445566778899aabbccddeeff 00000000 00000000 00000001 00000001"));
  EXPECT_EQ(info.Title, "Feature");
  EXPECT_EQ(info.Annotation, "2D");
}

TEST(PlaylistInfo, FifteenBytesOfAnIdentifierClearItsFlag) {
  PlaylistInfo info = Feature();
  const Bytes bytes = Hex("000102030405060708090a0b0c0d0e");
  Ferro::MemIOReader reader(bytes);
  EXPECT_FALSE(info.Unarchive(&reader));
  EXPECT_FALSE(info.ID.HasValue());
  EXPECT_FALSE(info.HasValue());
  EXPECT_EQ(reader.Offset(), 0u);
  EXPECT_EQ(info.Title, "Feature");
}

TEST(PlaylistInfo, TextLongerThanTheBufferIsRefused) {
  PlaylistInfo info = Feature();
  const Bytes bytes = Hex("00112233445566778899aabbccddeeff ffffffff 41");
  Ferro::MemIOReader reader(bytes);
  EXPECT_FALSE(info.Unarchive(&reader));
  EXPECT_EQ(reader.Offset(), 20u);
  EXPECT_EQ(info.Title, "Feature");
}

}  // namespace
}  // namespace Strata
