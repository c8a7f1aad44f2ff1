// SPDX-License-Identifier: BSD-3-Clause
//
// What we write, read by programs that others wrote: FFmpeg, MediaInfo, OpenJPEG.
#include "FileBytes.h"
#include "Judges.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/MPEG2Writer.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace QUIRE;
using namespace testsupport;

std::vector<PacketFacts> ExpectedPackets(TrackKind kind, const TrackFileSpec& spec) {
  std::vector<PacketFacts> packets;
  for (ui32_t i = 0; i < spec.Duration; ++i) {
    packets.push_back(FactsOf(MakeFrame(kind, spec, i)));
    if (kind == TrackKind::StereoscopicPicture) packets.push_back(FactsOf(MakeFrame(kind, spec, i, true)));
  }
  return packets;
}

// "0.500000": edit units in seconds as FFmpeg prints them.
std::string Seconds(ui32_t edit_units, const Rational& rate) {
  char text[40];
  std::snprintf(text, sizeof text, "%.6f", edit_units / rate.Quotient());
  return text;
}

std::string RateText(const Rational& rate) {
  return std::to_string(rate.Numerator) + '/' + std::to_string(rate.Denominator);
}

class WrittenFile : public testing::Test {
 protected:
  void Make(TrackKind kind, const TrackFileSpec& spec) {
    ASSERT_EQ(MakeTrackFile(kind, m_Path, spec), Ferro::RESULT_OK);
  }

  TemporaryFolder m_Folder;
  const std::string m_Path = m_Folder.Path("file.mxf");
};

constexpr LabelSet_t BothLabelSets[] = {LS_MXF_SMPTE, LS_MXF_INTEROP};

TEST_F(WrittenFile, FlatPicturesAreUnderstoodAtEachRate) {
  for (const LabelSet_t label_set : BothLabelSets) {
    for (const Rational& rate : {EditRate_24, EditRate_25, EditRate_30, EditRate_48, EditRate_60}) {
      SCOPED_TRACE(std::to_string(label_set) + ' ' + RateText(rate));
      TrackFileSpec spec;
      spec.LabelSet = label_set;
      spec.EditRate = rate;
      spec.Duration = 12;
      spec.Width = 512;
      spec.Height = 270;
      Make(TrackKind::Picture, spec);
      auto probe = ProbeByFFmpeg(m_Path);
      EXPECT_EQ(probe["codec_name"], "jpeg2000");
      EXPECT_EQ(probe["width"], "512");
      EXPECT_EQ(probe["height"], "270");
      EXPECT_EQ(probe["pix_fmt"], "xyz12le");
      EXPECT_EQ(probe["bits_per_raw_sample"], "12");
      EXPECT_EQ(probe["r_frame_rate"], RateText(rate));
      EXPECT_EQ(probe["duration_ts"], "12");
      EXPECT_EQ(probe["format_duration"], Seconds(12, rate));
      EXPECT_EQ(PacketsByFFmpeg(m_Path), ExpectedPackets(TrackKind::Picture, spec));

      EXPECT_EQ(AskMediaInfo(m_Path, "Video", "%Format%|%Format_Profile%|%Width%|%Height%|%BitDepth%|%FrameCount%"),
                "JPEG 2000|D-Cinema 2k|512|270|12|12");
      EXPECT_EQ(AskMediaInfo(m_Path, "General", "%Format_Settings%"), "Closed / Complete");
    }
  }
}

TEST_F(WrittenFile, FourKPicturesHaveTheirProfile) {
  TrackFileSpec spec;
  spec.Duration = 1;
  spec.Width = 4096;
  spec.Height = 2160;
  Make(TrackKind::Picture, spec);
  EXPECT_EQ(AskMediaInfo(m_Path, "Video", "%Format_Profile%"), "D-Cinema 4k");
  EXPECT_EQ(PacketsByFFmpeg(m_Path), ExpectedPackets(TrackKind::Picture, spec));
}

TEST_F(WrittenFile, StereoscopicPicturesDeliverBothEyes) {
  for (const LabelSet_t label_set : BothLabelSets) {
    TrackFileSpec spec;
    spec.LabelSet = label_set;
    spec.Duration = 12;
    Make(TrackKind::StereoscopicPicture, spec);
    auto probe = ProbeByFFmpeg(m_Path);
    EXPECT_EQ(probe["width"], "64");
    EXPECT_EQ(probe["format_duration"], "0.500000");
    EXPECT_EQ(PacketsByFFmpeg(m_Path), ExpectedPackets(TrackKind::StereoscopicPicture, spec));
    EXPECT_EQ(AskMediaInfo(m_Path, "Video", "%FrameRate%|%FrameRate_Original%|%Duration%"), "48.000|24.000|500");
  }
}

