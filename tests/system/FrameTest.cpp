// SPDX-License-Identifier: BSD-3-Clause
// strata frame: what it writes is compared with what the sample show was made of.
#include "JsonSchema.h"
#include "SampleFolder.h"
#include "ToneMeter.h"
#include "picture/ColourTransform.h"
#include "sample/SampleImmersive.h"
#include "sample/SampleSound.h"
#include "sample/SampleTrackFiles.h"

#include "EssenceMaker.h"
#include "Judges.h"
#include "MxfBuilder.h"

#include <Ferro/FileText.h>
#include <QUIRE/JP2KReader.h>

#include <png.h>
#include <signal.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>
#include <sstream>

using namespace Tool;
using testing::HasSubstr;
using Json = nlohmann::json;

namespace {

using Bytes = std::vector<Ferro::ui8_t>;

Bytes ContentOf(const std::string& filename) {
  std::ifstream file(filename, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << filename;
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Still {
  Ferro::ui32_t Width = 0;
  Ferro::ui32_t Height = 0;
  Bytes Pixels;  // red, green, blue
};

Still ReadPNG(const std::string& filename) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  EXPECT_NE(png_image_begin_read_from_file(&image, filename.c_str()), 0) << filename;
  EXPECT_EQ(image.format, unsigned{PNG_FORMAT_RGB}) << filename;
  Still still{image.width, image.height, Bytes(size_t{image.width} * image.height * 3)};
  EXPECT_NE(png_image_finish_read(&image, nullptr, still.Pixels.data(), 0, nullptr), 0) << filename;
  return still;
}

/// How far a still is from a drawing: root of the mean square, in steps of 8 bits.
double Distance(const Still& still, const SamplePicture& drawing) {
  const ColourTransform transform(PictureColour::XYZ, WhitePoint::DCI, 12);
  double squares = 0;
  for (Ferro::ui32_t i = 0; i < still.Width * still.Height; ++i) {
    const auto drawn = transform(drawing.At(i % still.Width, i / still.Width));
    for (size_t c = 0; c < 3; ++c) squares += std::pow(double(drawn[c]) - still.Pixels[i * 3 + c], 2);
  }
  return std::sqrt(squares / double(still.Pixels.size()));
}

class Frame : public SampleFolder {
 protected:
  /// Runs `strata frame`; the file that --out names lies beside the show.
  int Run(const std::string& source, const std::string& at, const std::string& out,
          const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"frame", source, "--at", at, "--out", Beside(out)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    StrataProgram program(arguments);
    const int code = program.Wait();
    m_Output = program.Output();
    m_Errors = program.Errors();
    return code;
  }

  std::string m_Output;
  std::string m_Errors;
};

/// Larger pictures, of which less is lost.
class FrameStill : public Frame {
 protected:
  void SetUp() override {
    StrataProgram maker({"make-sample", Show(), "--length", "1", "--size", "200x108"});
    ASSERT_EQ(maker.Wait(), 0) << maker.Errors();
  }

  /// Checks that a still is the drawing of this edit unit, and neither of the ones beside it.
  void ExpectShows(const std::string& out, const SampleTrackFiles::Reel& reel, Ferro::ui32_t number, char eye = ' ') {
    SampleOptions options;
    options.Seconds = 1;
    options.Width = 200;
    options.Height = 108;
    const SampleTrackFiles files(options);
    const Still still = ReadPNG(Beside(out));
    ASSERT_EQ(still.Width, options.Width);
    ASSERT_EQ(still.Height, options.Height);
    const double here = Distance(still, files.Draw(reel, number, eye));
    const double nearest = std::min(Distance(still, files.Draw(reel, number - 1, eye)),
                                    Distance(still, files.Draw(reel, number + 1, eye)));
    EXPECT_LT(here, 8) << out;  // each eye has half the bytes
    EXPECT_GT(nearest, 2.5 * here) << out;
  }
};

const SampleTrackFiles::Reel FeatureReel2 = {"FEATURE", 2, {1000, 1000, 1000}};
const SampleTrackFiles::Reel TrailerReel = {"TRAILER", 1, {900, 950, 1400}};
const SampleTrackFiles::Reel StereoReel = {"STEREO", 1, {900, 1150, 900}, true};

TEST_F(FrameStill, PictureIsWhatWasDrawn) {
  ASSERT_EQ(Run(Show("Feature/picture-2.mxf"), "7", "a.png"), 0) << m_Errors;
  ExpectShows("a.png", FeatureReel2, 7);

  // 48 edit units of the nested show, 24 of the first reel.
  ASSERT_EQ(Run(Show(), "79", "b.png"), 0) << m_Errors;
  ExpectShows("b.png", FeatureReel2, 7);
  EXPECT_EQ(m_Output, Beside("b.png") + "\npicture of edit unit 79 (00:00:03:07), edit unit 7 of " +
                          Show("Feature/picture-2.mxf") + '\n');

  ASSERT_EQ(Run(Show(), "00:00:03:07", "c.png"), 0) << m_Errors;
  ExpectShows("c.png", FeatureReel2, 7);
}

TEST_F(FrameStill, EntryPointIsMinded) {
  std::string text;
  {
    std::ostringstream all;
    all << std::ifstream(Show("Trailer/CPL.xml")).rdbuf();
    text = all.str();
  }
  const auto replace = [&](const std::string& from, const std::string& to) {
    size_t count = 0;
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; ++count) text.replace(at, from.size(), to);
    EXPECT_EQ(count, 2U) << from;
  };
  replace("<EntryPoint>0<", "<EntryPoint>5<");
  replace("<Duration>24<", "<Duration>19<");
  std::ofstream(Show("Trailer/CPL.xml")) << text;
  ASSERT_EQ(Run(Show("Trailer/CPL.xml"), "3", "a.png"), 0) << m_Errors;
  ExpectShows("a.png", TrailerReel, 8);
}

TEST_F(FrameStill, StereoscopicPictureIsBothEyesOrOne) {
  ASSERT_EQ(Run(Show(), "125", "a.png"), 0) << m_Errors;
  ExpectShows("a-left.png", StereoReel, 5, 'L');
  ExpectShows("a-right.png", StereoReel, 5, 'R');
  EXPECT_FALSE(std::filesystem::exists(Beside("a.png")));

  ASSERT_EQ(Run(Show("Stereoscopic/picture-1.mxf"), "5", "right.png", {"--channel", "right"}), 0) << m_Errors;
  ExpectShows("right.png", StereoReel, 5, 'R');
  ASSERT_EQ(Run(Show(), "125", "left.png", {"--channel", "left"}), 0) << m_Errors;
  ExpectShows("left.png", StereoReel, 5, 'L');
}

TEST_F(Frame, CodestreamIsThatOfTheFile) {
  ASSERT_EQ(Run(Show(), "79", "a.j2c"), 0) << m_Errors;
  QUIRE::JP2K::MXFReader reader;
  QUIRE::JP2K::FrameBuffer frame;
  ASSERT_TRUE(reader.OpenRead(Show("Feature/picture-2.mxf")).Success());
  ASSERT_TRUE(frame.Capacity(1'000'000).Success());
  ASSERT_TRUE(reader.ReadFrame(7, frame).Success());
  EXPECT_EQ(ContentOf(Beside("a.j2c")), Bytes(frame.RoData(), frame.RoData() + frame.Size()));
}

TEST_F(Frame, SoundHasTheToneOfEachChannelAndTheTick) {
  ASSERT_EQ(Run(Show(), "48", "a.wav", {"--count", "72"}), 0) << m_Errors;  // three reels of a second
  testsupport::RunJudge({"ffmpeg", "-v", "error", "-i", Beside("a.wav"), "-f", "s24le", Beside("a.raw")});
  const Bytes sound = ContentOf(Beside("a.raw"));
  constexpr size_t second = size_t{48000} * 6 * 3;
  ASSERT_EQ(sound.size(), 3 * second);
  const auto part = [&](double from, double to) {
    const auto at = [&](double seconds) { return sound.begin() + static_cast<std::ptrdiff_t>(seconds * 48000) * 18; };
    return Bytes(at(from), at(to));
  };
  for (Ferro::ui32_t channel = 0; channel < 6; ++channel)
    for (Ferro::ui32_t tone = 1; tone <= 6; ++tone)
      EXPECT_NEAR(std::sqrt(PowerAt(part(1.5, 1.75), 6, channel, 200.0 * tone)), tone == channel + 1 ? 0.1 : 0, 0.0001)
          << channel << ' ' << tone;
  for (const double start : {0.0, 1.0, 2.0}) {
    EXPECT_NEAR(std::sqrt(PowerAt(part(start, start + 0.01), 6, 0, 2000)), 0.5, 0.01) << start;
    EXPECT_LT(std::sqrt(PowerAt(part(start + 0.01, start + 0.02), 6, 0, 2000)), 0.01) << start;
    EXPECT_LT(std::sqrt(PowerAt(part(start + 0.99, start + 1), 6, 0, 2000)), 0.01) << start;
  }
}

TEST_F(Frame, SoundIsByteForByteThatOfTheFile) {
  ASSERT_EQ(Run(Show("Feature/sound-1.mxf"), "3", "a.wav"), 0) << m_Errors;
  Bytes wave = ContentOf(Beside("a.wav"));
  ASSERT_EQ(wave.size(), 104U + 2000 * 18);
  EXPECT_EQ(Bytes(wave.begin() + 104, wave.end()), SampleSound(6).Samples(6000, 2000));
  const auto facts = testsupport::ProbeByFFmpeg(Beside("a.wav"));
  EXPECT_EQ(facts.at("codec_name"), "pcm_s24le");
  EXPECT_EQ(facts.at("channel_layout"), "5.1");
}

TEST_F(Frame, BeyondItsDurationSoundIsSilentAndTextIsNotThere) {
  const auto shorten = [&](const std::string& asset) {
    std::string text;
    ASSERT_TRUE(Ferro::ReadFileIntoString(Show("Feature/CPL.xml"), text).Success());
    const std::string duration = "<Duration>24<";
    const size_t at = text.find(duration, text.find(asset));
    ASSERT_NE(at, std::string::npos);
    ASSERT_TRUE(Ferro::WriteStringIntoFile(Show("Feature/CPL.xml"), text.replace(at, duration.size(), "<Duration>9<"))
                    .Success());
  };
  shorten("<MainSound>");
  shorten("<MainSubtitle>");
  ASSERT_EQ(Run(Show("Feature/CPL.xml"), "8", "a.wav", {"--count", "3"}), 0) << m_Errors;
  const Bytes wave = ContentOf(Beside("a.wav"));
  ASSERT_EQ(wave.size(), 104U + 3 * 2000 * 18);
  const auto sound_end = wave.begin() + 104 + 2000 * 18;
  EXPECT_EQ(Bytes(wave.begin() + 104, sound_end), SampleSound(6).Samples(16000, 2000));
  EXPECT_EQ(Bytes(sound_end, wave.end()), Bytes(2 * 2000 * 18));
  ASSERT_EQ(Run(Show("Feature/CPL.xml"), "9", "b.wav"), 0) << m_Errors;
  EXPECT_THAT(m_Output, HasSubstr("which is silence that the show fills in"));

  EXPECT_EQ(Run(Show("Feature/CPL.xml"), "8", "a.xml"), 0) << m_Errors;
  EXPECT_EQ(Run(Show("Feature/CPL.xml"), "9", "b.xml"), 1);
  EXPECT_EQ(m_Errors, "strata: the show has no subtitle at edit unit 9\n");
  EXPECT_EQ(Run(Show("Feature/CPL.xml"), "9", "c.xml", {"--channel", "caption"}), 0) << m_Errors;
}

TEST_F(Frame, TextIsTheDocumentInForce) {
  ASSERT_EQ(Run(Show(), "79", "a.xml"), 0) << m_Errors;
  testsupport::RunJudge({"xmllint", "--nonet", "--noout", Beside("a.xml")});
  const Bytes subtitle = ContentOf(Beside("a.xml"));
  EXPECT_THAT(std::string(subtitle.begin(), subtitle.end()), HasSubstr("Reel 2 subtitle of second 0"));
  ASSERT_EQ(Run(Show("Feature/subtitle-2.mxf"), "0", "b.xml"), 0) << m_Errors;
  EXPECT_EQ(ContentOf(Beside("b.xml")), subtitle);
  // The font and the image that the document refers to lie beside it.
  const auto names = FilesOf(m_Folder.Folder().string());
  for (const char* extension : {".png", ".ttf"}) {
    const auto is_resource = [&](const std::string& name) {
      return name.size() == 40 && name.ends_with(extension) &&
             std::string(subtitle.begin(), subtitle.end()).find(name.substr(0, 36)) != std::string::npos;
    };
    EXPECT_EQ(std::count_if(names.begin(), names.end(), is_resource), 1) << extension;
  }
  ASSERT_EQ(Run(Show(), "79", "c.xml", {"--channel", "caption"}), 0) << m_Errors;
  const Bytes caption = ContentOf(Beside("c.xml"));
  EXPECT_THAT(std::string(caption.begin(), caption.end()), HasSubstr("Reel 2 caption of second 0"));
}

TEST_F(Frame, SoundAsStoredIsSaidToBeWhatItIs) {
  ASSERT_EQ(Run(Show("Feature/sound-1.mxf"), "3", "a.bin"), 0) << m_Errors;
  EXPECT_EQ(ContentOf(Beside("a.bin")), SampleSound(6).Samples(6000, 2000));
  EXPECT_THAT(m_Output, HasSubstr("\n6 channels in turn, samples of 24 bits with the lowest byte first, 48 kHz\n"));
}

// The header says frames, and one element holds two codestreams.
TEST_F(Frame, ClipsAreNoFrames) {
  testsupport::MxfBuilder builder(testsupport::MxfBuilder::JP2K);
  const Bytes codestream = testsupport::MakeCodestream(64, 64, 0);
  Bytes clip = codestream;
  clip.insert(clip.end(), codestream.begin(), codestream.end());
  builder.Frames = {clip};
  builder.Duration = 2;
  builder.DurationGiven = true;
  const Bytes file = builder.Build();
  std::ofstream(Beside("clip.mxf"), std::ios::binary)
      .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  EXPECT_EQ(Run(Beside("clip.mxf"), "0", "a.j2c"), 1);
  EXPECT_THAT(m_Errors,
              testing::MatchesRegex("strata: .*/clip.mxf: this is OP-Atom, clip-wrapped: not a D-Cinema track "
                                    "file. No frames are taken out of it.\n"));
  EXPECT_FALSE(std::filesystem::exists(Beside("a.j2c")));
}

TEST_F(Frame, DataAreThoseOfTheFile) {
  const Bytes expected = SampleImmersiveFrame(6, 24);
  ASSERT_EQ(Run(Show(), "150", "a.bin"), 0) << m_Errors;
  EXPECT_EQ(ContentOf(Beside("a.bin")), expected);
  ASSERT_EQ(Run(Show("Immersive/immersive-1.mxf"), "6", "b.bin"), 0) << m_Errors;
  EXPECT_EQ(ContentOf(Beside("b.bin")), expected);
}

TEST_F(Frame, CiphertextIsWrittenAsItIsAndNotDecoded) {
  for (const char* out : {"a.png", "a.wav"}) {
    EXPECT_EQ(Run(Show(), "30", out), 2) << out;
    EXPECT_THAT(
        m_Errors,
        HasSubstr(": this track file is encrypted: without its key only ciphertext can be written, to a file *.bin\n"));
    EXPECT_THAT(m_Errors, testing::StartsWith("strata: " + Show("Encrypted/")));
    EXPECT_FALSE(std::filesystem::exists(Beside(out)));
  }
  EXPECT_EQ(Run(Show(), "30", "a.bin", {"--channel", "picture"}), 0);
  EXPECT_EQ(m_Errors, "strata: warning: the track file is encrypted; ciphertext was written\n");
  EXPECT_GT(ContentOf(Beside("a.bin")).size(), 48U);
}

TEST_F(Frame, WhatIsNotThereIsAUsageError) {
  struct Case {
    std::string At;
    std::string Out;
    std::vector<std::string> More;
    std::string Message;
  };
  const Case cases[] = {
      {"168",
       "a.png",
       {},
       "edit unit 168 cannot be taken: there are only 168, and the last is number 167, at 00:00:06:23"},
      {"150",
       "a.wav",
       {"--count", "19"},
       "19 edit units from 150 on cannot be taken: there are only 168, and the last is number 167"},
      {"-1",
       "a.png",
       {},
       "--at -1: this is neither an edit unit nor a time code HH:MM:SS:FF at 24 edit units per second"},
      {"1:2:3", "a.png", {}, "--at 1:2:3: this is neither"},
      {"00:00:00:24", "a.png", {}, "--at 00:00:00:24: this is neither"},
      {"0", "a.gif", {}, "what is written follows the extension: .png, .j2c, .m2v, .wav, .xml or .bin"},
      {"0", "a", {}, "what is written follows the extension"},
      {"0", "a.xml", {}, "the show has no subtitle at edit unit 0"},
      {"60", "a.xml", {"--channel", "caption2"}, "the show has no caption 2 at edit unit 60"},
      {"0", "a.bin", {}, "the show has no data at edit unit 0"},
      {"0", "a.png", {"--channel", "left"}, "the picture is not stereoscopic: it has no left and right eye"},
      {"0", "a.png", {"--channel", "smell"}, "--channel smell: there is no such channel"},
      {"0", "a.png", {"--channel", "sound"}, "this is sound: write it to a file *.wav"},
      {"0", "a.m2v", {}, "this is a JPEG 2000 picture: write it to a file *.j2c"},
      {"0", "a.png", {"--count", "2"}, "--count: several edit units go only into a file *.wav"}};
  for (const Case& test : cases) {
    EXPECT_EQ(Run(Show(), test.At, test.Out, test.More), 1) << test.Message;
    EXPECT_THAT(m_Errors, HasSubstr(test.Message));
    EXPECT_FALSE(std::filesystem::exists(Beside(test.Out)));
  }
}

TEST_F(Frame, ChannelThatTheFileDoesNotHoldIsAUsageError) {
  EXPECT_EQ(Run(Show("Feature/sound-1.mxf"), "0", "a.png"), 1);
  EXPECT_EQ(m_Errors,
            "strata: " + Show("Feature/sound-1.mxf") + ": there is no picture in this file; it holds sound.\n");
}

TEST_F(Frame, FileOfAnotherKindIsAUsageError) {
  EXPECT_EQ(Run(Show("Trailer/VOLINDEX.xml"), "0", "a.png"), 1);
  std::ofstream(Beside("nothing.mxf")) << "nothing";
  EXPECT_EQ(Run(Beside("nothing.mxf"), "0", "a.png"), 1);
  EXPECT_THAT(m_Errors, HasSubstr(": this is no track file of digital cinema, no composition and no show playlist."));
}

TEST_F(Frame, BrokenShowAndMissingAssetsHaveTheirExitCodes) {
  std::filesystem::remove(Show("Feature/sound-2.mxf"));
  EXPECT_EQ(Run(Show(), "0", "a.png"), 3);
  EXPECT_THAT(m_Errors, HasSubstr("strata: nothing can be taken out of it\n"));
  std::filesystem::resize_file(Show("Feature/picture-2.mxf"), 60000);
  EXPECT_EQ(Run(Show(), "0", "a.png"), 2);
}

TEST_F(Frame, FolderThatIsNotThereIsSaid) {
  for (const char* out : {"no/a.png", "no/a.j2c", "no/a.wav"}) {
    EXPECT_EQ(Run(Show(), "0", out), 2);
    EXPECT_EQ(m_Errors, "strata: " + Beside(out) + ": this file cannot be written: its folder is not there\n");
  }
}

TEST_F(Frame, ReportsAsJson) {
  ASSERT_EQ(Run(Show(), "125", "a.png", {"--json"}), 0) << m_Errors;
  ExpectMatchesSchema(m_Output, "strata-frame-1");
  const Json report = Json::parse(m_Output);
  EXPECT_EQ(report["channel"], "picture");
  EXPECT_EQ(report["position"], 125);
  EXPECT_EQ(report["time_code"], "00:00:05:05");
  EXPECT_EQ(report["file_position"], 5);
  EXPECT_EQ(report["track_file"], Show("Stereoscopic/picture-1.mxf"));
  EXPECT_EQ(report["encrypted"], false);
  EXPECT_EQ(report["files"], Json::array({Beside("a-left.png"), Beside("a-right.png")}));
}

TEST(FrameOptions, CountsThatAreNoneAreRefusedInFewWords) {
  for (const std::string count : {"0", "-1", "1.5", "x", "4294967296"}) {
    StrataProgram program({"frame", "show", "--at", "0", "--out", "x.wav", "--count", count});
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_THAT(program.Errors(),
                testing::StartsWith("--count: " + count + " is no whole number from 1 to 4294967295\n"));
  }
  StrataProgram wrap({"wrap", "text.xml", "--out", "x.mxf", "--duration=0"});
  EXPECT_EQ(wrap.Wait(), 1);
  EXPECT_THAT(wrap.Errors(), testing::StartsWith("--duration: 0 is no whole number from 1 to 4294967295\n"));
}

TEST(FrameOptions, ValueThatIsMissingIsNotTheNextOption) {
  StrataProgram program({"frame", "show", "--at=", "--out", "x.wav"});
  EXPECT_EQ(program.Wait(), 1);
  EXPECT_EQ(program.Errors(), "strata: --at=: there is no value behind the sign\n");
}

}  // namespace
