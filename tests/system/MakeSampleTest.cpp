// SPDX-License-Identifier: BSD-3-Clause
#include "SampleFolder.h"
#include "sample/SampleSeed.h"

#include "Judges.h"

#include <Ferro/SHA1Digest.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <signal.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <set>
#include <utility>

using namespace Tool;
using testing::ElementsAre;
using testing::HasSubstr;
using testsupport::RunJudge;

namespace {

class MakeSample : public SampleFolder {
 protected:
  void SetUp() override { CopySampleShow(Show(), true); }

  static std::string DigestOf(const std::string& filename) {
    Ferro::SHA1 digest;
    EXPECT_TRUE(Ferro::DigestFile(filename, digest).Success()) << filename;
    return digest.EncodeHex();
  }

  [[nodiscard]] std::vector<std::string> NamesIn(const std::string& folder) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

  /// Another sample beside the first.
  void Make(const std::string& name, const std::string& seed, const std::string& flavour = "smpte",
            const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"make-sample", Beside(name), "--length", "1",         "--size",
                                          "96x64",       "--seed",     seed,       "--flavour", flavour};
    arguments.insert(arguments.end(), more.begin(), more.end());
    StrataProgram maker(arguments);
    ASSERT_EQ(maker.Wait(), 0) << maker.Errors();
  }

  /// The set of labels that a track file of the show is made with.
  QUIRE::LabelSet_t LabelsOf(QUIRE::TrackFileReader&& reader, const std::string& name) const {
    QUIRE::WriterInfo info;
    EXPECT_TRUE(reader.OpenRead(Show(name)).Success() && reader.FillWriterInfo(info).Success()) << name;
    return info.LabelSetType;
  }

  /// Two folders hold the same files with the same bytes, but for the key messages, which are encrypted anew each time.
  void ExpectEqual(const std::string& one, const std::string& other) const {
    const std::vector<std::string> files = FilesOf(one);
    ASSERT_EQ(files, FilesOf(other));
    for (const std::string& file : files) {
      if (file.ends_with("/key-message.xml")) continue;
      EXPECT_EQ(DigestOf(one + '/' + file), DigestOf(other + '/' + file)) << file;
    }
  }
};

TEST_F(MakeSample, EqualSeedsMakeEqualFiles) {
  Make("again", "1");
  EXPECT_EQ(FilesOf(Show()).size(), 49U);
  ExpectEqual(Show(), Beside("again"));
}

TEST_F(MakeSample, WithoutSignaturesEverythingIsEqual) {
  Make("one", "1", "smpte", {"--unsigned"});
  Make("another", "1", "smpte", {"--unsigned"});
  const std::vector<std::string> files = FilesOf(Beside("one"));
  EXPECT_EQ(files.size(), 43U);
  ASSERT_EQ(files, FilesOf(Beside("another")));
  for (const std::string& file : files)
    EXPECT_EQ(DigestOf(Beside("one/" + file)), DigestOf(Beside("another/" + file))) << file;
  EXPECT_EQ(DigestOf(Beside("one/Trailer/picture-1.mxf")), DigestOf(Show("Trailer/picture-1.mxf")));
  EXPECT_NE(DigestOf(Beside("one/Trailer/CPL.xml")), DigestOf(Show("Trailer/CPL.xml")));
}

class MakeSampleInterop : public MakeSample {
 protected:
  void SetUp() override { Make("show", "1", "interop"); }
};

TEST_F(MakeSampleInterop, EqualSeedsMakeEqualFiles) {
  Make("again", "1", "interop");
  EXPECT_EQ(FilesOf(Show()).size(), 51U);
  ExpectEqual(Show(), Beside("again"));
}