TEST_F(WrittenFile, ExtractedCodestreamsDecode) {
  TrackFileSpec spec;
  spec.Duration = 2;
  Make(TrackKind::Picture, spec);
  RunJudge({"ffmpeg", "-v", "error", "-nostdin", "-i", m_Path, "-c", "copy", "-f", "image2", m_Folder.Path("%d.j2c")});
  for (const std::string number : {"1", "2"}) {
    const std::string picture = m_Folder.Path(number + ".ppm");
    RunJudge({"opj_decompress", "-quiet", "-i", m_Folder.Path(number + ".j2c"), "-o", picture});
    const Bytes ppm = ReadFileBytes(picture);
    const std::string text(ppm.begin(), ppm.begin() + std::min<std::ptrdiff_t>(80, std::ssize(ppm)));
    EXPECT_NE(text.find("\n64 36\n4095\n"), std::string::npos) << text;
    EXPECT_EQ(ReadFileBytes(m_Folder.Path(number + ".j2c")),
              MakeFrame(TrackKind::Picture, spec, static_cast<ui32_t>(std::stoul(number) - 1)));
  }
}

TEST_F(WrittenFile, SoundIsUnderstoodAtEachRateAndWidth) {
  const std::tuple<Rational, Rational, ui32_t> cases[] = {
      {EditRate_24, SampleRate_48k, 2},  {EditRate_25, SampleRate_48k, 6},           {EditRate_30, SampleRate_48k, 8},
      {EditRate_48, SampleRate_96k, 6},  {EditRate_60, SampleRate_96k, 12},          {EditRate_24, SampleRate_96k, 16},
      {EditRate_24, SampleRate_48k, 14}, {Rational(24000, 1001), SampleRate_48k, 6}, {EditRate_50, SampleRate_48k, 4}};
  for (const LabelSet_t label_set : BothLabelSets) {
    for (const auto& [edit_rate, sampling_rate, channels] : cases) {
      SCOPED_TRACE(RateText(edit_rate) + ' ' + std::to_string(channels));
      TrackFileSpec spec;
      spec.LabelSet = label_set;
      spec.EditRate = edit_rate;
      spec.SamplingRate = sampling_rate;
      spec.ChannelCount = channels;
      spec.Duration = 10;
      Make(TrackKind::Sound, spec);
      auto probe = ProbeByFFmpeg(m_Path);
      EXPECT_EQ(probe["codec_name"], "pcm_s24le");
      EXPECT_EQ(probe["channels"], std::to_string(channels));
      EXPECT_EQ(probe["sample_rate"], std::to_string(sampling_rate.Numerator));
      EXPECT_EQ(probe["bits_per_sample"], "24");
      EXPECT_EQ(probe["format_duration"], Seconds(10, edit_rate));
      EXPECT_EQ(PacketsByFFmpeg(m_Path), ExpectedPackets(TrackKind::Sound, spec));

      EXPECT_EQ(AskMediaInfo(m_Path, "Audio", "%Channel(s)%|%BitDepth%|%SamplingRate%|%FrameCount%"),
                std::to_string(channels) + "|24|" + std::to_string(sampling_rate.Numerator) + "|10");
    }
  }
}

TEST_F(WrittenFile, SoundWithUnevenEditUnitsKeepsEverySample) {
  TrackFileSpec spec;
  spec.EditRate = Rational(30000, 1001);
  spec.Duration = 10;
  Make(TrackKind::Sound, spec);
  auto probe = ProbeByFFmpeg(m_Path);
  EXPECT_EQ(probe["sample_rate"], "48000");
  EXPECT_EQ(probe["format_duration"], Seconds(10, spec.EditRate));
  EXPECT_EQ(PacketsByFFmpeg(m_Path), ExpectedPackets(TrackKind::Sound, spec));
}

TEST_F(WrittenFile, MultichannelLabelsAreUnderstood) {
  TrackFileSpec spec;
  spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs)";
  Make(TrackKind::Sound, spec);
  EXPECT_EQ(AskMediaInfo(m_Path, "Audio", "%ChannelLayout%|%Language%"), "L R C LFE Ls Rs|en");
  EXPECT_EQ(PacketsByFFmpeg(m_Path), ExpectedPackets(TrackKind::Sound, spec));
}

