// SPDX-License-Identifier: BSD-3-Clause
#include "InfoRaw.h"

#include "InfoPicture.h"
#include "terminal/ReasonText.h"
#include "terminal/TextForms.h"

#include <Ferro/FileReader.h>
#include <QUIRE/Codestream.h>
#include <QUIRE/WAVReader.h>

#include <array>
#include <vector>

namespace Tool {

namespace {

// Main headers of codestreams and streams are far shorter.
std::vector<Ferro::ui8_t> HeadOf(const std::string& path) {
  std::vector<Ferro::ui8_t> head(65536);
  Ferro::FileReader file;
  size_t count = 0;
  if (file.OpenRead(path).Success()) static_cast<void>(file.ReadUpTo(0, head, count));
  head.resize(count);
  return head;
}

void DescribeCodestream(const std::string& path, InfoItem& item) {
  QUIRE::JP2K::PictureDescriptor descriptor;
  if (QUIRE::JP2K::ParseCodestream(HeadOf(path), descriptor).Failure())
    return item.AddProblem("The main header of this codestream is damaged.");
  InfoFacts& picture = item.Facts.Group("picture");
  SetPictureSize(picture, descriptor.StoredWidth, descriptor.StoredHeight);
  picture.Set("components", descriptor.Csiz);
  picture.Set("bits", (descriptor.PictureComponentSizing.front().Ssiz & 0x7F) + 1);
}

void DescribeStream(const std::string& path, InfoItem& item) {
  QUIRE::MPEG2::VideoDescriptor descriptor;
  if (QUIRE::MPEG2::ParseSequence(HeadOf(path), descriptor).Failure())
    return item.AddProblem("The sequence header of this stream is damaged.");
  InfoFacts& picture = item.Facts.Group("picture");
  SetPictureSize(picture, descriptor.StoredWidth, descriptor.StoredHeight);
  picture.Add("sample_rate", descriptor.SampleRate, RateText(descriptor.SampleRate) + " pictures per second");
  picture.Set("bits_per_second", descriptor.BitRate).ShownAs(BitRateText(descriptor.BitRate));
}

void DescribeSound(const std::string& path, InfoItem& item) {
  QUIRE::PCM::WAVReader reader;
  QUIRE::PCM::AudioDescriptor descriptor;
  const QUIRE::Rational per_second(1, 1);
  const auto result = reader.OpenRead(path, per_second);
  if (result.Failure() || reader.FillAudioDescriptor(descriptor).Failure())
    return item.AddProblem(std::string("This WAVE file cannot be wrapped: ") + ReasonText(result) + '.');
  InfoFacts& sound = item.Facts.Group("sound");
  sound.Set("channels", descriptor.ChannelCount);
  sound.Set("bits", descriptor.QuantizationBits);
  sound.Add("sampling_rate", descriptor.AudioSamplingRate, SamplingRateText(descriptor.AudioSamplingRate));
  item.Facts.Tell("duration", DurationText(descriptor.ContainerDuration));
  item.Facts.Set("duration_seconds", descriptor.ContainerDuration).ShownAs("");
}

// The header chunk comes first (ISO/IEC 15948, 11.2.2): signature, length, "IHDR", width, height, bit depth.
void DescribeImage(const std::string& path, InfoItem& item) {
  const std::vector<Ferro::ui8_t> head = HeadOf(path);
  if (head.size() < 25) return item.AddProblem("This image is cut off.");
  const auto number = [&](size_t at) {
    return Ferro::ui32_t{head[at]} << 24 | Ferro::ui32_t{head[at + 1]} << 16 | Ferro::ui32_t{head[at + 2]} << 8 |
           head[at + 3];
  };
  InfoFacts& picture = item.Facts.Group("picture");
  SetPictureSize(picture, number(16), number(20));
  picture.Set("bits", head[24]);
}

}  // namespace

void DescribeRawEssence(const std::string& path, Cairn::FileType_t type, InfoItem& item) {
  if (type == Cairn::FT_J2C) DescribeCodestream(path, item);
  if (type == Cairn::FT_WAV) DescribeSound(path, item);
  if (type == Cairn::FT_MPEG2_VES) DescribeStream(path, item);
  if (type == Cairn::FT_TI_PNG) DescribeImage(path, item);
}

}  // namespace Tool
