// SPDX-License-Identifier: BSD-3-Clause
// What is in the essence of a sample show: pictures and sound measured.
#include "sample/SampleSound.h"
#include "sample/SampleTrackFiles.h"

#include "Judges.h"
#include "TemporaryFolder.h"
#include "ToneMeter.h"

#include <QUIRE/CinemaProfile.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

using namespace Tool;

namespace {

SampleOptions SmallOptions() {
  SampleOptions options;
  options.Seconds = 1;
  options.Width = 200;
  options.Height = 108;
  return options;
}

}  // namespace

TEST(SampleSound, EachChannelHasItsOwnTone) {
  constexpr Ferro::ui32_t channels = 6;
  // A quarter of a second without a tick.
  const auto bytes = SampleSound(channels).Samples(SampleSound::Rate / 2, SampleSound::Rate / 4);
  ASSERT_EQ(bytes.size(), size_t{12000} * channels * 3);
  for (Ferro::ui32_t channel = 0; channel < channels; ++channel)
    for (Ferro::ui32_t tone = 1; tone <= channels; ++tone) {
      const double power = PowerAt(bytes, channels, channel, 200.0 * tone);
      if (tone == channel + 1)
        EXPECT_NEAR(std::sqrt(power), 0.1, 0.0001) << channel;
      else
        EXPECT_LT(std::sqrt(power), 0.0001) << channel << ' ' << tone;
    }
}

TEST(SampleSound, TicksAtEachSecond) {
  const SampleSound sound(1);
  const auto at = [&](Ferro::ui64_t first) { return std::sqrt(PowerAt(sound.Samples(first, 480), 1, 0, 2000)); };
  EXPECT_NEAR(at(0), 0.5, 0.01);
  EXPECT_NEAR(at(48000), 0.5, 0.01);
  EXPECT_LT(at(480), 0.01);
  EXPECT_LT(at(47520), 0.01);
}

TEST(SampleSound, PiecesJoinWithoutSeam) {
  const SampleSound sound(2);
  auto pieces = sound.Samples(0, 2000);
  const auto second = sound.Samples(2000, 2000);
  pieces.insert(pieces.end(), second.begin(), second.end());
  EXPECT_EQ(pieces, sound.Samples(0, 4000));
}

TEST(SamplePicture, DecodedByOthersIsWhatWasDrawn) {
  const SampleOptions options = SmallOptions();
  const SampleTrackFiles files(options);
  const SamplePicture drawn = files.Draw({"FEATURE", 2, {1000, 1000, 1000}}, 7);
  const testsupport::TemporaryFolder folder;
  const std::vector<Ferro::ui8_t> codestream = drawn.Encode(24);
  std::ofstream(folder.Path("a.j2k"), std::ios::binary)
      .write(reinterpret_cast<const char*>(codestream.data()), static_cast<std::streamsize>(codestream.size()));
  testsupport::RunJudge({"ffmpeg", "-v", "error", "-f", "j2k_pipe", "-i", folder.Path("a.j2k"), "-f", "rawvideo",
                         "-pix_fmt", "xyz12le", folder.Path("a.raw")});
  std::ostringstream raw;
  raw << std::ifstream(folder.Path("a.raw"), std::ios::binary).rdbuf();
  const std::string pixels = raw.str();
  ASSERT_EQ(pixels.size(), size_t{options.Width} * options.Height * 6);
  double squares = 0;
  for (size_t i = 0; i < pixels.size() / 2; ++i) {
    // Twelve bits at the top of sixteen.
    const auto word = static_cast<Ferro::ui8_t>(pixels[2 * i]) | static_cast<Ferro::ui8_t>(pixels[2 * i + 1]) << 8;
    const auto pixel = static_cast<Ferro::ui32_t>(i / 3);
    const double difference = (word >> 4) - drawn.At(pixel % options.Width, pixel / options.Width)[i % 3];
    squares += difference * difference;
  }
  const double psnr = 10 * std::log10(4095.0 * 4095.0 * double(pixels.size() / 2) / squares);
  EXPECT_GT(psnr, 40) << "decibels";
  RecordProperty("psnr", std::to_string(psnr));
}

TEST(SamplePicture, IsOfTheProfileForTwoThousandPixels) {
  QUIRE::JP2K::CodestreamHeaders headers;
  const auto codestream = SampleTrackFiles(SmallOptions()).Draw({"FEATURE", 2, {1000, 1000, 1000}}, 7).Encode(24);
  ASSERT_TRUE(ParseHeaders(codestream, headers).Success());
  for (const auto& finding : CheckCinemaProfile(headers, QUIRE::EditRate_24)) ADD_FAILURE() << finding.EncodeString();
  EXPECT_EQ(headers.Quant.GuardBits, 1);
  EXPECT_TRUE(headers.Coding.UsesComponentTransform);
}

TEST(SamplePicture, StaysWithinItsShareOfTheLargestRate) {
  const SampleOptions options = SmallOptions();
  const auto codestream = SampleTrackFiles(options).Draw({"FEATURE", 2, {1000, 1000, 1000}}, 7).Encode(24);
  // 1302083 bytes for 2048 x 1080 pixels at 24 pictures per second (DCI: 250 Mbit/s).
  EXPECT_LE(double(codestream.size()), 1302083.0 * options.Width * options.Height / (2048 * 1080));
}

TEST(SamplePicture, ShareOfAnImageIsLessWhereThereAreMore) {
  const SamplePicture picture = SampleTrackFiles(SmallOptions()).Draw({"FEATURE", 2, {1000, 1000, 1000}}, 7);
  EXPECT_LE(double(picture.Encode(120).size()), 250e6 / 8 / 120 * 200 * 108 / (2048 * 1080));
}

TEST(SamplePicture, FiguresOutsideThePictureAreLeftOut) {
  SamplePicture picture(64, 64, {0, 0, 0});
  picture.Fill(60, 60, 10, 10, SamplePicture::White);
  EXPECT_EQ(picture.At(63, 63), SamplePicture::White);
  EXPECT_EQ(picture.At(59, 63), (SamplePicture::Colour{0, 0, 0}));
}