TEST_F(MakeSampleInterop, IsCheckedAndPlaysAsItsFilesAre) {
  Make("unsigned", "1", "interop", {"--unsigned"});
  StrataProgram check({"check", Beside("unsigned"), "--hash"});
  EXPECT_EQ(check.Wait(), 0);
  EXPECT_EQ(check.Output(),
            "00:00:00:00  SampleTrailer  (96×64, 24 fps, 5.1, en, Interop, OV, 1 reel)\n"
            "00:00:01:00  SampleEncrypted  (96×64, 24 fps, 5.1, en, Interop, OV, encrypted, 1 reel)\n"
            "00:00:02:00  SampleFeature  (96×64, 24 fps, 5.1, en with en subtitles, captions, Interop, OV, 3 reels)\n"
            "00:00:05:00  SampleStereoscopic  (96×64 3D, 24 fps, 5.1, en, Interop, OV, 1 reel)\n"
            "note: SampleEncrypted: The composition is encrypted: it plays only with its keys.\n"
            "    Get a key message for this server, and copy it to where the others lie.\n"
            "This show needs keys for 1 composition: 0:06. All files are as their packing lists say.\n");
  StrataProgram play({"play", Show(), "--verify", "--speed", "max"});
  EXPECT_EQ(play.Wait(), 0);
  EXPECT_THAT(play.Output(), HasSubstr("Verified 432 frames: all were read as they stand in their files. "));
}

TEST_F(MakeSampleInterop, FilesCarryInteropLabels) {
  EXPECT_EQ(LabelsOf(QUIRE::JP2K::MXFReader(), "Trailer/picture-1.mxf"), QUIRE::LS_MXF_INTEROP);
  EXPECT_EQ(LabelsOf(QUIRE::PCM::MXFReader(), "Encrypted/sound-1.mxf"), QUIRE::LS_MXF_INTEROP);
}

TEST_F(MakeSample, FilesCarryTheLabelsOfTheStandard) {
  EXPECT_EQ(LabelsOf(QUIRE::JP2K::MXFReader(), "Trailer/picture-1.mxf"), QUIRE::LS_MXF_SMPTE);
}

TEST_F(MakeSample, AnotherSeedMakesOtherIdentifiers) {
  Make("other", "2");
  for (const std::string& file : FilesOf(Show())) {
    if (file.ends_with("VOLINDEX.xml")) continue;  // holds nothing but a number
    if (file.starts_with("worthless-test-keys/") && !file.ends_with("key-message.xml")) continue;  // of all samples
    EXPECT_NE(DigestOf(Show(file)), DigestOf(Beside("other/" + file))) << file;
  }
}

TEST(SampleSeed, EveryOptionMakesOtherIdentifiers) {
  std::vector<SampleOptions> options(8);
  options[1].Seed = 2;
  options[2].Seconds = 5;
  options[3].Rate = 25;
  std::swap(options[4].Width, options[4].Height);
  options[5].Channels = 8;
  options[6].Flavour = Cairn::DFT_Interop;
  options[7].Still = true;
  std::set<Ferro::UUID> seen;
  for (const SampleOptions& each : options) seen.insert(SampleSeed(each).ID("name"));
  EXPECT_EQ(seen.size(), options.size());
  options[0].Folder = "elsewhere";
  EXPECT_TRUE(seen.contains(SampleSeed(options[0]).ID("name")));
}

TEST_F(MakeSample, LeavesNothingBesideTheShow) {
  Make("another", "2");
  EXPECT_THAT(NamesIn(m_Folder.Folder()), ElementsAre("another", "show"));
}

TEST_F(MakeSample, RefusesAFolderThatHoldsSomething) {
  StrataProgram maker({"make-sample", Show()});
  EXPECT_EQ(maker.Wait(), 1);
  EXPECT_EQ(maker.Errors(),
            "strata: " + Show() + ": there is something already; a sample show is made in a new folder\n");
}

TEST_F(MakeSample, TakesAnEmptyFolder) {
  std::filesystem::create_directory(Beside("empty"));
  Make("empty", "1");
  EXPECT_EQ(FilesOf(Beside("empty")), FilesOf(Show()));
}

