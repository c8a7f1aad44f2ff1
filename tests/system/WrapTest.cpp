// SPDX-License-Identifier: BSD-3-Clause
// strata wrap: what goes into a track file comes out again, byte for byte.
#include "JsonSchema.h"
#include "StrataProgram.h"
#include "frame/FrameSource.h"
#include "frame/WaveFile.h"
#include "sample/SamplePicture.h"
#include "sample/SampleSound.h"
#include "wrap/WrapSources.h"

#include "EssenceMaker.h"
#include "Judges.h"

#include <Ferro/UUID.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/PCMReader.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

using namespace Tool;
using testing::HasSubstr;
using testsupport::Bytes;
using testsupport::RunJudge;
using Json = nlohmann::json;

namespace {

namespace fs = std::filesystem;

constexpr char TrackID[] = "aaaaaaaa-0000-4000-8000-000000000001";
constexpr char KeyID[] = "bbbbbbbb-0000-4000-8000-000000000002";
constexpr char KeyDigits[] = "000102030405060708090a0b0c0d0e0f";
constexpr char FontID[] = "cccccccc-0000-4000-8000-000000000003";
constexpr char ImageID[] = "dddddddd-0000-4000-8000-000000000004";

class Wrap : public testing::Test {
 protected:
  int Run(const std::vector<std::string>& arguments) {
    StrataProgram program(arguments);
    const int code = program.Wait();
    m_Output = program.Output();
    m_Errors = program.Errors();
    return code;
  }
  int RunWrap(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "wrap");
    arguments.insert(arguments.end(), {"--out", Path("out.mxf")});
    return Run(arguments);
  }
  /// Reads an edit unit of the file that was wrapped with the key of KeyDigits.
  void ExpectOpensWithTheKey() const {
    QUIRE::CipherBlock key{};
    for (size_t i = 0; i < key.size(); ++i) key[i] = static_cast<Ferro::ui8_t>(i);
    QUIRE::AESDecContext cipher;
    QUIRE::HMACContext integrity;
    ASSERT_TRUE(cipher.InitKey(key).Success());
    ASSERT_TRUE(integrity.InitKey(key, QUIRE::LS_MXF_SMPTE).Success());
    QUIRE::JP2K::MXFReader reader;
    QUIRE::JP2K::FrameBuffer frame;
    ASSERT_TRUE(frame.Capacity(1'000'000).Success());
    ASSERT_TRUE(reader.OpenRead(Path("out.mxf")).Success());
    ASSERT_EQ(reader.ReadFrame(7, frame, &cipher, &integrity), Ferro::RESULT_OK);
    EXPECT_EQ(Bytes(frame.RoData(), frame.RoData() + frame.Size()), testsupport::MakeCodestream(64, 64, 7));
  }
  /// Edit unit of the file that was wrapped, as `strata frame` takes it out.
  Bytes Frame(Ferro::ui32_t number, const std::string& out, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"frame", Path("out.mxf"), "--at", std::to_string(number), "--out", Path(out)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(Run(arguments), 0) << m_Errors;
    return Read(out);
  }

