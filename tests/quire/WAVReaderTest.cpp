// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceMaker.h"
#include "TemporaryFolder.h"

#include <QUIRE/WAVReader.h>

#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace QUIRE;
using testsupport::Bytes;

PCM::AudioDescriptor Stereo24() {
  PCM::AudioDescriptor sound;
  sound.AudioSamplingRate = SampleRate_48k;
  sound.ChannelCount = 2;
  sound.QuantizationBits = 24;
  sound.BlockAlign = 6;
  sound.AvgBps = 288000;
  return sound;
}

class WAVReader : public testing::Test {
 protected:
  Result_t Open(const Bytes& bytes, const Rational& edit_rate = EditRate_24) {
    std::ofstream(m_Path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return m_Reader.OpenRead(m_Path, edit_rate);
  }
  Bytes Read(ui32_t number) {
    PCM::FrameBuffer frame;
    EXPECT_EQ(frame.Capacity(100000), Ferro::RESULT_OK);
    EXPECT_EQ(m_Reader.ReadFrame(number, frame), Ferro::RESULT_OK);
    EXPECT_EQ(frame.FrameNumber(), number);
    return Bytes(frame.RoData(), frame.RoData() + frame.Size());
  }
  ui32_t Duration() {
    PCM::AudioDescriptor descriptor;
    EXPECT_EQ(m_Reader.FillAudioDescriptor(descriptor), Ferro::RESULT_OK);
    return descriptor.ContainerDuration;
  }

  testsupport::TemporaryFolder m_Folder;
  const std::string m_Path = m_Folder.Path("sound.wav");
  PCM::WAVReader m_Reader;
};

TEST_F(WAVReader, DeliversEditUnitsAndFillsTheLastWithSilence) {
  const Bytes samples = testsupport::MakeSamples(Stereo24(), 0, 5000);
  ASSERT_EQ(Open(testsupport::MakeWAV(Stereo24(), samples)), Ferro::RESULT_OK);
  PCM::AudioDescriptor expected = Stereo24();
  expected.EditRate = EditRate_24;
  expected.ContainerDuration = 3;
  PCM::AudioDescriptor descriptor;
  ASSERT_EQ(m_Reader.FillAudioDescriptor(descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor, expected);

  Bytes padded = samples;
  padded.resize(3 * 12000);
  for (ui32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(Read(i), Bytes(padded.begin() + i * 12000, padded.begin() + (i + 1) * 12000)) << i;
  }
  PCM::FrameBuffer frame;
  EXPECT_EQ(m_Reader.ReadFrame(3, frame), RESULT_RANGE);
  EXPECT_EQ(m_Reader.ReadFrame(0, frame), Ferro::RESULT_SMALLBUF);
}

TEST_F(WAVReader, FollowsTheCadenceOfUnevenRates) {
  const Bytes samples = testsupport::MakeSamples(Stereo24(), 0, 8008);
  ASSERT_EQ(Open(testsupport::MakeWAV(Stereo24(), samples), Rational(30000, 1001)), Ferro::RESULT_OK);
  EXPECT_EQ(Duration(), 5u);
  Bytes joined;
  for (ui32_t i = 0; i < 5; ++i) {
    const Bytes frame = Read(i);
    joined.insert(joined.end(), frame.begin(), frame.end());
  }
  EXPECT_EQ(joined, samples);
}

TEST_F(WAVReader, ChunksBeforeTheSoundArePassedOver) {
  Bytes file = testsupport::MakeWAV(Stereo24(), Bytes(12000));
  const Bytes chunk = {'j', 'u', 'n', 'k', 3, 0, 0, 0, 1, 2, 3, 0};  // odd length, padded
  file.insert(file.begin() + 12, chunk.begin(), chunk.end());
  ASSERT_EQ(Open(file), Ferro::RESULT_OK);
  EXPECT_EQ(Duration(), 1u);
}

TEST_F(WAVReader, ADataChunkThatClaimsTooMuchEndsWithTheFile) {
  Bytes file = testsupport::MakeWAV(Stereo24(), Bytes(24000));
  std::fill(file.begin() + 40, file.begin() + 44, ui8_t{0xff});
  ASSERT_EQ(Open(file), Ferro::RESULT_OK);
  EXPECT_EQ(Duration(), 2u);
}

TEST_F(WAVReader, RF64TakesTheLengthFromItsOwnChunk) {
  Bytes file = testsupport::MakeWAV(Stereo24(), Bytes(24000));
  std::fill(file.begin() + 40, file.begin() + 44, ui8_t{0xff});
  Bytes ds64 = {'d', 's', '6', '4', 28, 0, 0, 0};
  ds64.resize(8 + 28);
  ds64[16] = 0xe0;  // data length 12000
  ds64[17] = 0x2e;
  file.insert(file.begin() + 12, ds64.begin(), ds64.end());
  std::copy_n("RF64", 4, file.begin());
  ASSERT_EQ(Open(file), Ferro::RESULT_OK);
  EXPECT_EQ(Duration(), 1u);
}

TEST_F(WAVReader, TheExtensibleFormatNamesPCMInItsSubFormat) {
  Bytes file = testsupport::MakeWAV(Stereo24(), Bytes(12000));
  file[16] = 40;
  file[20] = 0xfe;
  file[21] = 0xff;
  Bytes extension(24);
  const Bytes sub_format = {1, 0, 0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xaa, 0, 0x38, 0x9b, 0x71};
  std::copy(sub_format.begin(), sub_format.end(), extension.begin() + 8);
  file.insert(file.begin() + 36, extension.begin(), extension.end());
  EXPECT_EQ(Open(file), Ferro::RESULT_OK);
  file[36 + 8] = 3;  // floating point
  EXPECT_EQ(Open(file), RESULT_RAW_FORMAT);
}

TEST_F(WAVReader, OtherFilesAreNotItsKind) {
  EXPECT_EQ(Open({}), RESULT_RAW_ESS);
  EXPECT_EQ(Open(Bytes(100)), RESULT_RAW_ESS);
  Bytes file = testsupport::MakeWAV(Stereo24(), Bytes(12000));
  file[8] = 'X';
  EXPECT_EQ(Open(file), RESULT_RAW_ESS);
  EXPECT_EQ(m_Reader.OpenRead(m_Folder.Path("missing"), EditRate_24), Ferro::RESULT_NOT_FOUND);
}

TEST_F(WAVReader, ACutAtEveryByteOfTheHeaderIsAnError) {
  const Bytes file = testsupport::MakeWAV(Stereo24(), Bytes(12000));
  for (std::ptrdiff_t length = 0; length < 44; ++length) {
    const Result_t result = Open(Bytes(file.begin(), file.begin() + length));
    EXPECT_EQ(result, length < 12 ? RESULT_RAW_ESS : RESULT_RAW_FORMAT) << length;
    EXPECT_EQ(m_Reader.FillAudioDescriptor(*std::make_unique<PCM::AudioDescriptor>()), Ferro::RESULT_INIT);
  }
}

TEST_F(WAVReader, MalformedFormatsAreErrors) {
  const std::tuple<const char*, size_t, Bytes> damages[] = {
      {"format chunk too short", 16, {15}},
      {"format chunk past the end", 16, {0xff, 0xff, 0xff, 0xff}},
      {"another coding", 20, {2}},
      {"no channels", 22, {0}},
      {"65535 channels", 22, {0xff, 0xff}},
      {"rate 0", 24, {0, 0, 0, 0}},
      {"rate beyond 31 bits", 24, {0xff, 0xff, 0xff, 0xff}},
      {"block alignment 0", 32, {0}},
      {"block alignment that contradicts", 32, {7}},
      {"8 bits", 34, {8}},
      {"65535 bits", 34, {0xff, 0xff}},
      {"no format", 12, {'f', 'm', 't', 'x'}},
  };
  for (const auto& [what, offset, replacement] : damages) {
    Bytes file = testsupport::MakeWAV(Stereo24(), Bytes(12000));
    std::copy(replacement.begin(), replacement.end(), file.begin() + static_cast<std::ptrdiff_t>(offset));
    EXPECT_EQ(Open(file), RESULT_RAW_FORMAT) << what;
  }
}

TEST_F(WAVReader, RatesWithoutCadenceAreAParameterError) {
  EXPECT_EQ(Open(testsupport::MakeWAV(Stereo24(), Bytes(12000)), Rational(24, 0)), Ferro::RESULT_PARAM);
}

}  // namespace