TEST(MakeSampleOptions, RefusesSizesOutsideTheProfile) {
  const testsupport::TemporaryFolder folder;
  for (const char* size : {"63x64", "64x63", "2049x1080", "2048x1081", "64", "64x", "x64", "64x64x", "-64x64"}) {
    StrataProgram maker({"make-sample", folder.Path("none"), "--size", size});
    EXPECT_EQ(maker.Wait(), 1) << size;
    EXPECT_FALSE(std::filesystem::exists(folder.Path("none")));
  }
}

TEST(MakeSampleOptions, RefusesOptionsWithWhatWouldDo) {
  const testsupport::TemporaryFolder folder;
  const std::array<std::string, 3> cases[] = {
      {"--size", "4096x2160", "4096x2160: pictures are made from 64x64 to 2048x1080 pixels; 4K is not made"},
      {"--size", "64", "\"64\" is not a size like 2048x1080"},
      {"--rate", "24000/1001", "\"24000/1001\" is not a rate of cinema packages: 24, 25, 30, 48, 50 or 60"},
      {"--rate", "23", "\"23\" is not a rate of cinema packages: 24, 25, 30, 48, 50 or 60"},
      {"--channels", "0", "\"0\" is not an even number from 2 to 16"},
      {"--channels", "7", "\"7\" is not an even number from 2 to 16"},
      {"--channels", "18", "\"18\" is not an even number from 2 to 16"},
      {"--length", "1.5", "\"1.5\" is not a whole number from 1 to 3600"},
      {"--flavour", "imf", "\"imf\" is neither smpte nor interop"},
      {"--seed", "-1", "\"-1\" is not a whole number from 0 to 18446744073709551615"}};
  for (const auto& [option, value, message] : cases) {
    StrataProgram maker({"make-sample", folder.Path("none"), option, value});
    EXPECT_EQ(maker.Wait(), 1) << value;
    EXPECT_EQ(maker.Errors(), option + ": " + message + "\nRun with --help for more information.\n");
    EXPECT_FALSE(std::filesystem::exists(folder.Path("none")));
  }
}

TEST_F(MakeSample, WhereItCannotWriteItSaysWhy) {
  StrataProgram maker({"make-sample", Show("show.xml/below")});
  EXPECT_EQ(maker.Wait(), 2);
  EXPECT_THAT(maker.Errors(), HasSubstr("strata: the sample show cannot be made: "));
}

TEST_F(MakeSample, InterruptedItLeavesNothingBehind) {
  StrataProgram maker({"make-sample", Beside("long"), "--length", "600"});
  ASSERT_TRUE(maker.WaitForOutput("Trailer"));
  maker.Signal(SIGINT);
  EXPECT_EQ(maker.Wait(), 4);
  EXPECT_EQ(maker.Errors(), "strata: interrupted; nothing was left behind\n");
  EXPECT_THAT(NamesIn(m_Folder.Folder()), ElementsAre("show"));
}

TEST_F(MakeSample, InterruptedTwiceItStillLeavesNothingBehind) {
  StrataProgram maker({"make-sample", Beside("long"), "--length", "600"});
  ASSERT_TRUE(maker.WaitForOutput("Trailer"));
  maker.Signal(SIGINT);
  maker.Signal(SIGTERM);
  EXPECT_EQ(maker.Wait(), 4);
  EXPECT_EQ(maker.Errors(), "strata: interrupted; nothing was left behind\n");
  EXPECT_THAT(NamesIn(m_Folder.Folder()), ElementsAre("show"));
}

TEST_F(MakeSample, PicturesAreWhatOthersTakeForCinemaPictures) {
  auto facts = testsupport::ProbeByFFmpeg(Show("Feature/picture-2.mxf"));
  EXPECT_EQ(facts["codec_name"], "jpeg2000");
  EXPECT_EQ(facts["profile"], "JPEG 2000 digital cinema 2K");
  EXPECT_EQ(facts["width"], "96");
  EXPECT_EQ(facts["height"], "64");
  EXPECT_EQ(facts["pix_fmt"], "xyz12le");
  EXPECT_EQ(testsupport::PacketsByFFmpeg(Show("Feature/picture-2.mxf")).size(), 24U);
}

