// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleDocuments.h"

#include <Cairn/AssetStore.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace {

using Assay::CheckReport;
using Assay::CheckRequest;
using Assay::Depth;
using Assay::DepthSet;
using Assay::FindingClass;
using testsupport::Names;
using testsupport::SamplePackage;

TEST(Check, WithoutFoldersThereIsNothingToCheck) {
  CheckReport report;
  EXPECT_EQ(Check({}, report), Assay::RESULT_AY_NOTHING);
}

TEST(Check, AFolderThatIsNotThereIsAFailure) {
  CheckRequest request;
  request.Folders = {"/no/such/folder"};
  CheckReport report;
  EXPECT_EQ(Check(request, report), Ferro::RESULT_NOT_FOUND);
}

TEST(Check, ItNeedsADepth) {
  const testsupport::TemporaryFolder folder;
  CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = DepthSet();
  CheckReport report;
  EXPECT_EQ(Check(request, report), Assay::RESULT_AY_DEPTH);
}

TEST(Check, DepthsAreASet) {
  constexpr DepthSet files = DepthSet::UpTo(Depth::Files);
  EXPECT_TRUE(files.Has(Depth::Documents) && files.Has(Depth::Files));
  EXPECT_FALSE(files.Has(Depth::Frames));
  EXPECT_TRUE(DepthSet().IsEmpty());
  EXPECT_EQ(DepthSet({Depth::Documents}), DepthSet::UpTo(Depth::Documents));
}

TEST(Check, TheReportTellsWhatWasMetAndLookedAt) {
  const CheckReport report = SamplePackage().Report(Assay::Profile::Plays);
  ASSERT_EQ(report.Packages.size(), 1U);
  EXPECT_FALSE(report.Packages[0].Worst.has_value());
  ASSERT_EQ(report.Compositions.size(), 1U);
  EXPECT_EQ(report.Compositions[0].Document, "CPL.xml");
  EXPECT_EQ(report.Compositions[0].ID.EncodeString(), "0f0f0f0f-1111-4222-8333-000000000003");
  EXPECT_FALSE(report.Compositions[0].Worst.has_value());
  EXPECT_EQ(report.LookedAt, DepthSet{Depth::Documents});
  EXPECT_FALSE(report.IsCancelled);
}

TEST(Check, WhatCountsIsTheProfiles) {
  const auto worst = [](Assay::Profile profile) {
    return SamplePackage().Edit("CPL.xml", "<Label>FFMC", "<Label>LFMC").Report(profile).Compositions[0].Worst;
  };
  EXPECT_EQ(worst(Assay::Profile::Plays), std::nullopt);
  EXPECT_EQ(worst(Assay::Profile::Interop), std::nullopt);
  EXPECT_EQ(worst(Assay::Profile::SMPTE), FindingClass::Profile);
}

TEST(Check, AFindingInACompositionIsItsPackagesToo) {
  const CheckReport report = SamplePackage().Edit("CPL.xml", "<Issuer>", "<Unknown/><Issuer>").Report();
  EXPECT_EQ(report.Packages[0].Worst, FindingClass::Error);
  EXPECT_EQ(report.Compositions[0].Worst, FindingClass::Error);
  const Assay::Finding finding = testsupport::TheOne(report.Findings, Assay::FindingID::CplSchema);
  EXPECT_STREQ(finding.Sentence(), RuleOf(Assay::FindingID::CplSchema).Sentence);
}

/// A version file that takes a picture from its original.
SamplePackage VersionFile() {
  const std::string id = "<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000012</Id>\n";
  SamplePackage version;
  version.Remove("file_12.mxf")
      .Edit("ASSETMAP.xml",
            "<Asset>\n" + id +
                "<ChunkList><Chunk><Path>file_12.mxf</Path><VolumeIndex>1</VolumeIndex><Offset>0</Offset>"
                "<Length>1</Length></Chunk></ChunkList>\n</Asset>\n",
            "")
      .Edit("PKL.xml",
            "<Asset>\n" + id +
                "<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n<Size>1</Size>\n<Type>application/mxf</Type>\n"
                "<OriginalFileName>file_12.mxf</OriginalFileName>\n</Asset>\n",
            "");
  for (const char* document : {"CPL.xml", "PKL.xml"}) version.EditAll(document, "_OV", "_VF");
  return version;
}

