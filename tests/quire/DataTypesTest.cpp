// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MXF/DataTypes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;

TEST(MXFTimestamp, ConvertsToAMomentAndBack) {
  Ferro::Timestamp moment;
  ASSERT_TRUE(moment.DecodeString("2024-02-29T23:59:58.996+00:00"));
  const Timestamp stored(moment);
  EXPECT_EQ(stored.EncodeString(), "2024-02-29 23:59:58.996");
  EXPECT_EQ(stored.Tick, 249);
  ASSERT_TRUE(stored.Moment().has_value());
  EXPECT_EQ(*stored.Moment(), moment);
}

TEST(MXFTimestamp, IsStoredInUTC) {
  Ferro::Timestamp moment;
  ASSERT_TRUE(moment.DecodeString("2024-01-01T00:30:00+02:00"));
  EXPECT_EQ(Timestamp(moment).EncodeString(), "2023-12-31 22:30:00.000");
}

TEST(MXFTimestamp, UnknownAndImpossibleDatesAreNoMoment) {
  EXPECT_FALSE(Timestamp().Moment().has_value());
  Timestamp stored(Ferro::Timestamp(0));
  EXPECT_TRUE(stored.Moment().has_value());
  stored.Month = 13;
  EXPECT_FALSE(stored.Moment().has_value());
  stored.Month = 2;
  stored.Day = 30;
  EXPECT_FALSE(stored.Moment().has_value());
  stored.Day = 1;
  stored.Hour = 24;
  EXPECT_FALSE(stored.Moment().has_value());
  stored.Hour = 0;
  stored.Tick = 250;
  EXPECT_FALSE(stored.Moment().has_value());
  EXPECT_EQ(stored.EncodeString(), "1970-02-01 00:00:00.1000");
}

TEST(MXFUMID, CarriesTheMaterialNumber) {
  const auto asset = UUID::FromHex("c791e685-2b0c-44f4-825a-e9dd5c6c454c");
  ASSERT_TRUE(asset.has_value());
  const UMID umid = MakeUMID(*asset);
  EXPECT_EQ(umid.EncodeHex(), "060a2b340101010501010f2013000000c791e6852b0c44f4825ae9dd5c6c454c");
  EXPECT_EQ(MaterialNumber(umid), *asset);
}

TEST(UTF16, IsReadBigEndianWithSurrogatePairs) {
  EXPECT_EQ(DecodeUTF16(Bytes{0, 'S', 0, 'o', 0x00, 0xe9, 0x20, 0xac, 0xd8, 0x3c, 0xdf, 0xa5}),
            "So\u00e9\u20ac\U0001F3A5");
  EXPECT_EQ(DecodeUTF16({}), "");
}

TEST(UTF16, EndsAtTheTerminatorAndDropsAnOddByte) {
  EXPECT_EQ(DecodeUTF16(Bytes{0, 'a', 0, 0, 0, 'b'}), "a");
  EXPECT_EQ(DecodeUTF16(Bytes{0, 'a', 0, 'b', 0}), "ab");
  EXPECT_EQ(DecodeUTF16(Bytes{0}), "");
}

TEST(UTF16, IsReadLittleEndianOnlyWhenEveryUnitSaysSo) {
  EXPECT_EQ(DecodeUTF16(Bytes{'a', 0, 'b', 0, 0, 0}), "ab");
  EXPECT_EQ(DecodeUTF16(Bytes{0x61, 0, 0x61, 0x62}), "\u6100\u6162");
}

TEST(UTF16, LoneSurrogatesAndControlsAreReplaced) {
  EXPECT_EQ(DecodeUTF16(Bytes{0xd8, 0x3c, 0, 'a'}), "\ufffda");
  EXPECT_EQ(DecodeUTF16(Bytes{0, 'a', 0xdf, 0xa5}), "a\ufffd");
  EXPECT_EQ(DecodeUTF16(Bytes{0, 'a', 0xd8, 0x3c}), "a\ufffd");
  EXPECT_EQ(DecodeUTF16(Bytes{0, 'a', 0, 7, 0, 9, 0, 0x1b, 0, 0x7f}), "a\ufffd\t\ufffd\ufffd");
}

TEST(UTF16, IsWrittenBigEndianWithoutTerminator) {
  EXPECT_THAT(EncodeUTF16("a\u00e9\u20ac"), ElementsAre(0, 'a', 0, 0xe9, 0x20, 0xac));
  EXPECT_THAT(EncodeUTF16("\U0001F3A5"), ElementsAre(0xd8, 0x3c, 0xdf, 0xa5));
}

TEST(UTF16, MalformedTextIsWrittenWithReplacements) {
  EXPECT_THAT(EncodeUTF16("\x80"), ElementsAre(0xff, 0xfd));
  EXPECT_THAT(EncodeUTF16("\xc3"), ElementsAre(0xff, 0xfd));
  EXPECT_THAT(EncodeUTF16("\xc0\xaf"), ElementsAre(0xff, 0xfd, 0xff, 0xfd));
  EXPECT_THAT(EncodeUTF16("\xed\xa0\x80"), ElementsAre(0xff, 0xfd, 0xff, 0xfd, 0xff, 0xfd));
  EXPECT_THAT(EncodeUTF16("\xf4\x90\x80\x80"), ElementsAre(0xff, 0xfd, 0xff, 0xfd, 0xff, 0xfd, 0xff, 0xfd));
}

}  // namespace
}  // namespace QUIRE::MXF
