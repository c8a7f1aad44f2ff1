// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/UUID.h>

#include <gtest/gtest.h>

#include <set>

using namespace Ferro;

namespace {

constexpr std::array<ui8_t, 16> s_Bytes{0xc8, 0xcc, 0xe1, 0x6f, 0x00, 0x01, 0x4a, 0x02,
                                        0x80, 0x03, 0x7f, 0xff, 0xde, 0xad, 0xbe, 0xef};
const std::string s_Hyphenated = "c8cce16f-0001-4a02-8003-7fffdeadbeef";

}  // namespace

TEST(Identifier, DefaultHasNoValueAndZeroBytes) {
  const UUID id;
  EXPECT_FALSE(id.HasValue());
  EXPECT_EQ(id.EncodeHex(), "00000000000000000000000000000000");
}

TEST(Identifier, SetAndResetChangeFlagAndBytes) {
  UUID id;
  id.Set(s_Bytes);
  EXPECT_TRUE(id.HasValue());
  EXPECT_EQ(id.EncodeHex(), "c8cce16f00014a0280037fffdeadbeef");
  EXPECT_EQ(id, UUID(s_Bytes));
  id.Reset();
  EXPECT_FALSE(id.HasValue());
  EXPECT_EQ(id, UUID());
}

TEST(Identifier, ZeroBytesThatWereSetAreAValue) {
  UUID id;
  id.Set(std::array<ui8_t, 16>{}.data());
  EXPECT_TRUE(id.HasValue());
  EXPECT_EQ(id, UUID());
}

TEST(Identifier, ComparesBytesAsUnsignedNumbersFromTheFirstOn) {
  const auto low = UUID::FromHex("7f0000000000000000000000000000ff").value();
  const auto high = UUID::FromHex("80000000000000000000000000000000").value();
  EXPECT_LT(low, high);
  EXPECT_GT(high, low);
  EXPECT_LT(UUID(), low);
  EXPECT_NE(low, high);
}

TEST(Identifier, ArchiveFormIsTheRawBytes) {
  const UUID id(s_Bytes);
  EXPECT_EQ(id.ArchiveLength(), 16U);
  std::array<ui8_t, 16> buffer{};
  MemIOWriter writer(buffer);
  EXPECT_TRUE(id.Archive(&writer));
  EXPECT_EQ(buffer, s_Bytes);
  MemIOReader reader(buffer);
  UUID copy;
  EXPECT_TRUE(copy.Unarchive(&reader));
  EXPECT_TRUE(copy.HasValue());
  EXPECT_EQ(copy, id);
}

TEST(Identifier, WithoutValueIsWrittenAsZerosAndReadBackWithValue) {
  std::array<ui8_t, 20> buffer;
  buffer.fill(0xee);
  MemIOWriter writer(buffer);
  EXPECT_TRUE(SHA1().Archive(&writer));
  EXPECT_EQ(buffer, (std::array<ui8_t, 20>{}));
  MemIOReader reader(buffer);
  SHA1 copy;
  EXPECT_TRUE(copy.Unarchive(&reader));
  EXPECT_TRUE(copy.HasValue());
}

TEST(Identifier, FifteenBytesFailAndClearTheFlag) {
  MemIOReader reader(s_Bytes.data(), 15);
  UUID id(s_Bytes);
  EXPECT_FALSE(id.Unarchive(&reader));
  EXPECT_FALSE(id.HasValue());
  EXPECT_EQ(reader.Offset(), 0U);
}

TEST(Identifier, FifteenBytesOfRoomTakeNothing) {
  std::array<ui8_t, 16> buffer{};
  MemIOWriter writer(buffer.data(), 15);
  EXPECT_FALSE(UUID(s_Bytes).Archive(&writer));
  EXPECT_EQ(writer.Length(), 0U);
}

TEST(Identifier, SizesAreThoseOfTheirStandards) {
  EXPECT_EQ(UUID().ArchiveLength(), 16U);
  EXPECT_EQ(SHA1().ArchiveLength(), 20U);
  EXPECT_EQ(UMID().ArchiveLength(), 32U);
}

TEST(Identifier, DecodeHexFailureChangesNothing) {
  UUID id(s_Bytes);
  EXPECT_FALSE(id.DecodeHex("c8cce16f"));
  EXPECT_EQ(id, UUID(s_Bytes));
  EXPECT_TRUE(id.HasValue());
}

TEST(Identifier, Base64BothWays) {
  SHA1 digest;
  EXPECT_FALSE(digest.DecodeBase64("2jmj7l5rSw0yVb/vlWAYkK/YBw=="));
  EXPECT_FALSE(digest.HasValue());
  EXPECT_TRUE(digest.DecodeBase64("2jmj7l5rSw0yVb/vlWAYkK/YBwk="));
  EXPECT_TRUE(digest.HasValue());
  EXPECT_EQ(digest.EncodeHex(), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
  EXPECT_EQ(digest.EncodeBase64(), "2jmj7l5rSw0yVb/vlWAYkK/YBwk=");
}

TEST(UUID, TextFormsBothWays) {
  const UUID id(s_Bytes);
  EXPECT_EQ(id.EncodeString(), s_Hyphenated);
  EXPECT_EQ(id.EncodeURN(), "urn:uuid:" + s_Hyphenated);
  EXPECT_EQ(UUID::FromHex(s_Hyphenated), id);
  EXPECT_EQ(UUID::FromHex("C8CCE16F00014A0280037FFFDEADBEEF"), id);
  EXPECT_EQ(UUID::FromURN("urn:uuid:" + s_Hyphenated), id);
  EXPECT_TRUE(UUID::FromHex(s_Hyphenated)->HasValue());
}

TEST(UUID, URNPrefixIsReadInEitherCase) {
  EXPECT_EQ(UUID::FromURN("URN:UUID:C8CCE16F-0001-4A02-8003-7FFFDEADBEEF"), UUID(s_Bytes));
}

TEST(UUID, MalformedTextIsRefused) {
  for (const char* text : {"", "c8cce16f", "c8cce16f-0001-4a02-8003-7fffdeadbee",
                           "c8cce16f-0001-4a02-8003-7fffdeadbeef0", "c8cce16f0001-4a02-8003-7fffdeadbeef",
                           "c8cce16f-00014a02-8003-7fff-deadbeef", "c8cce16f-0001-4a02-8003-7fffdeadbeeg",
                           "{c8cce16f-0001-4a02-8003-7fffdeadbeef}", " c8cce16f-0001-4a02-8003-7fffdeadbeef"})
    EXPECT_EQ(UUID::FromHex(text), std::nullopt) << text;
  for (const char* text :
       {"", "urn:uuid:", "urn:uuid", "c8cce16f-0001-4a02-8003-7fffdeadbeef",
        "urn:oid:c8cce16f-0001-4a02-8003-7fffdeadbeef", "urn:uuid:c8cce16f-0001-4a02-8003-7fffdeadbee"})
    EXPECT_EQ(UUID::FromURN(text), std::nullopt) << text;
}

TEST(UUID, RandomIsVersionFourOfRFC4122AndDoesNotRepeat) {
  std::set<UUID> seen;
  for (int i = 0; i < 1000; ++i) {
    const UUID id = UUID::Random();
    EXPECT_TRUE(id.HasValue());
    EXPECT_EQ(id.Value()[6] >> 4, 4);
    EXPECT_EQ(id.Value()[8] >> 6, 2);
    EXPECT_TRUE(seen.insert(id).second);
  }
}