TEST_F(MakeSample, SoundIsWhatOthersTakeForIt) {
  auto facts = testsupport::ProbeByFFmpeg(Show("Trailer/sound-1.mxf"));
  EXPECT_EQ(facts["codec_name"], "pcm_s24le");
  EXPECT_EQ(facts["sample_rate"], "48000");
  EXPECT_EQ(facts["channels"], "6");
  EXPECT_EQ(testsupport::AskMediaInfo(Show("Trailer/sound-1.mxf"), "Audio", "%ChannelLayout%"), "L R C LFE Ls Rs");
}

/// Judges documents by the schemas of the standards. Where STRATA_SCHEMAS does not name them, the test is reported
/// as skipped.
class MakeSampleValidated : public MakeSample {
 protected:
  void SetUp() override {
    const char* schemas = std::getenv("STRATA_SCHEMAS");
    if (schemas == nullptr) GTEST_SKIP() << "STRATA_SCHEMAS is not set";
    setenv("XML_CATALOG_FILES", (std::string(schemas) + "/catalog.xml").c_str(), 1);
    m_Schemas = std::string(schemas) + '/';
    MakeSample::SetUp();
  }

  void Validate(const std::string& schema, const std::string& document) const {
    RunJudge({"xmllint", "--nonet", "--noout", "--schema", m_Schemas + schema, document});
  }

  std::string m_Schemas;
};

TEST_F(MakeSample, ShowsAreValid) {
  RunJudge({"xmllint", "--nonet", "--noout", "--schema", SHOW_PLAYLIST_SCHEMA, Show("show.xml"),
            Show("before-the-feature.xml")});
}

TEST_F(MakeSampleValidated, DocumentsAreValid) {
  const std::pair<const char*, const char*> documents[] = {{"CPL.xml", "all-smpte-cpl.xsd"},
                                                           {"PKL.xml", "smpte-429-8-2007-PKL.xsd"},
                                                           {"ASSETMAP.xml", "smpte-429-9-2007-AM.xsd"},
                                                           {"VOLINDEX.xml", "smpte-429-9-2007-AM.xsd"}};
  for (const auto& [name, schema] : documents)
    for (const char* folder : {"Trailer", "Feature", "Stereoscopic", "Immersive", "Encrypted"})
      Validate(schema, Show(std::string(folder) + '/' + name));
}

TEST_F(MakeSampleValidated, TextsAreValid) {
  for (const char* file : {"Feature/subtitle-1.mxf", "Feature/caption-3.mxf"}) {
    QUIRE::TimedText::MXFReader reader;
    std::string text;
    ASSERT_TRUE(reader.OpenRead(Show(file)).Success());
    ASSERT_TRUE(reader.ReadTimedTextResource(text).Success());
    std::ofstream(Beside("text.xml")) << text;
    Validate("smpte-428-7-2010-DCST.xsd", Beside("text.xml"));
  }
}

TEST_F(MakeSampleValidated, InteropDocumentsAreValid) {
  Make("interop", "1", "interop");
  const std::pair<const char*, const char*> documents[] = {{"CPL.xml", "all-interop-cpl.xsd"},
                                                           {"PKL.xml", "interop-PROTO-ASDCP-PKL-20040311.xsd"},
                                                           {"ASSETMAP", "interop-PROTO-ASDCP-AM-20040311.xsd"},
                                                           {"VOLINDEX", "reconstructed-PROTO-ASDCP-VL-20040311.xsd"}};
  for (const auto& [name, schema] : documents)
    for (const char* folder : {"Trailer", "Feature", "Stereoscopic", "Encrypted"})
      Validate(schema, Beside("interop/") + folder + '/' + name);
  for (const char* text : {"subtitle-1", "subtitle-3", "caption-2"})
    Validate("interop-DCSubtitle-1.1.xsd", Beside("interop/Feature/") + text + "/text.xml");
}

}  // namespace
