// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceMaker.h"

#include <QUIRE/Codestream.h>

#include <gtest/gtest.h>

namespace {

using namespace QUIRE;
using testsupport::Bytes;

// SOC, SIZ (16 x 16, three components of 8 bits, Rsiz 3), COD, QCD, SOT.
const Bytes Header = {0xff, 0x4f, 0xff, 0x51, 0x00, 0x2f, 0x00, 0x03, 0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00,
                      0x10, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,
                      0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x03, 0x07, 0x01, 0x01,
                      0x07, 0x01, 0x01, 0x07, 0x01, 0x01, 0xff, 0x52, 0x00, 0x0c, 0x00, 0x00, 0x00, 0x01, 0x00,
                      0x01, 0x03, 0x03, 0x00, 0x00, 0xff, 0x5c, 0x00, 0x05, 0x22, 0x7f, 0x20, 0xff, 0x90};

TEST(ParseCodestream, TakesTheMainHeaderVerbatim) {
  JP2K::PictureDescriptor descriptor;
  descriptor.EditRate = Rational(24, 1);
  ASSERT_EQ(JP2K::ParseCodestream(Header, descriptor), Ferro::RESULT_OK);
  JP2K::PictureDescriptor expected;
  expected.EditRate = Rational(24, 1);
  expected.StoredWidth = expected.StoredHeight = 16;
  expected.AspectRatio = Rational(16, 16);
  expected.Rsiz = 3;
  expected.Xsiz = expected.Ysiz = 16;
  expected.XTsiz = expected.YTsiz = 256;
  expected.Csiz = 3;
  expected.PictureComponentSizing.assign(3, {7, 1, 1});
  expected.CodingStyleDefault = {0x00, 0x00, 0x00, 0x01, 0x00, 0x01, 0x03, 0x03, 0x00, 0x00};
  expected.QuantizationDefault = {0x22, 0x7f, 0x20};
  expected.PictureEssenceCoding = descriptor.PictureEssenceCoding;
  EXPECT_EQ(descriptor, expected);
  EXPECT_EQ(descriptor.PictureEssenceCoding.EncodeString(), "060e2b34.04010109.04010202.03010103");
}

TEST(ParseCodestream, ChoosesTheCodingLabelByProfile) {
  Bytes codestream = Header;
  JP2K::PictureDescriptor descriptor;
  codestream[7] = 4;
  ASSERT_EQ(JP2K::ParseCodestream(codestream, descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.PictureEssenceCoding.EncodeString(), "060e2b34.04010109.04010202.03010104");
  codestream[7] = 0;
  ASSERT_EQ(JP2K::ParseCodestream(codestream, descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.PictureEssenceCoding.EncodeString(), "060e2b34.0401010a.04010202.0301017f");
}

TEST(ParseCodestream, StoredSizeLeavesOutTheImageOffset) {
  Bytes codestream = Header;
  codestream[19] = 6;  // XOsiz
  codestream[23] = 4;  // YOsiz
  JP2K::PictureDescriptor descriptor;
  ASSERT_EQ(JP2K::ParseCodestream(codestream, descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.StoredWidth, 10u);
  EXPECT_EQ(descriptor.StoredHeight, 12u);
}

TEST(ParseCodestream, UnknownSegmentsArePassedOver) {
  Bytes codestream = Header;
  const Bytes comment = {0xff, 0x64, 0x00, 0x04, 0x00, 0x01};
  codestream.insert(codestream.begin() + 51, comment.begin(), comment.end());
  JP2K::PictureDescriptor descriptor;
  EXPECT_EQ(JP2K::ParseCodestream(codestream, descriptor), Ferro::RESULT_OK);
}

TEST(ParseCodestream, ACutAtEveryByteIsAFormatErrorThatChangesNothing) {
  for (size_t length = 0; length < Header.size(); ++length) {
    JP2K::PictureDescriptor descriptor;
    const Bytes cut(Header.begin(), Header.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_EQ(JP2K::ParseCodestream(cut, descriptor), RESULT_RAW_FORMAT) << length;
    ASSERT_EQ(descriptor, JP2K::PictureDescriptor()) << length;
  }
}

struct Damage {
  const char* What;
  size_t Offset;
  Bytes Replacement;
};

TEST(ParseCodestream, MalformedHeadersAreFormatErrors) {
  const Damage damages[] = {
      {"another first marker", 1, {0x4e}},
      {"another second marker", 3, {0x52}},
      {"a segment length of 0", 4, {0, 0}},
      {"a segment length of 1", 4, {0, 1}},
      {"a segment length that cuts a component", 4, {0, 0x2e}},
      {"a segment length past the end", 4, {0xff, 0xff}},
      {"width 0", 8, {0, 0, 0, 0}},
      {"height 0", 12, {0, 0, 0, 0}},
      {"width beyond 31 bits", 8, {0xff, 0xff, 0xff, 0xff}},
      {"an offset as large as the image", 16, {0, 0, 0, 16}},
      {"tiles of width 0", 24, {0, 0, 0, 0}},
      {"tiles of height 0", 28, {0, 0, 0, 0}},
      {"a tile offset right of the image", 32, {0, 0, 0, 1}},
      {"no components", 40, {0, 0}},
      {"more components than there are", 40, {0, 4}},
      {"components by the thousand", 40, {0xff, 0xff}},
      {"a separation of 0", 43, {0}},
      {"COD twice", 65, {0xff, 0x52}},
      {"COD too short", 53, {0x00, 0x0b}},
      {"no marker where one belongs", 51, {0x12}},
      {"SOT before COD", 51, {0xff, 0x90}},
      {"no QCD", 65, {0xff, 0x64}},
  };
  for (const auto& damage : damages) {
    Bytes codestream = Header;
    std::copy(damage.Replacement.begin(), damage.Replacement.end(),
              codestream.begin() + static_cast<std::ptrdiff_t>(damage.Offset));
    JP2K::PictureDescriptor descriptor;
    EXPECT_EQ(JP2K::ParseCodestream(codestream, descriptor), RESULT_RAW_FORMAT) << damage.What;
    EXPECT_EQ(descriptor, JP2K::PictureDescriptor()) << damage.What;
  }
}

TEST(ParseCodestream, ReadsWhatAnEncoderWrites) {
  JP2K::PictureDescriptor descriptor;
  ASSERT_EQ(JP2K::ParseCodestream(testsupport::MakeCodestream(64, 36, 1), descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.StoredWidth, 64u);
  EXPECT_EQ(descriptor.StoredHeight, 36u);
  EXPECT_EQ(descriptor.PictureComponentSizing, std::vector<JP2K::ComponentSizing>(3, {11, 1, 1}));
}

}  // namespace
