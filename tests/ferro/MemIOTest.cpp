// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/MemIO.h>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

using namespace Ferro;

namespace {

using Bytes = std::vector<ui8_t>;

Bytes Written(const MemIOWriter& writer) {
  return Bytes(writer.Data(), writer.Data() + writer.Length());
}

}  // namespace

TEST(MemIOWriter, IntegersAreBigEndian) {
  std::array<ui8_t, 15> buffer{};
  MemIOWriter writer(buffer);
  EXPECT_TRUE(writer.WriteUi8(0x01));
  EXPECT_TRUE(writer.WriteUi16BE(0x0203));
  EXPECT_TRUE(writer.WriteUi32BE(0x04050607));
  EXPECT_TRUE(writer.WriteUi64BE(0x08090a0b0c0d0e0f));
  EXPECT_EQ(Written(writer), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
  EXPECT_EQ(writer.Remainder(), 0U);
}

TEST(MemIOWriter, FieldThatDoesNotFitWritesNothingAndLeavesThePosition) {
  std::array<ui8_t, 9> buffer{};
  for (ui32_t capacity = 0; capacity < 9; ++capacity) {
    buffer.fill(0xee);
    MemIOWriter writer(buffer.data(), capacity);
    EXPECT_EQ(writer.WriteUi64BE(1), capacity >= 8) << capacity;
    EXPECT_EQ(writer.Length(), capacity >= 8 ? 8U : 0U) << capacity;
    EXPECT_EQ(buffer[0], capacity >= 8 ? 0x00 : 0xee) << capacity;
  }
  MemIOWriter writer(buffer.data(), 3);
  EXPECT_FALSE(writer.WriteUi32BE(1));
  EXPECT_TRUE(writer.WriteUi16BE(0x0102));
  EXPECT_FALSE(writer.WriteUi16BE(1));
  EXPECT_TRUE(writer.WriteUi8(0x03));
  EXPECT_FALSE(writer.WriteUi8(1));
  EXPECT_EQ(Written(writer), (Bytes{1, 2, 3}));
}

TEST(MemIOWriter, StringIsItsByteCountAndItsBytes) {
  std::array<ui8_t, 32> buffer{};
  MemIOWriter writer(buffer);
  EXPECT_TRUE(writer.WriteString(""));
  EXPECT_TRUE(writer.WriteString(std::string("a\0b", 3)));
  EXPECT_EQ(Written(writer), (Bytes{0, 0, 0, 0, 0, 0, 0, 3, 'a', 0, 'b'}));
}

TEST(MemIOWriter, CountOfAStringStaysWrittenWhenItsBytesDoNotFit) {
  std::array<ui8_t, 6> buffer{};
  MemIOWriter writer(buffer);
  EXPECT_FALSE(writer.WriteString("abc"));
  EXPECT_EQ(Written(writer), (Bytes{0, 0, 0, 3}));
  EXPECT_EQ(buffer[4], 0);
}

TEST(MemIOWriter, RawLengthNearTheTopOfItsTypeDoesNotWrap) {
  std::array<ui8_t, 4> buffer{};
  MemIOWriter writer(buffer);
  EXPECT_TRUE(writer.WriteUi8(7));
  EXPECT_FALSE(writer.WriteRaw(buffer.data(), 0xffffffff));
  EXPECT_EQ(writer.Length(), 1U);
}

TEST(MemIOWriter, EmptyBufferTakesEmptyFields) {
  MemIOWriter writer(nullptr, 0);
  EXPECT_TRUE(writer.WriteRaw(nullptr, 0));
  EXPECT_FALSE(writer.WriteUi8(0));
  EXPECT_EQ(writer.Length(), 0U);
}

TEST(MemIODeathTest, NullBufferWithACapacityIsAProgrammingError) {
  EXPECT_DEATH(MemIOWriter(nullptr, 1), "Assertion 'buffer != nullptr \\|\\| capacity == 0' failed");
  EXPECT_DEATH(MemIOReader(nullptr, 1), "Assertion 'bytes != nullptr \\|\\| length == 0' failed");
}

TEST(MemIOReader, IntegersAreBigEndian) {
  const Bytes bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
  MemIOReader reader(bytes);
  ui8_t u8 = 0;
  ui16_t u16 = 0;
  ui32_t u32 = 0;
  ui64_t u64 = 0;
  EXPECT_TRUE(reader.ReadUi8(&u8));
  EXPECT_TRUE(reader.ReadUi16BE(&u16));
  EXPECT_TRUE(reader.ReadUi32BE(&u32));
  EXPECT_TRUE(reader.ReadUi64BE(&u64));
  EXPECT_EQ(u8, 0x01);
  EXPECT_EQ(u16, 0x0203);
  EXPECT_EQ(u32, 0x04050607U);
  EXPECT_EQ(u64, 0x08090a0b0c0d0e0fU);
  EXPECT_EQ(reader.Remainder(), 0U);
  EXPECT_EQ(reader.Offset(), 15U);
}

TEST(MemIOReader, HighestValuesReadBack) {
  const Bytes bytes(15, 0xff);
  MemIOReader reader(bytes);
  ui8_t u8 = 0;
  ui16_t u16 = 0;
  ui32_t u32 = 0;
  ui64_t u64 = 0;
  EXPECT_TRUE(reader.ReadUi8(&u8) && reader.ReadUi16BE(&u16) && reader.ReadUi32BE(&u32) && reader.ReadUi64BE(&u64));
  EXPECT_EQ(u8, 0xff);
  EXPECT_EQ(u16, 0xffff);
  EXPECT_EQ(u32, 0xffffffffU);
  EXPECT_EQ(u64, 0xffffffffffffffffU);
}

TEST(MemIOReader, FieldThatIsNotThereChangesNeitherOutputNorPosition) {
  const Bytes bytes{1, 2, 3, 4, 5, 6, 7};
  MemIOReader reader(bytes);
  ui64_t u64 = 77;
  EXPECT_FALSE(reader.ReadUi64BE(&u64));
  EXPECT_EQ(u64, 77U);
  EXPECT_TRUE(reader.Skip(4));
  ui32_t u32 = 78;
  EXPECT_FALSE(reader.ReadUi32BE(&u32));
  EXPECT_EQ(u32, 78U);
  EXPECT_TRUE(reader.Skip(2));
  ui16_t u16 = 79;
  EXPECT_FALSE(reader.ReadUi16BE(&u16));
  EXPECT_EQ(u16, 79U);
  ui8_t u8 = 0;
  EXPECT_TRUE(reader.ReadUi8(&u8));
  EXPECT_EQ(u8, 7U);
  EXPECT_FALSE(reader.ReadUi8(&u8));
  EXPECT_EQ(reader.Offset(), 7U);
}

TEST(MemIOReader, StringReplacesTheOutput) {
  const Bytes bytes{0, 0, 0, 3, 'a', 0, 'b', 'c'};
  MemIOReader reader(bytes);
  std::string text = "before";
  EXPECT_TRUE(reader.ReadString(&text));
  EXPECT_EQ(text, std::string("a\0b", 3));
  EXPECT_EQ(*reader.CurrentData(), 'c');
}

TEST(MemIOReader, StringCountOfZeroLeavesTheOutputUnchanged) {
  const Bytes bytes{0, 0, 0, 0};
  MemIOReader reader(bytes);
  std::string text = "before";
  EXPECT_TRUE(reader.ReadString(&text));
  EXPECT_EQ(text, "before");
  EXPECT_EQ(reader.Offset(), 4U);
}

TEST(MemIOReader, StringCountBeyondTheBytesFailsBehindTheCount) {
  for (const Bytes& bytes : {Bytes{0, 0, 0, 3, 'a', 'b'}, Bytes{0xff, 0xff, 0xff, 0xff, 'a', 'b'}}) {
    MemIOReader reader(bytes);
    std::string text = "before";
    EXPECT_FALSE(reader.ReadString(&text));
    EXPECT_EQ(text, "before");
    EXPECT_EQ(reader.Offset(), 4U);
  }
}

TEST(MemIOReader, CutStringCountFailsWithoutMoving) {
  const Bytes bytes{0, 0, 0};
  MemIOReader reader(bytes);
  std::string text;
  EXPECT_FALSE(reader.ReadString(&text));
  EXPECT_EQ(reader.Offset(), 0U);
}

TEST(MemIOReader, SkipBeyondTheEndFailsWithoutMoving) {
  const Bytes bytes{1, 2};
  MemIOReader reader(bytes);
  EXPECT_TRUE(reader.Skip(1));
  EXPECT_FALSE(reader.Skip(2));
  EXPECT_FALSE(reader.Skip(0xffffffff));
  EXPECT_EQ(reader.Remainder(), 1U);
}