TEST(Check, AVersionFileFindsItsOriginalAmongTheFolders) {
  EXPECT_EQ(VersionFile().Findings(), Names{"cpl-asset-external"});
  const testsupport::TemporaryFolder folder;
  VersionFile().Write(folder.Path("version"));
  SamplePackage().EditAll("CPL.xml", "000000000003</Id>", "0000000000e3</Id>").Write(folder.Path("original"));
  CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = {Depth::Documents};
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(report.Packages.size(), 2U);
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{"cpl-id"});  // of the original, which the test renamed
}

TEST(Check, AVersionFileFindsItsOriginalInAStore) {
  const testsupport::TemporaryFolder folder;
  VersionFile().Write(folder.Path("version"));
  SamplePackage().Write(folder.Path("original"));
  Cairn::AssetStore store;
  ASSERT_TRUE(store.Open().Success());
  ASSERT_TRUE(store.AddFolder(folder.Path("original")).Success());
  CheckRequest request;
  request.Folders = {folder.Path("version")};
  request.Depths = {Depth::Documents};
  request.Store = &store;
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{});
}

TEST(Check, ItIsCancelledBetweenPackagesAndKeepsWhatWasFound) {
  const testsupport::TemporaryFolder folder;
  SamplePackage().Remove("VOLINDEX.xml").Write(folder.Path("a"));
  SamplePackage().Remove("VOLINDEX.xml").Write(folder.Path("b"));
  CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = {Depth::Documents};
  std::vector<size_t> done;
  request.OnProgress = [&](const Assay::CheckProgress& progress) {
    EXPECT_EQ(progress.PackageCount, 2U);
    done.push_back(progress.PackagesDone);
    return progress.PackagesDone < 1;
  };
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(done, (std::vector<size_t>{0, 1}));
  EXPECT_TRUE(report.IsCancelled);
  EXPECT_TRUE(report.LookedAt.IsEmpty());
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{"vi-missing"});
}

TEST(Check, AnEmptyFolderIsAPackageWithoutAssetMap) {
  const testsupport::TemporaryFolder folder;
  CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = {Depth::Documents};
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(testsupport::NamesOf(report.Findings), (Names{"am-missing", "pkl-missing"}));
  EXPECT_EQ(report.Findings[1].Cause, 0U);
}

/// The findings of a composition with one damage, in their order: "name" where it counts, "name<" where it follows.
Names Linked(const SamplePackage& package) {
  Names names;
  for (const Assay::Finding& finding : package.Report().Findings)
    if (finding.ID != Assay::FindingID::SignMissing)
      names.push_back(std::string(RuleOf(finding.ID).Name) + (finding.Cause ? "<" : ""));
  return names;
}

TEST(Check, WhatFollowsStandsBelowItsCause) {
  EXPECT_EQ(Linked(SamplePackage().Edit("CPL.xml", "<ContentVersion>", "<XContentVersion/><ContentVersion>")),
            Names{"cpl-schema"});
  EXPECT_EQ(Linked(SamplePackage()
                       .Edit("CPL.xml", "<FrameRate>24 1</FrameRate>\n", "")
                       .Edit("CPL.xml", "<ContentKind>feature", "<ContentKind>film")),
            (Names{"cpl-schema", "cpl-content-kind", "title-kind<"}));
  EXPECT_EQ(Linked(SamplePackage().Edit("CPL.xml", "<Label>FFOC", "<Label>FFXX")),
            (Names{"marker-unknown", "marker-ffoc<"}));
  EXPECT_EQ(Linked(SamplePackage().Edit("ASSETMAP.xml", "<PackingList>true</PackingList>\n", "")),
            Names{"am-no-packing-list"});
  EXPECT_EQ(Linked(SamplePackage().Damage("CPL.xml", "<Issuer>", "<XIssuer/><Issuer>")),
            (Names{"cpl-hash", "cpl-schema<"}));
  EXPECT_EQ(Linked(SamplePackage().Damage("CPL.xml", "</Reel>", "")), (Names{"pkl-asset-size", "xml-malformed<"}));
}

