// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceMaker.h"

#include <QUIRE/Codestream.h>

#include <gtest/gtest.h>

namespace {

using namespace QUIRE;
using namespace QUIRE::MPEG2;
using testsupport::Bytes;
using testsupport::MakeAccessUnit;

// Sequence header and extension of a 1920 x 1080 stream: 16:9, 24 pictures per second, 80 Mbit/s, MP@HL, progressive,
// 4:2:0.
const Bytes Sequence = {0x00, 0x00, 0x01, 0xb3, 0x78, 0x04, 0x38, 0x32, 0xc3, 0x50, 0x23,
                        0x80, 0x00, 0x00, 0x01, 0xb5, 0x14, 0x4a, 0x00, 0x01, 0x00, 0x00};

TEST(ParseSequence, TakesHeaderAndExtension) {
  VideoDescriptor descriptor;
  ASSERT_EQ(ParseSequence(Sequence, descriptor), Ferro::RESULT_OK);
  VideoDescriptor expected;
  expected.EditRate = expected.SampleRate = Rational(24, 1);
  expected.StoredWidth = 1920;
  expected.StoredHeight = 1080;
  expected.AspectRatio = Rational(16, 9);
  expected.PictureEssenceCoding = descriptor.PictureEssenceCoding;
  expected.ComponentDepth = 8;
  expected.HorizontalSubsampling = expected.VerticalSubsampling = 2;
  expected.ColorSiting = 6;
  expected.CodedContentType = 1;
  expected.BitRate = 80000000;
  expected.ProfileAndLevel = 0x44;
  EXPECT_EQ(descriptor, expected);
  EXPECT_EQ(descriptor.PictureEssenceCoding.EncodeString(), "060e2b34.04010103.04010202.01030300");
}

TEST(ParseSequence, EachRateCodeHasItsRate) {
  const Rational rates[] = {{24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}, {50, 1}, {60000, 1001}, {60, 1}};
  for (ui8_t code = 1; code <= 8; ++code) {
    Bytes stream = Sequence;
    stream[7] = static_cast<ui8_t>(0x30 | code);
    VideoDescriptor descriptor;
    ASSERT_EQ(ParseSequence(stream, descriptor), Ferro::RESULT_OK);
    EXPECT_EQ(descriptor.EditRate, rates[code - 1]);
  }
}

TEST(ParseSequence, TheExtensionScalesTheRateAndWidensTheSize) {
  Bytes stream = Sequence;
  stream[21] = 0x20;  // twice the rate: frame_rate_extension_n 1
  stream[17] = 0x4a;
  stream[18] = 0x00;
  VideoDescriptor descriptor;
  ASSERT_EQ(ParseSequence(stream, descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.EditRate, Rational(48, 1));
  stream[17] = 0x4a | 0x01;  // horizontal_size_extension 2
  ASSERT_EQ(ParseSequence(stream, descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.StoredWidth, 1920u + 2 * 4096);
}

TEST(ParseSequence, SquareSamplesGiveTheSizeAsAspectRatio) {
  Bytes stream = Sequence;
  stream[7] = 0x12;
  VideoDescriptor descriptor;
  ASSERT_EQ(ParseSequence(stream, descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.AspectRatio, Rational(1920, 1080));
}

TEST(ParseSequence, OtherProfilesHaveNoLabel) {
  Bytes stream = Sequence;
  stream[16] = 0x14;
  stream[17] = 0x8a;  // MP@ML
  VideoDescriptor descriptor;
  ASSERT_EQ(ParseSequence(stream, descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.ProfileAndLevel, 0x48);
  EXPECT_FALSE(descriptor.PictureEssenceCoding.HasValue());
}

TEST(ParseSequence, ACutAtEveryByteIsAFormatErrorThatChangesNothing) {
  for (size_t length = 0; length < Sequence.size(); ++length) {
    VideoDescriptor descriptor;
    const Bytes cut(Sequence.begin(), Sequence.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_EQ(ParseSequence(cut, descriptor), RESULT_RAW_FORMAT) << length;
    ASSERT_EQ(descriptor, VideoDescriptor()) << length;
  }
}

TEST(ParseSequence, ForbiddenValuesAreFormatErrors) {
  const std::pair<size_t, ui8_t> damages[] = {
      {7, 0x30},   // rate code 0
      {7, 0x39},   // rate code 9
      {7, 0x02},   // aspect code 0
      {7, 0x52},   // aspect code 5
      {10, 0x03},  // marker bit
      {15, 0xb8},  // no extension: MPEG-1
      {16, 0x24},  // another extension
      {17, 0x48},  // chroma format 0
      {19, 0x00},  // marker bit of the extension
  };
  for (const auto& [offset, value] : damages) {
    Bytes stream = Sequence;
    stream[offset] = value;
    VideoDescriptor descriptor;
    EXPECT_EQ(ParseSequence(stream, descriptor), RESULT_RAW_FORMAT) << offset;
  }
}

TEST(ParsePicture, TellsTypeReferenceAndHeaders) {
  PictureHeader header;
  ASSERT_EQ(ParsePicture(MakeAccessUnit(PT_I, 0, 64, 36, Rational(24, 1), 0), header), Ferro::RESULT_OK);
  EXPECT_EQ(header, (PictureHeader{PT_I, 0, true, true, true}));
  ASSERT_EQ(ParsePicture(MakeAccessUnit(PT_P, 3, 64, 36, Rational(24, 1), 1), header), Ferro::RESULT_OK);
  EXPECT_EQ(header, (PictureHeader{PT_P, 3, false, false, false}));
  ASSERT_EQ(ParsePicture(MakeAccessUnit(PT_B, 1023, 64, 36, Rational(24, 1), 2), header), Ferro::RESULT_OK);
  EXPECT_EQ(header, (PictureHeader{PT_B, 1023, false, false, false}));
}

TEST(ParsePicture, BytesWithoutAPictureAreAFormatError) {
  PictureHeader header;
  EXPECT_EQ(ParsePicture({}, header), RESULT_RAW_FORMAT);
  EXPECT_EQ(ParsePicture(Sequence, header), RESULT_RAW_FORMAT);
  EXPECT_EQ(ParsePicture(Bytes{0, 0, 1, 0, 0}, header), RESULT_RAW_FORMAT);
  EXPECT_EQ(ParsePicture(Bytes{0, 0, 1, 0, 0, 0x00}, header), RESULT_RAW_FORMAT);  // type 0
  EXPECT_EQ(ParsePicture(Bytes{0, 0, 1, 0, 0, 0x20}, header), RESULT_RAW_FORMAT);  // type 4
  EXPECT_EQ(header, PictureHeader());
}

TEST(FindAccessUnit, EndsBeforeTheNextPictureOrHeader) {
  const Bytes units[] = {MakeAccessUnit(PT_I, 0, 64, 36, Rational(24, 1), 0),
                         MakeAccessUnit(PT_P, 1, 64, 36, Rational(24, 1), 1),
                         MakeAccessUnit(PT_I, 0, 64, 36, Rational(24, 1), 2)};
  Bytes stream;
  for (const auto& unit : units) stream.insert(stream.end(), unit.begin(), unit.end());
  std::span<const ui8_t> rest(stream);
  for (const auto& unit : units) {
    size_t length = 0;
    ASSERT_EQ(FindAccessUnit(rest, length), Ferro::RESULT_OK);
    ASSERT_EQ(length, unit.size());
    rest = rest.subspan(length);
  }
  EXPECT_TRUE(rest.empty());
}

TEST(FindAccessUnit, KeepsTheEndOfSequenceWithItsPicture) {
  Bytes stream = MakeAccessUnit(PT_P, 1, 64, 36, Rational(24, 1), 1);
  for (const int byte : {0x00, 0x00, 0x01, 0xb7}) stream.push_back(static_cast<ui8_t>(byte));
  size_t length = 0;
  ASSERT_EQ(FindAccessUnit(stream, length), Ferro::RESULT_OK);
  EXPECT_EQ(length, stream.size());
}

// A picture header, a picture coding extension with the given structure (1 top field, 2 bottom field), a slice.
Bytes Field(int structure) {
  const auto byte = static_cast<ui8_t>(0xf0 | structure);
  return {0, 0, 1, 0x00, 0x00, 0x08, 0xff, 0xf8, 0, 0, 1, 0xb5, 0x8f, 0xff, byte, 0, 0, 0, 1, 0x01, 0x33};
}

TEST(FindAccessUnit, TakesBothFieldsOfAFrame) {
  Bytes stream;
  for (const int structure : {1, 2, 1, 2}) {
    const Bytes field = Field(structure);
    stream.insert(stream.end(), field.begin(), field.end());
  }
  size_t length = 0;
  ASSERT_EQ(FindAccessUnit(stream, length), Ferro::RESULT_OK);
  EXPECT_EQ(length, stream.size() / 2);
}

TEST(FindAccessUnit, BytesThatBeginOtherwiseAreAFormatError) {
  size_t length = 7;
  EXPECT_EQ(FindAccessUnit({}, length), RESULT_RAW_FORMAT);
  EXPECT_EQ(FindAccessUnit(Bytes{1, 2, 3, 4, 0, 0, 1, 0}, length), RESULT_RAW_FORMAT);
  EXPECT_EQ(FindAccessUnit(Sequence, length), RESULT_RAW_FORMAT);
  EXPECT_EQ(length, 7u);
}

}  // namespace
