// SPDX-License-Identifier: BSD-3-Clause
#include "picture/PictureDecoder.h"

#include "Judges.h"
#include "TemporaryFolder.h"
#include "sample/SamplePicture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

using namespace Tool;

namespace {

using Bytes = std::vector<Ferro::ui8_t>;

SamplePicture Drawing() {
  SamplePicture picture(160, 96, {1000, 1100, 1200});
  picture.Write("00012", 8, 80, SamplePicture::White);
  return picture;
}

std::string RefusalOf(const Bytes& codestream) {
  try {
    static_cast<void>(DecodePicture(codestream));
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

}  // namespace

TEST(PictureDecoder, GivesWhatAnotherDecoderGives) {
  const Bytes codestream = Drawing().Encode(24);
  const testsupport::TemporaryFolder folder;
  std::ofstream(folder.Path("a.j2k"), std::ios::binary)
      .write(reinterpret_cast<const char*>(codestream.data()), static_cast<std::streamsize>(codestream.size()));
  testsupport::RunJudge({"ffmpeg", "-v", "error", "-f", "j2k_pipe", "-i", folder.Path("a.j2k"), "-f", "rawvideo",
                         "-pix_fmt", "xyz12le", folder.Path("a.raw")});
  std::ostringstream raw;
  raw << std::ifstream(folder.Path("a.raw"), std::ios::binary).rdbuf();
  const std::string theirs = raw.str();

  const DecodedPicture ours = DecodePicture(codestream);
  ASSERT_EQ(ours.Width, 160U);
  ASSERT_EQ(ours.Height, 96U);
  ASSERT_EQ(ours.Bits, 12U);
  ASSERT_EQ(theirs.size(), ours.Pixels.size() * 6);
  int largest = 0;
  for (size_t i = 0; i < ours.Pixels.size() * 3; ++i) {
    const int word = static_cast<Ferro::ui8_t>(theirs[2 * i]) | static_cast<Ferro::ui8_t>(theirs[2 * i + 1]) << 8;
    largest = std::max(largest, std::abs((word >> 4) - ours.Pixels[i / 3][i % 3]));
  }
  EXPECT_LE(largest, 2);  // both round in the irreversible transforms
}

TEST(PictureDecoder, WhatIsNoCodestreamIsRefused) {
  EXPECT_EQ(RefusalOf({}).find("the picture cannot be decoded: "), 0U);
  EXPECT_EQ(RefusalOf(Bytes(1000, 0x55)).find("the picture cannot be decoded: "), 0U);
}

TEST(PictureDecoder, WhatIsCutShortIsRefused) {
  const Bytes whole = Drawing().Encode(24);
  for (size_t size = 0; size < whole.size(); size += size < 200 ? 1 : 29)
    EXPECT_EQ(RefusalOf(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))
                  .find("the picture cannot be decoded: "),
              0U)
        << size;
}

TEST(PictureDecoder, ZerosBehindTheEndAreNoPartOfIt) {
  Bytes filled = Drawing().Encode(24);
  filled.resize(filled.size() + 100);
  EXPECT_EQ(RefusalOf(filled), "");
}

TEST(PictureDecoder, EnormousSizeIsRefusedBeforeMemoryIsTaken) {
  Bytes codestream = Drawing().Encode(24);
  // Xsiz and Ysiz, and the tile's size after four offsets, to 2^30 each (ISO/IEC 15444-1, A.5.1).
  for (const size_t at : {8U, 12U, 24U, 28U}) codestream[at] = 0x40;
  EXPECT_EQ(RefusalOf(codestream), "the picture cannot be decoded: it claims to have 1073741984 x 1073741920 pixels");
}
