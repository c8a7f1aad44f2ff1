// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleDocuments.h"

#include <Ferro/SHA1Digest.h>
#include <Ferro/TextEncoding.h>

#include <filesystem>

namespace {

using testsupport::After;
using testsupport::ExpectEach;
using testsupport::Names;
using testsupport::SamplePackage;

constexpr char List[] = "PKL.xml";
constexpr char MadeUpHash[] = "<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>";
const std::string Entry12 = std::string("<Asset>\n<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000012</Id>\n") +
                            MadeUpHash + "\n<Size>1</Size>\n<Type>application/mxf</Type>\n";

TEST(PackingListFindings, ValuesOfTheList) {
  ExpectEach({
      {List, "<Issuer>Issuer</Issuer>\n", "", {"pkl-schema"}},
      {List, "<Creator>", "<Other/><Creator>", {"pkl-schema"}},
      {List, "2007/PKL", "2008/PKL", {"pkl-schema"}},
      {List, "2007/PKL", "2006/PKL", {}},
      {List, "000000000002</Id>", "0000000000aa</Id>", {"pkl-id"}},
      {List, "2024-03-01T09:31:00+00:00", "2024-03-01T09:31:00", {"pkl-issue-date"}},
      {List, "2024-03-01T09:31:00+00:00", "2024-03-01", {"pkl-issue-date"}},
      {List, "2024-03-01T09:31:00+00:00", "2024-06-01T00:00:00Z", {}},
      {List, "2024-03-01T09:31:00+00:00", "2024-06-01T00:00:01Z", {"pkl-issue-date"}},
      {List, "<AnnotationText>SoundFilm", "<AnnotationText>Other", {"pkl-annotation"}},
      {List, "000000000012</Id>", "000000000099</Id>", {"pkl-asset-unmapped", "pkl-unlisted"}},
      {List, Entry12, Entry12 + "</Asset>\n" + Entry12, {"pkl-duplicate-id"}},
      {List, "<Type>application/mxf", "<Type>text/xml", {"pkl-asset-type"}},
      {List, "<Type>application/mxf", "<Type>Application/MXF", {}},
      {List, "<Type>text/xml", "<Type>text/xml;asdcpKind=CPL", {"pkl-asset-type"}},
      {List, "<Size>1</Size>\n<Type>application/mxf", "<Size>2</Size>\n<Type>application/mxf", {"pkl-asset-size"}},
      {List,
       "<Size>1</Size>\n<Type>application/mxf",
       "<Size>0</Size>\n<Type>application/mxf",
       {"pkl-asset-size", "pkl-schema"}},
  });
}

TEST(PackingListFindings, InteropTypesTellTheKind) {
  for (const auto& [from, to] : {std::pair("asdcpKind=Picture", "asdcpKind=Sound"),
                                 {"asdcpKind=CPL", "asdcpKind=Subtitle"},
                                 {"text/xml;asdcpKind=Subtitle", "text/xml"},
                                 {"application/ttf", "font/ttf"}})
    EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop).Edit(List, from, to).Findings(),
              (Names{"package-interop", "pkl-asset-type"}))
        << to;
  EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop)
                .Edit(List, "text/xml;asdcpKind=CPL", "text/xml; asdcpkind=cpl")
                .Findings(),
            Names{"package-interop"});
}

TEST(PackingListFindings, DocumentsThatAreNoAssets) {
  const std::string other = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Other/>\n";
  for (const std::string& text : {testsupport::SMPTEAssetMap(), testsupport::SMPTEVolumeIndex()})
    EXPECT_EQ(SamplePackage().Put("CPL.xml", text).Findings(), Names{"pkl-asset-type"});
  EXPECT_EQ(SamplePackage().Put("CPL.xml", other).Findings(), Names{});
  EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop).Put("CPL.xml", other).Findings(),
            (Names{"package-interop", "pkl-asset-type"}));
}

TEST(PackingListFindings, FilesThatAreNotThere) {
  const Names gone = SamplePackage().Remove("file_12.mxf").Findings();
  EXPECT_EQ(gone, Names{"pkl-asset-missing"});
  EXPECT_EQ(SamplePackage().Remove(List).Findings(), Names{"pkl-missing"});
}

TEST(PackingListFindings, WhatNoListNamesIsTold) {
  EXPECT_EQ(After(List, Entry12 + "<OriginalFileName>file_12.mxf</OriginalFileName>\n</Asset>\n", ""),
            Names{"pkl-unlisted"});
}

