// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "ScratchFile.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/KLV.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;

// A fill key, then these bytes.
Bytes WithKey(const Bytes& rest) {
  Bytes bytes = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x02, 0x03, 0x01, 0x02, 0x10, 0x01, 0, 0, 0};
  bytes.insert(bytes.end(), rest.begin(), rest.end());
  return bytes;
}

TEST(BER, ShortAndLongFormsAreRead) {
  const struct {
    Bytes Coded;
    ui64_t Value;
    ui32_t Size;
  } cases[] = {
      {{0x00}, 0, 1},
      {{0x7f}, 127, 1},
      {{0x81, 0x80}, 128, 2},
      {{0x83, 0x01, 0x02, 0x03}, 0x010203, 4},
      {{0x84, 0xff, 0xff, 0xff, 0xff}, 0xffffffff, 5},
      {{0x87, 0, 0, 0, 0x01, 0, 0, 0}, 0x01000000, 8},
      {{0x88, 0x7f, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff}, 0x7fffffffffffffff, 9},
      {{0x88, 0, 0, 0, 0, 0, 0, 0, 5}, 5, 9},
  };
  for (const auto& [coded, value, size] : cases) {
    const auto field = ReadBER(coded);
    ASSERT_TRUE(field.has_value());
    EXPECT_EQ(field->Value, value);
    EXPECT_EQ(field->Size, size);
    for (size_t length = 0; length < coded.size(); ++length)
      EXPECT_FALSE(ReadBER(std::span(coded).first(length)).has_value());
  }
}

TEST(BER, IndefiniteAndOverlongAndTooLargeAreRefused) {
  EXPECT_FALSE(ReadBER(Bytes{0x80, 1, 2, 3}).has_value());
  EXPECT_FALSE(ReadBER(Bytes{0x89, 0, 0, 0, 0, 0, 0, 0, 0, 1}).has_value());
  EXPECT_FALSE(ReadBER(Bytes(20, 0xff)).has_value());
  EXPECT_FALSE(ReadBER(Bytes{0x88, 0x80, 0, 0, 0, 0, 0, 0, 0}).has_value());
}

TEST(BER, IsWrittenWithTheAskedSize) {
  const auto coded = [](ui64_t value, ui32_t size) {
    Bytes out;
    AppendBER(out, value, size);
    return out;
  };
  EXPECT_THAT(coded(5, 1), ElementsAre(5));
  EXPECT_THAT(coded(120, 4), ElementsAre(0x83, 0, 0, 0x78));
  EXPECT_THAT(coded(0x01000000, 8), ElementsAre(0x87, 0, 0, 0, 1, 0, 0, 0));
  EXPECT_THAT(coded(0x0102030405060708, 9), ElementsAre(0x88, 1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(BER, ValueThatDoesNotFitItsSizeIsAProgrammingError) {
  Bytes out;
  EXPECT_DEATH(AppendBER(out, 0x1000000, 4), "Assertion");
  EXPECT_DEATH(AppendBER(out, 128, 1), "Assertion");
}

TEST(KLV, EndsAtOrBeforeTheLimit) {
  const Bytes bytes = WithKey({0x83, 0, 0, 10});
  const auto packet = ParseKLV(bytes, 100, 130);
  ASSERT_TRUE(packet.has_value());
  EXPECT_EQ(packet->Offset, 100u);
  EXPECT_EQ(packet->HeaderLength, 20u);
  EXPECT_EQ(packet->ValueOffset(), 120u);
  EXPECT_EQ(packet->ValueLength, 10u);
  EXPECT_EQ(packet->End(), 130u);
  EXPECT_FALSE(ParseKLV(bytes, 100, 129).has_value());
  EXPECT_FALSE(ParseKLV(bytes, 100, 0).has_value());
}

TEST(KLV, LengthThatWouldWrapIsRefused) {
  const Bytes bytes = WithKey({0x88, 0x7f, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff});
  EXPECT_FALSE(ParseKLV(bytes, ~ui64_t{0} - 10, ~ui64_t{0}).has_value());
  EXPECT_FALSE(ParseKLV(bytes, 0, 0x7fffffffffffffff).has_value());
}

TEST(KLV, CutHeaderIsRefused) {
  const Bytes bytes = WithKey({0x83, 0, 0, 0});
  for (size_t length = 0; length < bytes.size(); ++length)
    EXPECT_FALSE(ParseKLV(std::span(bytes).first(length), 0, 1000).has_value());
  EXPECT_TRUE(ParseKLV(bytes, 0, 1000).has_value());
}

TEST(KLV, IsReadFromAFile) {
  Bytes bytes(5, 0xee);
  AppendKL(bytes, DefaultSMPTEDict().ul(MDD_JPEG2000Essence), 3);
  bytes.insert(bytes.end(), {1, 2, 3});
  const ScratchFile file(bytes);
  KLVPacket packet;
  ASSERT_EQ(ReadKLV(file.Reader, 5, ~ui64_t{0}, packet), Ferro::RESULT_OK);
  EXPECT_EQ(packet.Key, DefaultSMPTEDict().ul(MDD_JPEG2000Essence));
  EXPECT_EQ(packet.ValueOffset(), 25u);
  EXPECT_EQ(packet.ValueLength, 3u);
}

TEST(KLV, PastTheEndOfTheFileIsAFormatError) {
  Bytes bytes;
  AppendKL(bytes, DefaultSMPTEDict().ul(MDD_JPEG2000Essence), 1);
  const ScratchFile file(bytes);
  const testsupport::LogCapture log;
  KLVPacket packet;
  EXPECT_EQ(ReadKLV(file.Reader, 0, ~ui64_t{0}, packet), RESULT_FORMAT);
  EXPECT_EQ(ReadKLV(file.Reader, 20, ~ui64_t{0}, packet), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: no KLV that ends by byte 20 at offset 0.\n",
                                       "MXF: no KLV that ends by byte 20 at offset 20.\n"));
}

TEST(Fill, BothVersionsAreKnown) {
  UL key;
  ASSERT_TRUE(key.DecodeHex("060e2b34010101020301021001000000"));
  EXPECT_TRUE(IsFillKey(key));
  ASSERT_TRUE(key.DecodeHex("060e2b34010101010301021001000000"));
  EXPECT_TRUE(IsFillKey(key));
  ASSERT_TRUE(key.DecodeHex("060e2b34010101010301021002000000"));
  EXPECT_FALSE(IsFillKey(key));
}

TEST(Fill, TakesExactlyTheAskedBytes) {
  for (const ui64_t size : {20U, 21U, 1000U, 16777235U, 16777236U}) {
    Bytes bytes;
    AppendFill(bytes, size);
    ASSERT_EQ(bytes.size(), size);
    const auto packet = ParseKLV(bytes, 0, size);
    ASSERT_TRUE(packet.has_value());
    EXPECT_EQ(packet->End(), size);
    EXPECT_TRUE(IsFillKey(packet->Key));
  }
}

}  // namespace
}  // namespace QUIRE::MXF