  [[nodiscard]] std::string Path(const std::string& name) const { return m_Folder.Path(name); }
  [[nodiscard]] Bytes Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(const std::string& name, const Bytes& bytes) const {
    fs::create_directories(fs::path(Path(name)).parent_path());
    std::ofstream(Path(name), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  void WriteWave(const std::string& name, const SoundFormat& format, const Bytes& samples) const {
    WaveFile wave(Path(name), format);
    wave.Write(samples);
    wave.Finish();
  }
  /// Codestreams of numbers 0 to 11, named as people do: 1 to 12 without leading zeros.
  void WritePictures(const std::string& folder, Ferro::ui32_t first = 0) const {
    for (Ferro::ui32_t i = 0; i < 12; ++i)
      Write(folder + "/frame " + std::to_string(i + 1) + ".j2c", testsupport::MakeCodestream(64, 64, first + i));
  }

  testsupport::TemporaryFolder m_Folder;
  std::string m_Output;
  std::string m_Errors;
};

TEST_F(Wrap, CodestreamsComeBackInTheOrderOfTheirNumbers) {
  WritePictures("pictures");
  ASSERT_EQ(RunWrap({Path("pictures"), "--rate", "25", "--id", TrackID}), 0) << m_Errors;
  for (const Ferro::ui32_t number : {0U, 1U, 8U, 9U, 11U})
    EXPECT_EQ(Frame(number, "a.j2c"), testsupport::MakeCodestream(64, 64, number)) << number;
  auto facts = testsupport::ProbeByFFmpeg(Path("out.mxf"));
  EXPECT_EQ(facts["codec_name"], "jpeg2000");
  EXPECT_EQ(facts["r_frame_rate"], "25/1");
  EXPECT_EQ(testsupport::PacketsByFFmpeg(Path("out.mxf")).size(), 12U);
}

TEST_F(Wrap, PicturesThatAreNotAsInCinemasAreWarnedOf) {
  SamplePicture picture(96, 64, SamplePicture::White);
  picture.Write("1", 8, 40, {0, 0, 0});
  for (const char* name : {"sample/1.j2c", "sample/2.j2c"}) Write(name, picture.Encode(24));
  ASSERT_EQ(RunWrap({Path("sample")}), 0);
  EXPECT_EQ(m_Errors, "");
  ASSERT_EQ(RunWrap({Path("sample"), "--rate", "100000", "--json"}), 0);
  EXPECT_THAT(m_Errors,
              testing::MatchesRegex("strata: warning: .*/sample/1.j2c: not as D-Cinema has it: .* bytes, more "
                                    "than 312 \\(so it is in 2 pictures\\)\n(.*\n)*"));
  ExpectMatchesSchema(m_Output, "strata-wrap-1");
  const Json warnings = Json::parse(m_Output)["warnings"];
  ASSERT_GE(warnings.size(), 1U);
  EXPECT_EQ(m_Errors.substr(0, m_Errors.find('\n')), "strata: warning: " + warnings[0].get<std::string>());

  Write("odd.j2c", testsupport::MakeCodestream(4096, 3000, 0));
  ASSERT_EQ(RunWrap({Path("odd.j2c")}), 0);
  EXPECT_THAT(m_Errors, HasSubstr("odd.j2c: not as D-Cinema has it: height 3000"));
}

TEST_F(Wrap, BothEyesComeBack) {
  WritePictures("left");
  WritePictures("right", 100);
  ASSERT_EQ(RunWrap({"--left", Path("left"), "--right", Path("right")}), 0) << m_Errors;
  static_cast<void>(Run({"frame", Path("out.mxf"), "--at", "9", "--out", Path("a.j2c")}));
  EXPECT_EQ(Read("a-left.j2c"), testsupport::MakeCodestream(64, 64, 9));
  EXPECT_EQ(Read("a-right.j2c"), testsupport::MakeCodestream(64, 64, 109));
}

TEST_F(Wrap, SoundComesBack) {
  for (const Ferro::ui32_t rate : {48000U, 96000U}) {
    const Bytes samples = SampleSound(6).Samples(0, rate);
    WriteWave("a.wav", {rate, 24, 6, ""}, samples);
    ASSERT_EQ(RunWrap({Path("a.wav"), "--rate", "24"}), 0) << m_Errors;
    const Bytes wave = Frame(0, "b.wav", {"--count", "24"});
    EXPECT_EQ(Bytes(wave.begin() + 104, wave.end()), samples);
    auto facts = testsupport::ProbeByFFmpeg(Path("out.mxf"));
    EXPECT_EQ(facts["codec_name"], "pcm_s24le");
    EXPECT_EQ(facts["sample_rate"], std::to_string(rate));
    EXPECT_EQ(facts["channels"], "6");
  }
}

TEST_F(Wrap, SilenceThatFillsUpTheLastEditUnitIsTold) {
  WriteWave("a.wav", {48000, 24, 2, ""}, SampleSound(2).Samples(0, 4100));
  ASSERT_EQ(RunWrap({Path("a.wav"), "--rate", "24"}), 0) << m_Errors;
  EXPECT_THAT(m_Output, HasSubstr("  padding   1900 samples of silence fill up the last edit unit\n"));
  ASSERT_EQ(RunWrap({Path("a.wav"), "--rate", "24", "--json"}), 0) << m_Errors;
  ExpectMatchesSchema(m_Output, "strata-wrap-1");
  EXPECT_EQ(Json::parse(m_Output)["padding_samples"], 1900);
  WriteWave("b.wav", {48000, 24, 2, ""}, SampleSound(2).Samples(0, 4000));
  ASSERT_EQ(RunWrap({Path("b.wav"), "--rate", "24", "--json"}), 0) << m_Errors;
  EXPECT_FALSE(Json::parse(m_Output).contains("padding_samples"));
}

TEST_F(Wrap, InteropSoundDoesNotSayWhichChannelIsWhich) {
  WriteWave("a.wav", {48000, 24, 6, ""}, SampleSound(6).Samples(0, 48000));
  ASSERT_EQ(RunWrap({Path("a.wav"), "--interop"}), 0) << m_Errors;
  QUIRE::PCM::MXFReader reader;
  QUIRE::PCM::AudioDescriptor descriptor;
  ASSERT_TRUE(reader.OpenRead(Path("out.mxf")).Success());
  ASSERT_TRUE(reader.FillAudioDescriptor(descriptor).Success());
  EXPECT_EQ(descriptor.ChannelFormat, QUIRE::PCM::CF_NONE);
  const auto* sound = dynamic_cast<const QUIRE::MXF::WaveAudioDescriptor*>(reader.OP1aHeader().EssenceDescriptor());
  ASSERT_NE(sound, nullptr);
  EXPECT_FALSE(sound->ChannelAssignment);
  fs::remove(Path("out.mxf"));
  EXPECT_EQ(RunWrap({Path("a.wav"), "--interop", "--channels", "51(L,R,C,LFE,Ls,Rs)"}), 1);
  EXPECT_EQ(m_Errors, "strata: --channels: Interop track files do not say which channel is which\n");
}

TEST_F(Wrap, FilesOfOneChannelBecomeOne) {
  std::vector<std::string> arguments;
  const Bytes all = SampleSound(3).Samples(0, 48000);
  for (size_t channel = 0; channel < 3; ++channel) {
    Bytes mono;
    for (size_t at = channel * 3; at < all.size(); at += 9)
      mono.insert(mono.end(), all.begin() + static_cast<std::ptrdiff_t>(at),
                  all.begin() + static_cast<std::ptrdiff_t>(at) + 3);
    WriteWave(std::to_string(channel) + ".wav", {48000, 24, 1, ""}, mono);
    arguments.push_back(Path(std::to_string(channel) + ".wav"));
  }
  arguments.insert(arguments.end(), {"--channels", "M(C),HI,VIN", "--language", "en"});
  ASSERT_EQ(RunWrap(arguments), 0) << m_Errors;
  const Bytes wave = Frame(0, "b.wav", {"--count", "24"});
  EXPECT_EQ(Bytes(wave.begin() + 104, wave.end()), all);
  EXPECT_EQ(wave[12 + 36 + 8 + 20], 4);  // the loudspeaker in the centre
}

TEST_F(Wrap, EditUnitsOfUnequalLengthComeBack) {
  const Bytes samples = SampleSound(2).Samples(0, 8008);  // five edit units of 1601 or 1602 samples
  WriteWave("a.wav", {48000, 24, 2, ""}, samples);
  ASSERT_EQ(RunWrap({Path("a.wav"), "--rate", "30000/1001"}), 0) << m_Errors;
  const Bytes wave = Frame(0, "b.wav", {"--count", "5"});
  EXPECT_EQ(Bytes(wave.begin() + 104, wave.end()), samples);
}

TEST_F(Wrap, TextComesBackWithItsFontsAndImages) {
  const std::string text = testsupport::MakeTextDocument(TrackID, {FontID}, {ImageID}, QUIRE::EditRate_24);
  Write("text/a.xml", Bytes(text.begin(), text.end()));
  const Bytes font = testsupport::MakeFont(300);
  const Bytes image = testsupport::MakePNG(200);
  Write(std::string("text/") + FontID + ".otf", font);
  Write(std::string("text/") + ImageID + ".png", image);
  ASSERT_EQ(RunWrap({Path("text/a.xml"), "--duration", "48"}), 0) << m_Errors;
  fs::create_directory(Path("back"));
  EXPECT_EQ(Frame(47, "back/b.xml"), Bytes(text.begin(), text.end()));
  EXPECT_EQ(Read(std::string("back/") + FontID + ".otf"), font);
  EXPECT_EQ(Read(std::string("back/") + ImageID + ".png"), image);
}

TEST_F(Wrap, TextIsAsLongAsItsLines) {
  const std::string text =
      "<SubtitleReel xmlns=\"http://www.smpte-ra.org/schemas/428-7/2010/DCST\"><Id>urn:uuid:" + std::string(TrackID) +
      "</Id><Language>de</Language><EditRate>25 1</EditRate><TimeCodeRate>25</TimeCodeRate><SubtitleList>"
      "<Subtitle SpotNumber=\"1\" TimeIn=\"00:00:01:00\" TimeOut=\"00:01:02:05\"><Text>b</Text></Subtitle>"
      "<Subtitle SpotNumber=\"2\" TimeIn=\"00:00:00:00\" TimeOut=\"00:00:02:00\"><Text>a</Text></Subtitle>"
      "</SubtitleList></SubtitleReel>";
  Write("a.xml", Bytes(text.begin(), text.end()));
  ASSERT_EQ(RunWrap({Path("a.xml"), "--json"}), 0) << m_Errors;
  const Json report = Json::parse(m_Output);
  EXPECT_EQ(report["duration"], 62 * 25 + 5);
  EXPECT_EQ(report["edit_rate"], "25 1");
}

TEST_F(Wrap, TheStartTimeIsNoPartOfTheTextsLength) {
  const std::string text =
      "<SubtitleReel xmlns=\"http://www.smpte-ra.org/schemas/428-7/2010/DCST\"><Id>urn:uuid:" + std::string(TrackID) +
      "</Id><EditRate>24 1</EditRate><TimeCodeRate>24</TimeCodeRate><StartTime>01:00:00:00</StartTime><SubtitleList>"
      "<Subtitle TimeIn=\"01:00:01:00\" TimeOut=\"01:00:02:00\"><Text>a</Text></Subtitle>"
      "</SubtitleList></SubtitleReel>";
  Write("a.xml", Bytes(text.begin(), text.end()));
  ASSERT_EQ(RunWrap({Path("a.xml"), "--json"}), 0) << m_Errors;
  EXPECT_EQ(Json::parse(m_Output)["duration"], 48);
}

TEST_F(Wrap, MissingFontIsNamed) {
  const std::string text = testsupport::MakeTextDocument(TrackID, {FontID}, {}, QUIRE::EditRate_24);
  Write("a.xml", Bytes(text.begin(), text.end()));
  EXPECT_EQ(RunWrap({Path("a.xml"), "--duration", "48"}), 3);
  EXPECT_EQ(m_Errors, "strata: the document refers to " + std::string(FontID) +
                          ", and no font or image of that name lies beside it\n");
}

TEST_F(Wrap, VideoComesBackPictureByPicture) {
  Bytes stream;
  std::vector<Bytes> units;
  for (QUIRE::ui16_t i = 0; stream.size() < 3'000'000; ++i) {  // more than is read at once
    const auto type = i % 12 == 0 ? QUIRE::MPEG2::PT_I : QUIRE::MPEG2::PT_P;
    units.push_back(testsupport::MakeAccessUnit(type, i % 12, 1920, 1080, QUIRE::EditRate_25, i));
    stream.insert(stream.end(), units.back().begin(), units.back().end());
  }
  Write("a.m2v", stream);
  EXPECT_EQ(RunWrap({Path("a.m2v"), "--rate", "24"}), 1);
  EXPECT_THAT(m_Errors, HasSubstr("this stream has 25 1 pictures per second, not what --rate says"));
  ASSERT_EQ(RunWrap({Path("a.m2v"), "--interop", "--json"}), 0) << m_Errors;
  EXPECT_EQ(Json::parse(m_Output)["duration"], units.size());
  EXPECT_EQ(Json::parse(m_Output)["labels"], "Interop");
  for (const size_t number : {size_t{0}, size_t{13}, units.size() - 1})
    EXPECT_EQ(Frame(static_cast<Ferro::ui32_t>(number), "b.m2v"), units[number]);
  EXPECT_EQ(Run({"frame", Path("out.mxf"), "--at", "0", "--out", Path("b.png")}), 1);
  EXPECT_THAT(m_Errors, HasSubstr("this is an MPEG-2 picture: write it to a file *.m2v"));
}

TEST_F(Wrap, DataComeBack) {
  for (Ferro::ui32_t i = 0; i < 3; ++i) Write("data/" + std::to_string(i) + ".bin", testsupport::MakeImmersiveFrame(i));
  ASSERT_EQ(RunWrap({Path("data"), "--kind", "immersive"}), 0) << m_Errors;
  EXPECT_EQ(Frame(2, "a.bin"), testsupport::MakeImmersiveFrame(2));
  EXPECT_EQ(RunWrap({Path("data")}), 1);
  EXPECT_THAT(m_Errors, HasSubstr("data need --coding, the label of what they are: 32 hexadecimal digits"));
  ASSERT_EQ(RunWrap({Path("data"), "--coding", "060e2b34.0401.0105.0e090604.00000000"}), 1);
  ASSERT_EQ(RunWrap({Path("data"), "--coding", "060e2b34040101050e09060400000000"}), 0) << m_Errors;
  EXPECT_EQ(Frame(1, "a.bin"), testsupport::MakeImmersiveFrame(1));
}

TEST_F(Wrap, ImmersiveAudioThatIsNoneIsWrappedOnlyByForce) {
  Bytes data = testsupport::MakeImmersiveFrame(0);
  for (const size_t spoiled : {size_t{0}, size_t{1}, size_t{21}}) {
    Bytes odd = data;
    odd[spoiled] = 0x7f;
    Write("odd.bin", odd);
    EXPECT_EQ(RunWrap({Path("odd.bin"), "--kind", "immersive"}), 2) << spoiled;
    EXPECT_EQ(m_Errors, "strata: " + Path("odd.bin") +
                            ": this is no edit unit of immersive audio; --force wraps it all the same\n");
    EXPECT_FALSE(fs::exists(Path("out.mxf")));
  }
  data.pop_back();
  Write("cut.bin", data);
  EXPECT_EQ(RunWrap({Path("cut.bin"), "--kind", "immersive"}), 2);
  ASSERT_EQ(RunWrap({Path("cut.bin"), "--kind", "immersive", "--force"}), 0) << m_Errors;
  EXPECT_EQ(Frame(0, "a.bin"), data);
}

TEST_F(Wrap, EncryptedFileOpensWithItsKey) {
  WritePictures("pictures");
  ASSERT_EQ(RunWrap({Path("pictures"), "--key", KeyDigits, "--key-id", KeyID, "--json"}), 0) << m_Errors;
  EXPECT_EQ(Json::parse(m_Output)["key_id"], KeyID);
  ExpectOpensWithTheKey();
}

TEST_F(Wrap, KeyMayLieInAFile) {
  WritePictures("pictures");
  std::ofstream(Path("key")) << ' ' << KeyDigits << "\r\n";
  ASSERT_EQ(RunWrap({Path("pictures"), "--key-file", Path("key"), "--key-id", KeyID}), 0) << m_Errors;
  ExpectOpensWithTheKey();
}

TEST_F(Wrap, ReportsWhatAPackingListHas) {
  WritePictures("pictures");
  ASSERT_EQ(RunWrap({Path("pictures"), "--id", TrackID, "--json"}), 0) << m_Errors;
  ExpectMatchesSchema(m_Output, "strata-wrap-1");
  const Json report = Json::parse(m_Output);
  EXPECT_EQ(report["id"], TrackID);
  EXPECT_EQ(report["duration"], 12);
  EXPECT_EQ(report["size_bytes"], fs::file_size(Path("out.mxf")));
  Ferro::SHA1 digest;
  ASSERT_TRUE(digest.DecodeHex(RunJudge({"sha1sum", Path("out.mxf")}).substr(0, 40)));
  EXPECT_EQ(report["digest"], digest.EncodeBase64());

  ASSERT_EQ(RunWrap({Path("pictures"), "--id", TrackID}), 0) << m_Errors;
  EXPECT_THAT(m_Output, testing::MatchesRegex(".*/out.mxf: picture, SMPTE labels\n"
                                              "  id        aaaaaaaa-0000-4000-8000-000000000001\n"
                                              "  duration  12 edit units at 24 per second, 00:00:00:12\n"
                                              "  size      [0-9]+ bytes\n"
                                              "  digest    .{27}=\n"));
}

TEST_F(Wrap, WhatDoesNotFitIsRefused) {
  WritePictures("pictures");
  WritePictures("mixed");
  Write("mixed/a.wav", {});
  WritePictures("sizes");
  Write("sizes/frame 3.j2c", testsupport::MakeCodestream(128, 64, 2));
  Write("few/1.j2c", testsupport::MakeCodestream(64, 64, 0));
  Write("noise.j2c", Bytes(100, 7));
  Write("noise.wav", Bytes(100, 7));
  fs::create_directory(Path("empty"));
  WriteWave("cd.wav", {48000, 16, 2, ""}, Bytes(4000));
  WriteWave("44.wav", {44100, 24, 2, ""}, Bytes(6 * 44100));
  WriteWave("two.wav", {48000, 24, 2, ""}, Bytes(6 * 48000));
  WriteWave("one.wav", {48000, 24, 1, ""}, Bytes(3 * 48000));
  WriteWave("half.wav", {48000, 24, 1, ""}, Bytes(3 * 24000));
  struct Case {
    std::vector<std::string> Arguments;
    int Code;
    std::string Message;
  };
  const Case cases[] = {
      {{}, 1, "nothing was named that could be wrapped"},
      {{Path("none")}, 1, "none: "},
      {{Path("empty")}, 1, "there is nothing to wrap in this folder"},
      {{Path("mixed")},
       1,
       "there are picture and sound in this folder; say it with --kind: picture, video, sound, text, data or "
       "immersive"},
      {{"--left", Path("pictures")}, 1, "--left and --right go together"},
      {{"--left", Path("pictures"), "--right", Path("few")}, 1, "there are 12 left and 1 right eyes"},
      {{Path("sizes")}, 2, "frame 3.j2c: this picture has 128 x 64 pixels, the first one has 64 x 64 pixels"},
      {{Path("noise.j2c")}, 1, "what this is cannot be seen from it; say it with --kind: "},
      {{Path("noise.j2c"), "--kind", "picture"}, 2, "noise.j2c: this is no JPEG 2000 codestream"},
      {{Path("noise.j2c"), "--kind", "video"}, 2, "this is no MPEG-2 video elementary stream"},
      {{Path("noise.j2c"), "--kind", "text"}, 2, "this is no timed-text document of ST 428-7"},
      {{Path("noise.wav"), "--kind", "sound"}, 2, "this is no WAVE file that can be wrapped"},
      {{Path("cd.wav")}, 2, "cd.wav: its samples have 16 bits; sound of digital cinema has 24"},
      {{Path("44.wav")}, 2, "it has 44100 samples per second; sound of digital cinema has 48000 or 96000"},
      {{Path("one.wav"), Path("two.wav")}, 1, "two.wav: of several files each has one channel"},
      {{Path("one.wav"), Path("half.wav")}, 2, "half.wav: it lasts 12 edit units, the first file 24"},
      {{Path("one.wav"), "--channels", "51(L,R)x"}, 1, "this names no channels, as 51(L,R,C,LFE,Ls,Rs) does"},
      {{Path("one.wav"), "--channels", "51(L,R,C,LFE,Ls,Rs)"},
       1,
       "--channels 51(L,R,C,LFE,Ls,Rs): the sound has only 1"},
      {{Path("pictures"), "--rate", "0"}, 1, "--rate 0: not edit units per second, as 24 or 30000/1001"},
      {{Path("pictures"), "--rate", "23.976"}, 1, "--rate 23.976: not edit units per second"},
      {{Path("pictures"), "--id", "five"}, 1, "--id five: this is no UUID"},
      {{Path("pictures"), "--key", KeyDigits}, 1, "--key or --key-file, and --key-id go together"},
      {{Path("pictures"), "--key-file", Path("none"), "--key-id", KeyID}, 1, "none: it cannot be read: "},
      {{Path("pictures"), "--key-file", Path("noise.j2c"), "--key-id", KeyID},
       1,
       "--key-file: a key has 32 hexadecimal digits"},
      {{Path("pictures"), "--key", KeyDigits, "--key-file", Path("none"), "--key-id", KeyID}, 1, "excludes --key"},
      {{Path("pictures"), "--key", "00", "--key-id", KeyID}, 1, "--key: a key has 32 hexadecimal digits"}};
  for (const Case& test : cases) {
    EXPECT_EQ(RunWrap(test.Arguments), test.Code) << test.Message << '\n' << m_Errors;
    EXPECT_THAT(m_Errors, HasSubstr(test.Message));
    EXPECT_FALSE(fs::exists(Path("out.mxf"))) << test.Message;
  }
}

TEST_F(Wrap, FolderThatIsNotThereIsSaid) {
  WritePictures("pictures");
  EXPECT_EQ(Run({"wrap", Path("pictures"), "--out", Path("no/out.mxf")}), 2);
  EXPECT_EQ(m_Errors, "strata: " + Path("no/out.mxf") + ": this file cannot be written: its folder is not there\n");
}

TEST_F(Wrap, InterruptedItLeavesNothingBehind) {
  WriteWave("a.wav", {48000, 24, 16, ""}, Bytes(48 * 1000));
  constexpr Ferro::ui32_t length = 48U * 48000 * 900;  // of a hole: a quarter of an hour of silence
  fs::resize_file(Path("a.wav"), 104 + Ferro::ui64_t{length});
  {
    std::fstream file(Path("a.wav"), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(100);
    for (int shift = 0; shift < 32; shift += 8) file.put(static_cast<char>(length >> shift & 0xff));
  }
  const auto count = [&] { return std::distance(fs::directory_iterator(m_Folder.Folder()), fs::directory_iterator()); };
  StrataProgram program({"wrap", Path("a.wav"), "--out", Path("out.mxf")});
  for (int i = 0; i < 1000 && count() < 2; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  ASSERT_EQ(count(), 2) << "it did not begin";
  program.Signal(SIGINT);
  EXPECT_EQ(program.Wait(), 4);
  EXPECT_EQ(program.Errors(), "strata: interrupted; nothing was left behind\n");
  EXPECT_EQ(count(), 1);
}

TEST(WrapSources, NumbersInNamesCountByTheirValue) {
  EXPECT_TRUE(NameComesBefore("f9.j2c", "f10.j2c"));
  EXPECT_FALSE(NameComesBefore("f10.j2c", "f9.j2c"));
  EXPECT_TRUE(NameComesBefore("a2b9", "a2b10"));
  EXPECT_TRUE(NameComesBefore("a", "ab"));
  EXPECT_TRUE(NameComesBefore("a1", "b0"));
  EXPECT_TRUE(NameComesBefore("0099999999999999999999998", "99999999999999999999999"));
  EXPECT_NE(NameComesBefore("01", "1"), NameComesBefore("1", "01"));
  EXPECT_FALSE(NameComesBefore("a1", "a1"));
}

}  // namespace