// An elementary stream that FFmpeg encoded, written by us picture by picture, read by FFmpeg again.
TEST_F(WrittenFile, MPEG2StreamsKeepTheirPicturesAndTheirOrder) {
  for (const Rational& rate : {EditRate_24, EditRate_25, Rational(30000, 1001), EditRate_60}) {
    SCOPED_TRACE(RateText(rate));
    const std::string stream_path = m_Folder.Path("stream.m2v");
    RunJudge({"ffmpeg",     "-y",         "-v",
              "error",      "-nostdin",   "-f",
              "lavfi",      "-i",         "testsrc=size=1280x720:duration=2:rate=" + RateText(rate),
              "-pix_fmt",   "yuv420p",    "-c:v",
              "mpeg2video", "-profile:v", "main",
              "-level:v",   "4",          "-g",
              "12",         "-bf",        "2",
              "-f",         "mpeg2video", stream_path});
    const Bytes stream = ReadFileBytes(stream_path);
    MPEG2::VideoDescriptor descriptor;
    ASSERT_EQ(MPEG2::ParseSequence(stream, descriptor), Ferro::RESULT_OK);
    EXPECT_EQ(descriptor.EditRate, rate);

    MPEG2::MXFWriter writer;
    ASSERT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), descriptor, MakeWriterOptions()), Ferro::RESULT_OK);
    std::vector<PacketFacts> expected;
    for (std::span<const ui8_t> rest(stream); !rest.empty();) {
      size_t length = 0;
      ASSERT_EQ(MPEG2::FindAccessUnit(rest, length), Ferro::RESULT_OK);
      MPEG2::FrameBuffer buffer;
      FillBuffer(Bytes(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(length)), buffer);
      ASSERT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_OK);
      expected.push_back(FactsOf(rest.first(length)));
      rest = rest.subspan(length);
    }
    ASSERT_EQ(writer.Finalize(), Ferro::RESULT_OK);
    EXPECT_EQ(PacketsByFFmpeg(m_Path), expected);
    EXPECT_EQ(AskMediaInfo(m_Path, "Video", "%FrameCount%|%Format%|%Height%"),
              std::to_string(expected.size()) + "|MPEG Video|720");
    auto probe = ProbeByFFmpeg(m_Path);
    EXPECT_EQ(probe["codec_name"], "mpeg2video");
    EXPECT_EQ(probe["width"], "1280");
    EXPECT_EQ(probe["r_frame_rate"], RateText(rate));
    EXPECT_EQ(probe["format_duration"], Seconds(static_cast<ui32_t>(expected.size()), rate));
    // Every picture decodes, and as the same as from the bare stream.
    const auto decoded = [](const std::string& path) {
      return RunJudge({"ffmpeg", "-v", "error", "-nostdin", "-i", path, "-map", "0", "-vsync", "passthrough", "-f",
                       "rawvideo", "-c:v", "rawvideo", "-f", "md5", "-"});
    };
    EXPECT_EQ(decoded(m_Path), decoded(stream_path));
  }
}

// FFmpeg knows the triplet's key in its registry version 07 only, which Interop files have; others get it for the judging.
void GiveTripletsTheKnownVersion(const std::string& path) {
  constexpr ui8_t key[] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x04, 0x01, 0x01,
                           0x0d, 0x01, 0x03, 0x01, 0x02, 0x7e, 0x01, 0x00};
  Bytes bytes = ReadFileBytes(path);
  for (const auto& packet : ReadKLVs(bytes)) {
    if (std::equal(std::begin(key), std::end(key), packet.Key.Value())) bytes[packet.Offset + 7] = 0x07;
  }
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

TEST_F(WrittenFile, EncryptedEssenceIsDecryptedByFFmpeg) {
  const std::vector<std::string> key = {"-cryptokey", "000102030405060708090a0b0c0d0e0f"};
  for (const LabelSet_t label_set : BothLabelSets) {
    for (const auto kind : {TrackKind::Picture, TrackKind::StereoscopicPicture, TrackKind::MPEG2, TrackKind::Sound}) {
      for (const bool uses_hmac : {true, false}) {
        for (const ui32_t offset : {0u, 100u}) {
          SCOPED_TRACE(std::to_string(label_set) + ' ' + std::to_string(int(kind)) + ' ' + std::to_string(offset));
          TrackFileSpec spec;
          spec.LabelSet = label_set;
          spec.Key = TrackFileKey{};
          spec.Key->UsesHMAC = uses_hmac;
          spec.Key->PlaintextOffset = offset;
          Make(kind, spec);
          if (label_set == LS_MXF_SMPTE) GiveTripletsTheKnownVersion(m_Path);
          EXPECT_EQ(PacketsByFFmpeg(m_Path, key), ExpectedPackets(kind, spec));
        }
      }
    }
  }
}

TEST_F(WrittenFile, TimedTextIsUnderstood) {
  TrackFileSpec spec;
  spec.Duration = 240;
  spec.FontSizes = {1000};
  spec.ImageSizes = {200, 300};
  for (const bool is_encrypted : {false, true}) {
    if (is_encrypted) spec.Key = TrackFileKey{};
    Make(TrackKind::Text, spec);
    EXPECT_EQ(AskMediaInfo(m_Path, "Text", "%Format%|%Duration%"), "Timed Text|10000");
    EXPECT_EQ(AskMediaInfo(m_Path, "General", "%Format_Profile%"), "OP-Atom");
  }
  // The XML document is well-formed.
  std::ofstream(m_Folder.Path("text.xml")) << MakeText(spec);
  RunJudge({"xmllint", "--noout", m_Folder.Path("text.xml")});
}

// No judge knows what such files hold; they read the structure without complaint.
TEST_F(WrittenFile, DataAndImmersiveAudioHaveAStructureThatIsUnderstood) {
  for (const auto kind : {TrackKind::Data, TrackKind::Atmos}) {
    Make(kind, {});
    EXPECT_EQ(
        AskMediaInfo(m_Path, "General",
                     "%Format%|%Format_Profile%|%Format_Settings%|%Encoded_Date%|%Encoded_Application_CompanyName%"),
        "MXF|OP-Atom|Closed / Complete|2026-01-02 03:04:05.000|Test Company");
  }
}

}  // namespace
