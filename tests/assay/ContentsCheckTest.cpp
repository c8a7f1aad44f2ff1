// SPDX-License-Identifier: BSD-3-Clause
#include "FilePackage.h"
#include "FoundNames.h"

#include <Ferro/FileText.h>
#include <Ferro/SHA1Digest.h>
#include <Ferro/TextEncoding.h>
#include <Sigil/KeyRing.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace Assay;
using testsupport::FilePackage;
using testsupport::FoundNames;
using Names = std::vector<std::string>;

constexpr DepthSet Files = DepthSet::UpTo(Depth::Files);
constexpr DepthSet Hash = {Depth::Documents, Depth::Files, Depth::Hash};
constexpr DepthSet Frames = {Depth::Documents, Depth::Files, Depth::Frames};

/// A package on disk whose documents give the true digests of its files.
class ContentsCheck : public ::testing::Test {
 protected:
  void Write(FilePackage package) {
    package.Write(Folder());
    std::string list = Read("PKL.xml");
    std::string composition = Read("CPL.xml");
    for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
      const std::string name = entry.path().filename().string();
      if (!name.starts_with("file_")) continue;
      const std::string digest = DigestOf(name);
      Fit(list, name.substr(5, 2), digest);
      Fit(composition, name.substr(5, 2), digest);
    }
    Put("CPL.xml", composition);
    Fit(list, "03", DigestOf("CPL.xml"));
    Put("PKL.xml", list);
    m_Request.Folders = {Folder()};
    m_Request.Profile = Profile::All;
    m_Request.Now = 1'717'200'000;
  }
  Names Find(const DepthSet& depths) {
    m_Request.Depths = depths;
    m_Report = {};
    EXPECT_EQ(Check(m_Request, m_Report), Ferro::RESULT_OK);
    return FoundNames(m_Report.Findings);
  }
  /// What is found beyond that.
  Names Beyond(const Names& known, const DepthSet& depths) {
    Names names = Find(depths);
    Names more;
    std::ranges::set_difference(names, known, std::back_inserter(more));
    return more;
  }
  void Flip(const std::string& name, size_t at) {
    const std::string path = Folder() + '/' + name;
    std::string text;
    ASSERT_EQ(Ferro::ReadFileIntoString(path, text, 1 << 28), Ferro::RESULT_OK);
    text.at(at) = static_cast<char>(text[at] ^ 1);
    std::filesystem::remove(path);  // the file is shared with other packages
    ASSERT_EQ(Ferro::WriteStringIntoFile(path, text), Ferro::RESULT_OK);
  }
  [[nodiscard]] std::string Folder() const { return m_Folder.Folder().string(); }

  testsupport::TemporaryFolder m_Folder;
  CheckRequest m_Request;
  CheckReport m_Report;

 private:
  [[nodiscard]] std::string Read(const std::string& name) const {
    std::string text;
    EXPECT_EQ(Ferro::ReadFileIntoString(Folder() + '/' + name, text), Ferro::RESULT_OK);
    return text;
  }
  void Put(const std::string& name, const std::string& text) const {
    EXPECT_EQ(Ferro::WriteStringIntoFile(Folder() + '/' + name, text), Ferro::RESULT_OK);
  }
  [[nodiscard]] std::string DigestOf(const std::string& name) const {
    SHA1 digest;
    EXPECT_EQ(Ferro::DigestFile(Folder() + '/' + name, digest), Ferro::RESULT_OK);
    return Ferro::base64encode(digest.Bytes());
  }
  /// Puts a digest behind the identifier that ends so.
  static void Fit(std::string& text, const std::string& id, const std::string& digest) {
    const size_t entry = text.find("0000000000" + id + "</Id>");
    if (entry == std::string::npos) return;
    const size_t begin = text.find("<Hash>", entry);
    const size_t end = text.find("</Hash>", entry);
    if (begin < end && end != std::string::npos && end - entry < 1000) text.replace(begin + 6, end - begin - 6, digest);
  }
};

TEST_F(ContentsCheck, DigestsOfASoundPackageAgree) {
  Write(FilePackage());
  const Names known = Find(Files);
  EXPECT_EQ(Beyond(known, Hash), Names());
  EXPECT_EQ(m_Report.LookedAt, Hash);
  EXPECT_TRUE(m_Report.LeftOuts.empty());
}

