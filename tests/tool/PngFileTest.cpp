// SPDX-License-Identifier: BSD-3-Clause
#include "picture/PngFile.h"

#include "Judges.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

using namespace Tool;

namespace {

/// The samples that ffmpeg reads from a PNG file's bytes.
std::string Decoded(const std::vector<Ferro::ui8_t>& png, const std::string& pixel_format) {
  const testsupport::TemporaryFolder folder;
  std::ofstream(folder.Path("a.png"), std::ios::binary)
      .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
  testsupport::RunJudge({"ffmpeg", "-v", "error", "-i", folder.Path("a.png"), "-f", "rawvideo", "-pix_fmt",
                         pixel_format, folder.Path("a.raw")});
  std::ostringstream raw;
  raw << std::ifstream(folder.Path("a.raw"), std::ios::binary).rdbuf();
  return raw.str();
}

}  // namespace

TEST(PngFile, OthersReadTheSamplesThatWereWritten) {
  const PngPicture picture = {2, 2, 3, {255, 0, 0, 0, 255, 0, 0, 0, 255, 1, 2, 3}};
  const std::string samples = Decoded(EncodePng(picture), "rgb24");
  EXPECT_EQ(samples, std::string("\xff\x00\x00\x00\xff\x00\x00\x00\xff\x01\x02\x03", 12));
}

TEST(PngFile, AlphaIsKept) {
  const PngPicture picture = {3, 1, 4, {255, 255, 255, 0, 9, 8, 7, 128, 0, 0, 0, 255}};
  const std::string samples = Decoded(EncodePng(picture), "rgba");
  EXPECT_EQ(samples, std::string("\xff\xff\xff\x00\x09\x08\x07\x80\x00\x00\x00\xff", 12));
}

TEST(PngFile, EqualPicturesMakeEqualFiles) {
  const PngPicture picture = {1, 1, 3, {1, 2, 3}};
  EXPECT_EQ(EncodePng(picture), EncodePng(picture));
}

TEST(PngFile, RefusesASizeThatIsNotThatOfTheSamples) {
  EXPECT_THROW((void)EncodePng({2, 1, 3, {1, 2, 3}}), std::runtime_error);
  EXPECT_THROW((void)EncodePng({0, 0, 3, {}}), std::runtime_error);
}