TEST(Check, AFaultOfFormIsToldWithReelAndAsset) {
  const std::string sound =
      "</Duration>\n<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n<Language>en</Language>\n</MainSound>";
  const CheckReport report = SamplePackage().Edit("CPL.xml", sound, "</Duration><X/></MainSound>").Report();
  const Assay::Finding finding = testsupport::TheOne(report.Findings, Assay::FindingID::CplSchema);
  EXPECT_EQ(finding.Place.Reel, 1U);
  EXPECT_EQ(finding.Place.Asset.EncodeString(), "0f0f0f0f-1111-4222-8333-000000000013");
  EXPECT_EQ(finding.Place.Composition.EncodeString(), "0f0f0f0f-1111-4222-8333-000000000003");
}

TEST(Check, ADamagedDocumentOfTheOriginalIsItsOwnAlone) {
  const testsupport::TemporaryFolder folder;
  for (const char* name : {"a", "b"}) {
    SamplePackage package;
    if (*name == 'b')
      package.Edit("CPL.xml", "<Issuer>", "<Unknown/><Issuer>")
          .EditAll("CPL.xml", "000000000003</Id>", "0000000000e3</Id>");
    std::filesystem::create_directory(folder.Path(name));
    package.Write(folder.Path(name));
  }
  CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = {Depth::Documents};
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(report.Compositions[0].Worst, std::nullopt);
  EXPECT_EQ(report.Packages[0].Worst, std::nullopt);
  EXPECT_EQ(report.Compositions[1].Worst, FindingClass::Error);
}

TEST(Check, WhatIsWrongWithAFileIsWrongWithTheCompositionThatPlaysIt) {
  const CheckReport report = SamplePackage().Remove("file_12.mxf").Report();
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{"pkl-asset-missing"});
  EXPECT_EQ(report.Compositions[0].Worst, FindingClass::Error);
}

/// An identifier with a number of its own.
std::string NumberedID(int number) {
  char text[64];
  std::snprintf(text, sizeof(text), "<Id>urn:uuid:0f0f0f0f-1111-4222-8333-1%011d</Id>", number);
  return text;
}

/// As many assets as a document of 8 MB has room for: half of them lead to one file, the others to none.
SamplePackage WithManyAssets() {
  constexpr int Count = 45'000;
  std::string map;
  std::string list;
  std::string reels;
  for (int i = 0; i < Count; ++i) {
    const std::string path = i % 2 == 0 ? "FILE_12.mxf" : "none" + std::to_string(i) + ".mxf";
    map.append("<Asset>").append(NumberedID(i));
    map.append("<ChunkList><Chunk><Path>").append(path).append("</Path></Chunk></ChunkList></Asset>");
    list.append("<Asset>").append(NumberedID(i)).append("<Size>1</Size><Type>x</Type></Asset>");
    reels.append("<Reel><AssetList><MainSound>")
        .append(NumberedID(Count + i))
        .append("</MainSound></AssetList></Reel>");
  }
  SamplePackage package(SamplePackage::Kind::Interop);
  package.Edit("ASSETMAP", "</AssetList>", map + "</AssetList>");
  package.Edit("PKL.xml", "</AssetList>", list + list.substr(0, list.size() / 8) + "</AssetList>");
  package.Edit("CPL.xml", "</ReelList>", reels + "</ReelList>");
  for (int i = 0; i < 2'000; ++i) package.Put("file" + std::to_string(10'000 + i) + ".mxf", "");
  return package;
}

// Each with each would take minutes.
TEST(Check, ManyAssetsAreNoneTooMany) {
  const std::clock_t start = std::clock();
  const CheckReport report = WithManyAssets().Report();
  EXPECT_LT(double(std::clock() - start) / CLOCKS_PER_SEC, 60.0);  // of the processor's time
  const auto count = [&](Assay::FindingID id) { return std::ranges::count(report.Findings, id, &Assay::Finding::ID); };
  EXPECT_EQ(count(Assay::FindingID::AmPathCase), 22'500);
  EXPECT_EQ(count(Assay::FindingID::AmDuplicatePath), 22'500);
  EXPECT_EQ(count(Assay::FindingID::PklAssetMissing), 22'500);
  EXPECT_EQ(count(Assay::FindingID::PackageForeignFile), 2'000);
}

}  // namespace
