// SPDX-License-Identifier: BSD-3-Clause
#include "SampleFolder.h"

#include "Judges.h"

#include <Ferro/SHA1Digest.h>

#include <signal.h>

#include <cstdlib>

using testing::ElementsAre;
using testing::HasSubstr;
using testsupport::RunJudge;

namespace {

class MakeSample : public SampleFolder {
 protected:
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
  void Make(const std::string& name, const std::string& seed) {
    StrataProgram maker({"make-sample", Beside(name), "--length", "1", "--size", "96x64", "--seed", seed});
    ASSERT_EQ(maker.Wait(), 0) << maker.Errors();
  }
};

TEST_F(MakeSample, EqualSeedsMakeEqualFiles) {
  Make("again", "1");
  const std::vector<std::string> files = FilesOf(Show());
  ASSERT_EQ(files, FilesOf(Beside("again")));
  ASSERT_EQ(files.size(), 43U);
  for (const std::string& file : files) EXPECT_EQ(DigestOf(Show(file)), DigestOf(Beside("again/" + file))) << file;
}

TEST_F(MakeSample, AnotherSeedMakesOtherIdentifiers) {
  Make("other", "2");
  for (const std::string& file : FilesOf(Show())) {
    if (file.ends_with("VOLINDEX.xml")) continue;  // holds nothing but a number
    EXPECT_NE(DigestOf(Show(file)), DigestOf(Beside("other/" + file))) << file;
  }
}

TEST_F(MakeSample, LeavesNothingBesideTheShow) {
  EXPECT_THAT(NamesIn(m_Folder.Folder()), ElementsAre("show"));
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

TEST_F(MakeSample, RefusesSizesOutsideTheProfile) {
  for (const char* size : {"63x64", "64x63", "2049x1080", "2048x1081", "64", "64x", "x64", "64x64x", "-64x64"}) {
    StrataProgram maker({"make-sample", Beside("none"), "--size", size});
    EXPECT_EQ(maker.Wait(), 1) << size;
    EXPECT_FALSE(std::filesystem::exists(Beside("none")));
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
}

// Where STRATA_SCHEMAS does not tell of the schemas, the test is reported as skipped.
TEST_F(MakeSample, DocumentsAreValid) {
  const char* schemas = std::getenv("STRATA_SCHEMAS");
  RunJudge({"xmllint", "--nonet", "--noout", "--schema", SHOW_PLAYLIST_SCHEMA, Show("show.xml"),
            Show("before-the-feature.xml")});
  if (schemas == nullptr) GTEST_SKIP() << "STRATA_SCHEMAS is not set";
  setenv("XML_CATALOG_FILES", (std::string(schemas) + "/catalog.xml").c_str(), 1);
  const std::pair<const char*, const char*> documents[] = {{"CPL.xml", "all-smpte-cpl.xsd"},
                                                           {"PKL.xml", "smpte-429-8-2007-PKL.xsd"},
                                                           {"ASSETMAP.xml", "smpte-429-9-2007-AM.xsd"},
                                                           {"VOLINDEX.xml", "smpte-429-9-2007-AM.xsd"}};
  for (const auto& [name, schema] : documents)
    for (const char* folder : {"Trailer", "Feature", "Stereoscopic", "Immersive", "Encrypted"})
      RunJudge({"xmllint", "--nonet", "--noout", "--schema", std::string(schemas) + '/' + schema,
                Show(std::string(folder) + '/' + name)});
}

}  // namespace
