// SPDX-License-Identifier: BSD-3-Clause
// Writes the seeds of RawEssenceFuzz into the folder given.
#include "../tests/support/EssenceMaker.h"

#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <string>

namespace {

using testsupport::Bytes;

// The main header of a codestream of 16 x 16 samples and the start of its tile part.
const Bytes Codestream = {0xff, 0x4f, 0xff, 0x51, 0x00, 0x2f, 0x00, 0x03, 0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00,
                          0x10, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,
                          0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x03, 0x07, 0x01, 0x01,
                          0x07, 0x01, 0x01, 0x07, 0x01, 0x01, 0xff, 0x52, 0x00, 0x0c, 0x00, 0x00, 0x00, 0x01, 0x00,
                          0x01, 0x03, 0x03, 0x00, 0x00, 0xff, 0x5c, 0x00, 0x05, 0x22, 0x7f, 0x20, 0xff, 0x90};

Bytes Pictures() {
  Bytes stream;
  for (const auto type : {QUIRE::MPEG2::PT_I, QUIRE::MPEG2::PT_P, QUIRE::MPEG2::PT_B}) {
    const Bytes unit = testsupport::MakeAccessUnit(type, 0, 1920, 1080, QUIRE::EditRate_24, 0);
    stream.insert(stream.end(), unit.begin(), unit.end());
  }
  return stream;
}

Bytes Sound() {
  QUIRE::PCM::AudioDescriptor sound;
  sound.AudioSamplingRate = QUIRE::SampleRate_48k;
  sound.ChannelCount = 1;
  sound.QuantizationBits = 16;
  sound.BlockAlign = 2;
  sound.AvgBps = 96000;
  return testsupport::MakeWAV(sound, testsupport::MakeSamples(sound, 0, 100));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  int number = 0;
  for (const Bytes& seed : {Codestream, Pictures(), Sound()}) {
    const std::string path = Ferro::PathJoin(argv[1], std::to_string(number++));
    if (Ferro::WriteStringIntoFile(path, std::string(seed.begin(), seed.end())).Failure()) return 1;
  }
  return 0;
}