TEST(PackingListFindings, TwoListsMayNotDisagree) {
  std::string other = testsupport::SMPTEPackingList();
  const auto with = [&](const std::string& text) {
    return SamplePackage()
        .Put("PKL2.xml", text)
        .Edit("ASSETMAP.xml", "</AssetList>",
              "<Asset><Id>urn:uuid:0f0f0f0f-1111-4222-8333-0000000000a2</Id><PackingList>true</PackingList>"
              "<ChunkList><Chunk><Path>PKL2.xml</Path></Chunk></ChunkList></Asset>\n</AssetList>")
        .Findings();
  };
  other.replace(other.find("000000000002"), 12, "0000000000a2");
  const size_t first = other.find("<Asset>");
  other.erase(first, other.find("</Asset>", first) + 9 - first);  // the composition's entry, whose digest is made up
  EXPECT_EQ(with(other), Names{});
  other.replace(other.find("<Hash>AAAA"), 10, "<Hash>BBBB");
  EXPECT_EQ(with(other), Names{"pkl-disagree"});
}

TEST(PackingListFindings, AGroupIsToldWithItsOtherLists) {
  const testsupport::TemporaryFolder folder;
  const std::string group = "<GroupId>urn:uuid:0f0f0f0f-1111-4222-8333-0000000000b1</GroupId>\n<AssetList>";
  EXPECT_EQ(After(List, "<AssetList>", group), Names{});
  for (const char* name : {"a", "b"}) {
    SamplePackage package;
    package.Edit(List, "<AssetList>", group);
    std::filesystem::create_directory(folder.Path(name));
    package.Write(folder.Path(name));
  }
  Assay::CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = {Assay::Depth::Documents};
  Assay::CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{"pkl-group-id"});
  EXPECT_EQ(testsupport::TheOne(report.Findings, Assay::FindingID::PklGroupID).Found, folder.Path("a") + "/PKL.xml");
}

/// The sample with a second composition of another title, in the map and the list, and that annotation of the list.
Names OfTwoCompositions(const std::string& title, const std::string& annotation) {
  std::string second = testsupport::SMPTEComposition();
  for (const auto& [from, to] : {std::pair<std::string, std::string>("000000000003</Id>", "0000000000e3</Id>"),
                                 std::pair<std::string, std::string>("SoundFilm_FTR", title + "_FTR")})
    for (size_t at = second.find(from); at != std::string::npos; at = second.find(from, at + to.size()))
      second.replace(at, from.size(), to);
  const std::string id = "<Asset>\n<Id>urn:uuid:0f0f0f0f-1111-4222-8333-0000000000e3</Id>\n";
  const std::string hash = Ferro::base64encode({Ferro::DigestText(second).Value(), 20});
  return SamplePackage()
      .Put("CPL2.xml", second)
      .Edit("ASSETMAP.xml", "<AssetList>\n",
            "<AssetList>\n" + id + "<ChunkList><Chunk><Path>CPL2.xml</Path></Chunk></ChunkList>\n</Asset>\n")
      .Edit(List, "<AssetList>\n",
            "<AssetList>\n" + id + "<Hash>" + hash + "</Hash>\n<Size>" + std::to_string(second.size()) +
                "</Size>\n<Type>text/xml</Type>\n</Asset>\n")
      .Edit(List, "<AnnotationText>SoundFilm_FTR-1_F_EN-FR-CCAP_US-13_51-HI-VI-IAB_2K_ST_20240301_FAC_SMPTE_OV",
            "<AnnotationText>" + annotation)
      .Findings();
}

TEST(PackingListFindings, OfSeveralCompositionsTheAnnotationIsHowTheirTitlesBegin) {
  EXPECT_EQ(OfTwoCompositions("SoundFile", "SoundFil"), Names{});
  EXPECT_EQ(OfTwoCompositions("SoundFile", "SoundFilm"), Names{"pkl-annotation note"});
}

TEST(PackingListFindings, ADocumentThatIsTooLargeIsToldAsUnreadable) {
  const std::string large = testsupport::SMPTEComposition() + std::string(8 * 1024 * 1024, '\n');
  EXPECT_EQ(SamplePackage().Put("CPL.xml", large).Findings(), Names{"file-unreadable"});
  const std::string list = testsupport::SMPTEPackingList() + std::string(8 * 1024 * 1024, '\n');
  const auto report = SamplePackage().Put(List, list).Report();
  EXPECT_EQ(testsupport::NamesOf(report.Findings), (Names{"file-unreadable", "pkl-missing"}));
  EXPECT_TRUE(testsupport::TheOne(report.Findings, Assay::FindingID::PklMissing).Cause.has_value());
}

}  // namespace
