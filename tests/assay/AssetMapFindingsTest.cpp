// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleDocuments.h"

namespace {

using testsupport::After;
using testsupport::EditCase;
using testsupport::ExpectEach;
using testsupport::Names;
using testsupport::SamplePackage;

constexpr char Map[] = "ASSETMAP.xml";
const std::string Asset12 =
    "<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000012</Id>\n<ChunkList><Chunk><Path>file_12.mxf</Path>"
    "<VolumeIndex>1</VolumeIndex><Offset>0</Offset><Length>1</Length></Chunk></ChunkList>";

/// Asset 12 with another path.
std::string WithPath(const std::string& path) {
  std::string asset = Asset12;
  return asset.replace(asset.find("file_12.mxf"), 11, path);
}

TEST(AssetMapFindings, TheSamplesAreSound) {
  EXPECT_EQ(SamplePackage().Findings(), Names{});
  EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop).Findings(), Names{"package-interop"});
}

TEST(AssetMapFindings, ValuesOfTheMap) {
  ExpectEach({
      {Map, "<VolumeCount>1", "<VolumeCount>2", {"am-volume-count"}},
      {Map, "<VolumeCount>1", "<VolumeCount>0", {"am-volume-count"}},
      {Map, "<VolumeCount>1", "<VolumeCount>+01", {}},
      {Map, "<VolumeCount>1", "<VolumeCount>one", {"am-schema"}},
      {Map, "<VolumeCount>1</VolumeCount>\n", "", {"am-schema"}},
      {Map, "<VolumeIndex>1", "<VolumeIndex>2", {"am-volume-index"}},
      {Map, "<VolumeIndex>1</VolumeIndex>", "", {}},
      {Map, "<Issuer>Issuer</Issuer>", "<Issuer> </Issuer>", {"am-empty-element"}},
      {Map, "<AnnotationText>SoundFilm", "<AnnotationText>X", {}},
      {Map, "<Length>1", "<Length>2", {"am-chunk-length"}},
      {Map, "<Length>1</Length>", "", {}},
      {Map, "<Offset>0", "<Offset>1", {"am-chunks"}},
      {Map, "<Offset>0</Offset>", "", {}},
      {Map,
       "<Length>1</Length></Chunk>",
       "<Length>1</Length></Chunk><Chunk><Path>file_13.mxf</Path></Chunk>",
       {"am-chunks"}},
      {Map, "<PackingList>true", "<PackingList>false", {"am-no-packing-list"}},
      {Map, "<PackingList>true", "<PackingList>1", {}},
      {Map, "2007/AM", "2700/AM", {"am-schema"}},
      {Map,
       "urn:uuid:0f0f0f0f-1111-4222-8333-000000000012",
       "URN:UUID:0f0f0f0f-1111-4222-8333-000000000012",
       {"am-id-form"}},
      {Map,
       "urn:uuid:0f0f0f0f-1111-4222-8333-000000000012",
       "urn:uuid:0f0f0f0f111142228333000000000012",
       {"am-id-form"}},
      {Map, "0f0f0f0f-1111-4222-8333-000000000012", "0F0F0F0F-1111-4222-8333-000000000012", {"package-id-case"}},
  });
}

TEST(AssetMapFindings, PathsLeadToFilesOfThePackage) {
  for (const char* path : {"/file_12.mxf", "../file_12.mxf", "http://host/file_12.mxf", "", "a/%2e%2e/%2e%2e/x"})
    EXPECT_EQ(After(Map, Asset12, WithPath(path)), (Names{"am-path", "package-foreign-file"})) << path;
  EXPECT_EQ(After(Map, Asset12, WithPath("file:///file_12.mxf")), Names{"am-path"});
}

TEST(AssetMapFindings, AFileURLOfInteropIsAWarning) {
  EXPECT_EQ(
      SamplePackage(SamplePackage::Kind::Interop).Edit("ASSETMAP", "<Path>file_12", "<Path>file:///file_12").Findings(),
      (Names{"am-path warning", "package-interop"}));
}

TEST(AssetMapFindings, CharactersAndLengthsOfPathsHaveLimits) {
  const auto at = [](const std::string& path) {
    return SamplePackage().Edit(Map, Asset12, WithPath(path)).Rename("file_12.mxf", path).Findings();
  };
  EXPECT_EQ(at("a b.mxf"), Names{"am-path-characters"});
  EXPECT_EQ(at("\xC3\xA9.mxf"), Names{"am-path-characters"});
  EXPECT_EQ(at(std::string(96, 'x') + ".mxf"), Names{});
  EXPECT_EQ(at(std::string(97, 'x') + ".mxf"), Names{"am-path-characters"});
  EXPECT_EQ(at("1/2/3/4/5/6/7/8/9/x.mxf"), Names{});
  EXPECT_EQ(at("1/2/3/4/5/6/7/8/9/10/x.mxf"), Names{"am-path-characters"});
}

TEST(AssetMapFindings, AFileOfAnotherCaseIsFoundAndTold) {
  EXPECT_EQ(SamplePackage().Rename("file_12.mxf", "File_12.MXF").Findings(), Names{"am-path-case"});
}