TEST_F(ContentsCheck, AnAlteredFileIsFoundByItsDigest) {
  Write(FilePackage());
  const Names known = Find(Files);
  Flip("file_13.mxf", 100'000);
  EXPECT_EQ(Beyond(known, Hash), Names{"pkl-asset-hash"});
}

TEST_F(ContentsCheck, FramesWithoutAKeyAreToldOnce) {
  FilePackage package;
  for (const char* id : {"12", "22"}) package.SpecOf(id).Key.emplace();
  Write(package);
  const Names more = Beyond(Find(Files), Frames);
  // What the sample's sound and fonts, which are made up, are told for is another matter.
  EXPECT_EQ(testsupport::Without(testsupport::Without(more, "sound-"), "text-"), Names{"picture-file-key"});
  EXPECT_EQ(m_Report.LeftOuts.size(), 2U);
  for (const LeftOut& file : m_Report.LeftOuts) {
    EXPECT_EQ(file.Depths, DepthSet{Depth::Frames});
    EXPECT_EQ(file.Reason, LeftOutReason::NoKey);
  }
  EXPECT_EQ(m_Report.LookedAt, Files);
  const auto told = std::ranges::find(m_Report.Findings, FindingID::PictureFileKey, &Finding::ID);
  ASSERT_NE(told, m_Report.Findings.end());
  EXPECT_EQ(told->Found, "2 files");

  Sigil::KeyRing keys;
  const testsupport::TrackFileKey& key = *package.SpecOf("12").Key;
  ASSERT_TRUE(keys.AddKey(key.KeyID, key.Key, Ferro::DefaultLogSink()).Success());
  m_Request.Keys = &keys;
  EXPECT_THAT(Find(Frames), testing::Not(testing::Contains("picture-file-key")));
  EXPECT_TRUE(m_Report.LeftOuts.empty());
  EXPECT_EQ(m_Report.LookedAt, Frames);
}

TEST_F(ContentsCheck, WhatIsEndedSaysWhatWasNotLookedAt) {
  Write(FilePackage());
  m_Request.OnProgress = [](const CheckProgress& progress) { return progress.Phase != CheckPhase::Contents; };
  Find(Hash);
  EXPECT_TRUE(m_Report.IsCancelled);
  EXPECT_FALSE(m_Report.LeftOuts.empty());
  EXPECT_EQ(m_Report.LookedAt, Files);
}

TEST_F(ContentsCheck, WhatIsEndedBeforeItsContentsLookedAtNone) {
  constexpr DepthSet all = {Depth::Frames, Depth::Hash, Depth::Decode};
  const testsupport::TemporaryFolder second;
  FilePackage pictureless;  // no picture can be opened before it is noticed that the check was ended
  pictureless.Drop("12").Drop("22");
  pictureless.Write(second.Folder().string());
  Write(pictureless);
  m_Request.Folders.push_back(second.Folder().string());
  m_Request.OnProgress = [](const CheckProgress& progress) { return progress.PackagesDone == 0; };
  Find(all);
  EXPECT_TRUE(m_Report.IsCancelled);
  EXPECT_EQ(m_Report.LookedAt, DepthSet());
  m_Request.OnProgress = [](const CheckProgress& progress) { return progress.Phase != CheckPhase::Files; };
  Find(all);
  EXPECT_TRUE(m_Report.IsCancelled);
  EXPECT_EQ(m_Report.LookedAt, DepthSet{Depth::Documents});
  EXPECT_TRUE(m_Report.Figures.empty());
}

TEST_F(ContentsCheck, ADepthBeyondFilesIncludesThem) {
  Write(FilePackage());
  const Names all = Find(Hash);
  EXPECT_EQ(Find({Depth::Hash}), all);
  EXPECT_EQ(m_Report.LookedAt, Hash);
}

TEST_F(ContentsCheck, FiguresOfPicturesAndSoundAreReported) {
  Write(FilePackage());
  Find(Frames);
  size_t pictures = 0;
  size_t sounds = 0;
  for (const FileFigures& figures : m_Report.Figures) {
    pictures += figures.Picture.has_value() ? 1 : 0;
    sounds += figures.Channels.empty() ? 0 : 1;
    EXPECT_EQ(figures.Package, Folder());
    EXPECT_EQ(figures.Duration, 240U);
  }
  EXPECT_EQ(pictures, 2U);
  EXPECT_EQ(sounds, 2U);
}

}  // namespace
