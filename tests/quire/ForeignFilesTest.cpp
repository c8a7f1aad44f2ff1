// SPDX-License-Identifier: BSD-3-Clause
//
// What FFmpeg and GStreamer write, read by us: frames as FFmpeg reads them, or a refusal that says why.
#include "Judges.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>

#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

namespace {

using namespace QUIRE;
using namespace testsupport;

class ForeignFile : public testing::Test {
 protected:
  ForeignFile() : m_PreviousLog(Ferro::SetDefaultLogSink(&m_Log)) {}
  ~ForeignFile() override { Ferro::SetDefaultLogSink(m_PreviousLog); }

  // Runs FFmpeg with an input made by a filter and the words for the output.
  void MakeByFFmpeg(const std::string& source, std::vector<std::string> output) {
    std::vector<std::string> command = {"ffmpeg", "-y", "-v", "error", "-nostdin", "-f", "lavfi", "-i", source};
    command.insert(command.end(), output.begin(), output.end());
    command.push_back(m_Path);
    RunJudge(command);
  }
  // Runs GStreamer with the elements before the muxer.
  void MakeByGStreamer(std::vector<std::string> elements) {
    elements.insert(elements.begin(), {"gst-launch-1.0", "-q"});
    for (const char* word : {"!", "mxfmux", "!", "filesink"}) elements.emplace_back(word);
    elements.push_back("location=" + m_Path);
    RunJudge(elements);
  }
  template <class ReaderT, class BufferT>
  std::vector<PacketFacts> PacketsByUs(ReaderT& reader, ui32_t count) {
    std::vector<PacketFacts> packets;
    BufferT buffer;
    EXPECT_EQ(buffer.Capacity(1 << 20), Ferro::RESULT_OK);
    for (ui32_t i = 0; i < count; ++i) {
      EXPECT_EQ(reader.ReadFrame(i, buffer), Ferro::RESULT_OK) << i << ' ' << Messages();
      packets.push_back(FactsOf(std::span(buffer.RoData(), buffer.Size())));
    }
    return packets;
  }
  std::string Messages() const {
    std::string text;
    for (const auto& entry : m_Log.Entries()) text += entry.Message;
    return text;
  }
  void ExpectPictures(const Rational& rate, ui32_t count, ui32_t stored_height) {
    JP2K::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(m_Path), Ferro::RESULT_OK) << Messages();
    JP2K::PictureDescriptor descriptor;
    ASSERT_EQ(reader.FillPictureDescriptor(descriptor), Ferro::RESULT_OK);
    EXPECT_EQ(descriptor.EditRate, rate);
    EXPECT_EQ(descriptor.ContainerDuration, count);
    EXPECT_EQ(descriptor.StoredWidth, 320u);
    EXPECT_EQ(descriptor.StoredHeight, stored_height);
    EXPECT_EQ((PacketsByUs<JP2K::MXFReader, JP2K::FrameBuffer>(reader, count)), PacketsByFFmpeg(m_Path));
  }
  void ExpectMPEG2(const Rational& rate, ui32_t count) {
    MPEG2::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(m_Path), Ferro::RESULT_OK) << Messages();
    MPEG2::VideoDescriptor descriptor;
    ASSERT_EQ(reader.FillVideoDescriptor(descriptor), Ferro::RESULT_OK);
    EXPECT_EQ(descriptor.EditRate, rate);
    EXPECT_EQ(descriptor.ContainerDuration, count);
    EXPECT_EQ(descriptor.StoredWidth, 320u);
    EXPECT_EQ((PacketsByUs<MPEG2::MXFReader, MPEG2::FrameBuffer>(reader, count)), PacketsByFFmpeg(m_Path));
  }

  Ferro::MemoryLogSink m_Log;
  Ferro::ILogSink* const m_PreviousLog;
  TemporaryFolder m_Folder;
  const std::string m_Path = m_Folder.Path("file.mxf");
};

TEST_F(ForeignFile, JPEG2000ByFFmpeg) {
  for (const char* rate : {"24", "25", "30", "60"}) {
    MakeByFFmpeg("testsrc=size=320x180:duration=1:rate=" + std::string(rate),
                 {"-pix_fmt", "yuv422p", "-c:v", "jpeg2000", "-f", "mxf"});
    const auto number = static_cast<i32_t>(std::stol(rate));
    ExpectPictures(Rational(number, 1), static_cast<ui32_t>(number), 192);  // it stores whole macroblocks
  }
}

TEST_F(ForeignFile, MPEG2ByFFmpeg) {
  MakeByFFmpeg("testsrc=size=320x180:duration=1:rate=25", {"-c:v", "mpeg2video", "-g", "12", "-bf", "2", "-f", "mxf"});
  ExpectMPEG2(Rational(25, 1), 25);
}

TEST_F(ForeignFile, JPEG2000ByGStreamer) {
  MakeByGStreamer(
      {"videotestsrc", "num-buffers=24", "!", "video/x-raw,width=320,height=180,framerate=24/1", "!", "openjpegenc"});
  ExpectPictures(Rational(24, 1), 24, 180);
}

TEST_F(ForeignFile, MPEG2ByGStreamer) {
  MakeByGStreamer({"videotestsrc", "num-buffers=25", "!", "video/x-raw,width=320,height=176,framerate=25/1", "!",
                   "mpeg2enc", "format=3", "!", "mpegvideoparse"});
  ExpectMPEG2(Rational(25, 1), 25);
}

TEST_F(ForeignFile, SoundByGStreamer) {
  MakeByGStreamer({"audiotestsrc", "num-buffers=50", "!", "audio/x-raw,format=S24LE,rate=48000,channels=2"});
  PCM::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(m_Path), Ferro::RESULT_OK) << Messages();
  PCM::AudioDescriptor descriptor;
  ASSERT_EQ(reader.FillAudioDescriptor(descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor.AudioSamplingRate, SampleRate_48k);
  EXPECT_EQ(descriptor.ChannelCount, 2u);
  EXPECT_EQ(descriptor.QuantizationBits, 24u);
  const auto packets = PacketsByFFmpeg(m_Path);
  EXPECT_EQ((PacketsByUs<PCM::MXFReader, PCM::FrameBuffer>(reader, descriptor.ContainerDuration)), packets);
}

// FFmpeg wraps the sound of a file of its own as one clip, though it labels it otherwise.
TEST_F(ForeignFile, ClipWrappedSoundByFFmpegIsRefusedByName) {
  MakeByFFmpeg("sine=frequency=440:sample_rate=48000:duration=1",
               {"-ac", "1", "-c:a", "pcm_s16le", "-f", "mxf_opatom"});
  PCM::MXFReader reader;
  EXPECT_EQ(reader.OpenRead(m_Path), RESULT_FORMAT);
  EXPECT_EQ(Messages(), m_Path + ": cannot be read, its essence is clip-wrapped\n");
}

}  // namespace