TEST(AssetMapFindings, IdentifiersAndFilesStandOnce) {
  EXPECT_EQ(After(Map, Asset12, Asset12 + "</Asset>\n<Asset>" + Asset12), Names{"am-duplicate-id"});
  const std::string other = "<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000099</Id>" + Asset12.substr(54);
  EXPECT_EQ(After(Map, Asset12, Asset12 + "</Asset>\n<Asset>" + other), (Names{"am-duplicate-path", "pkl-unlisted"}));
}

TEST(AssetMapFindings, MapsHaveTheirNamesAndStandAlone) {
  EXPECT_EQ(SamplePackage().Rename(Map, "ASSETMAP").Findings(), Names{"am-name"});
  EXPECT_EQ(SamplePackage().Rename(Map, "assetmap.xml").Findings(), Names{"am-name"});
  EXPECT_EQ(SamplePackage().Rename("VOLINDEX.xml", "VOLINDEX").Findings(), Names{"am-name"});
  EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop).Rename("ASSETMAP", "ASSETMAP.xml").Findings(),
            (Names{"am-name", "package-interop"}));
  EXPECT_EQ(SamplePackage().Put("ASSETMAP", testsupport::SMPTEAssetMap()).Findings(), Names{"am-several"});
  EXPECT_EQ(SamplePackage().Put("VOLINDEX", testsupport::SMPTEVolumeIndex()).Findings(), Names{"am-several"});
  EXPECT_EQ(SamplePackage().Remove(Map).Findings(), Names{"am-missing"});
}

TEST(AssetMapFindings, TheVolumeIndexIsTheFirst) {
  EXPECT_EQ(SamplePackage().Remove("VOLINDEX.xml").Findings(), Names{"vi-missing"});
  ExpectEach({{"VOLINDEX.xml", "<Index>1", "<Index>2", {"vi-index"}},
              {"VOLINDEX.xml", "<Index>1", "<Index>0", {"vi-index"}},
              {"VOLINDEX.xml", "<Index>1", "<Index>x<a/>", {"vi-index"}},
              {"VOLINDEX.xml", "<Index>1", "<Index> 1 ", {}},
              {"VOLINDEX.xml", "2007/AM", "2006/AM", {}}});
}

TEST(PackageFindings, FilesThatNoMapListsAreTold) {
  EXPECT_EQ(SamplePackage().Put("notes.txt", "x").Findings(), Names{"package-foreign-file"});
  EXPECT_EQ(SamplePackage().Put(".DS_Store", "x").Findings(), Names{"package-hidden-file"});
  EXPECT_EQ(SamplePackage().Put("sub/Thumbs.db", "x").Findings(), Names{"package-hidden-file"});
  EXPECT_EQ(SamplePackage().Put("empty/", "").Findings(), Names{"package-empty-folder"});
}

TEST(PackageFindings, DocumentsAreOfOneKind) {
  EXPECT_EQ(SamplePackage().Put("VOLINDEX.xml", testsupport::InteropVolumeIndex()).Findings(),
            (Names{"am-name", "package-mixed"}));
}

TEST(PackageFindings, AFontOfInteropHasALimit) {
  const auto with = [](size_t size) {
    return SamplePackage(SamplePackage::Kind::Interop)
        .Put("text/font.ttf", std::string(size, 'x'))
        .Edit("ASSETMAP", "text/font.ttf</Path><VolumeIndex>1</VolumeIndex><Offset>0</Offset><Length>1</Length>",
              "text/font.ttf</Path>")
        .Edit("PKL.xml", "<Size>1</Size>\n<Type>application/ttf",
              "<Size>" + std::to_string(size) + "</Size>\n<Type>application/ttf")
        .Findings();
  };
  EXPECT_EQ(with(655'360), Names{"package-interop"});
  EXPECT_EQ(with(655'361), (Names{"package-interop", "text-font-size"}));
}

TEST(XmlFindings, AMalformedDocumentIsOneFinding) {
  const auto report = SamplePackage().Edit("VOLINDEX.xml", "<Index>1</Index>\n", "<Index>1\n").Report();
  ASSERT_EQ(testsupport::NamesOf(report.Findings), Names{"xml-malformed"});
  EXPECT_EQ(report.Findings[0].Place.Document, "VOLINDEX.xml");
  EXPECT_EQ(report.Findings[0].Place.Line, 4U);
  EXPECT_EQ(After("VOLINDEX.xml", "<VolumeIndex", "<!DOCTYPE VolumeIndex>\n<VolumeIndex"), Names{"xml-malformed"});
}

TEST(XmlFindings, PlainDocumentsAreUTF8WithADeclaration) {
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
  ExpectEach({
      {Map, declaration, "\xEF\xBB\xBF" + declaration, {"xml-constraints"}},
      {Map, declaration + "\n", "", {"xml-constraints"}},
      {Map, declaration, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>", {"xml-constraints"}},
      {Map, declaration, "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>", {"xml-constraints"}},
      {Map, declaration, "<?xml version='1.0' encoding='utf-8' standalone='no' ?>", {}},
      {Map, declaration, "<?xml version=\"1.0\"?>", {}},
      {Map, "<AssetList>\n", "<AssetList>\r", {"xml-constraints"}},
      {Map, "<AssetList>\n", "<AssetList>\r\n", {}},
  });
  EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop).Edit("ASSETMAP", declaration + "\n", "").Findings(),
            Names{"package-interop"});
}

}  // namespace
