// SPDX-License-Identifier: BSD-3-Clause
#include "FilePackage.h"
#include "FindingCases.h"

#include "file/FileFindings.h"
#include "file/TrackFileReading.h"

#include <Cairn/AssetStore.h>

#include <filesystem>

namespace {

using Assay::CheckReport;
using Assay::CheckRequest;
using Assay::Depth;
using Assay::DepthSet;
using Assay::FindingClass;
using testsupport::FilePackage;
using testsupport::Names;
using testsupport::SampleID;
using testsupport::SamplePackage;
using testsupport::TrackKind;

TEST(FileCheck, SoundPackagesHaveNoFindingsAtAll) {
  const CheckReport report = FilePackage().Report();
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{});
  EXPECT_EQ(report.LookedAt, DepthSet::UpTo(Depth::Files));
  EXPECT_EQ(FilePackage(SamplePackage::Kind::Interop).Findings(), Names{"package-interop"});
  EXPECT_EQ(FilePackage().MakePairs().Findings(), Names{});
  EXPECT_EQ(FilePackage(SamplePackage::Kind::Interop).MakePairs().Findings(), Names{"package-interop"});
}

TEST(FileCheck, FilesAreLookedAtUnlessAskedOtherwise) {
  EXPECT_EQ(CheckRequest().Depths, DepthSet::UpTo(Depth::Files));
  const testsupport::TemporaryFolder folder;
  FilePackage().Drop("12").Put("file_12.mxf", "x").Write(folder.Folder().string());
  CheckRequest request;
  request.Folders = {folder.Folder().string()};
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{"file-damaged"});
  request.Depths = {Depth::Documents};
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{});
  EXPECT_EQ(report.LookedAt, DepthSet{Depth::Documents});
}

TEST(FileCheck, AFileThatACompositionPlaysSpeaksAgainstIt) {
  FilePackage package;
  package.Drop("12").Put("file_12.mxf", "x");
  const CheckReport report = package.Report(Assay::Profile::Plays);
  EXPECT_EQ(report.Compositions[0].Worst, FindingClass::Error);
  EXPECT_EQ(report.Packages[0].Worst, FindingClass::Error);
}

TEST(FileCheck, AnotherCompositionsFileDoesNot) {
  FilePackage package;
  package.Put("file_77.mxf", "x")
      .Edit("ASSETMAP.xml", "</AssetList>",
            "<Asset><Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000077</Id><ChunkList><Chunk><Path>file_77.mxf</Path></"
            "Chunk>"
            "</ChunkList></Asset></AssetList>");
  const CheckReport report = package.Report(Assay::Profile::Plays);
  EXPECT_EQ(testsupport::NamesOf(report.Findings), (Names{"file-damaged", "pkl-unlisted"}));
  EXPECT_EQ(report.Compositions[0].Worst, std::nullopt);
  EXPECT_EQ(report.Packages[0].Worst, FindingClass::Error);
}

/// A version file that takes the picture of its first reel from its original.
void WriteVersionFile(const std::string& folder) {
  const std::string id = "<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000012</Id>\n";
  FilePackage version;
  version.Drop("12")
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
  version.Write(folder);
}

Assay::FindingList FindingsIn(const std::vector<std::string>& folders, const Cairn::IAssetLookup* store = nullptr) {
  CheckRequest request;
  request.Folders = folders;
  request.Store = store;
  CheckReport report;
  EXPECT_TRUE(Check(request, report).Success());
  return report.Findings;
}

TEST(FileCheck, AFileOfAnotherPackageIsLookedAtWhereItLies) {
  const testsupport::TemporaryFolder folder;
  WriteVersionFile(folder.Path("version"));
  EXPECT_EQ(testsupport::NamesOf(FindingsIn({folder.Path("version")})), Names{"cpl-asset-external"});
  FilePackage original;
  original.SpecOf("12").Width = 2048;
  original.SpecOf("12").Height = 858;
  original.Write(folder.Path("original"));
  const auto findings = FindingsIn({folder.Path("version"), folder.Path("original")});
  // Each of the two compositions plays it, in its own place.
  EXPECT_EQ(
      testsupport::NamesOf(findings),
      (Names{"cpl-duplicate-id", "meta-active-area", "meta-active-area", "meta-stored-area", "meta-stored-area",
             "picture-changes", "picture-changes", "reel-aspect", "reel-aspect", "title-aspect", "title-aspect"}));
}

TEST(FileCheck, AFileOfAStoreIsLookedAtWhereItLies) {
  const testsupport::TemporaryFolder folder;
  WriteVersionFile(folder.Path("version"));
  FilePackage original;
  original.SpecOf("12").Width = 1920;
  original.Write(folder.Path("original"));
  Cairn::AssetStore store;
  ASSERT_TRUE(store.Open().Success());
  ASSERT_TRUE(store.AddFolder(folder.Path("original")).Success());
  const auto findings = FindingsIn({folder.Path("version")}, &store);
  EXPECT_EQ(testsupport::NamesOf(findings), (Names{"meta-active-area", "meta-stored-area", "picture-changes",
                                                   "picture-size", "reel-aspect", "title-aspect"}));
  for (const Assay::Finding& finding : findings)
    if (finding.ID == Assay::FindingID::PictureSize) {
      EXPECT_EQ(finding.Place.Package, "");
      EXPECT_EQ(finding.Place.Document, folder.Path("original/file_12.mxf"));
      EXPECT_EQ(finding.Place.Asset, SampleID("12"));
    }
}

TEST(FileCheck, TheDigestOfAnotherPackagesListIsCompared) {
  const testsupport::TemporaryFolder folder;
  WriteVersionFile(folder.Path("version"));
  FilePackage()
      .Edit("PKL.xml", "12</Id>\n<Hash>AAAA", "12</Id>\n<Hash>BBBB")
      .Edit("CPL.xml",
            "12</Id>\n<EditRate>24 1</EditRate>\n<IntrinsicDuration>240</IntrinsicDuration>\n"
            "<EntryPoint>0</EntryPoint>\n<Duration>240</Duration>\n<Hash>AAAA",
            "12</Id>\n<EditRate>24 1</EditRate>\n<IntrinsicDuration>240</IntrinsicDuration>\n"
            "<EntryPoint>0</EntryPoint>\n<Duration>240</Duration>\n<Hash>BBBB")
      .Write(folder.Path("original"));
  EXPECT_EQ(testsupport::NamesOf(FindingsIn({folder.Path("version"), folder.Path("original")})),
            (Names{"cpl-duplicate-id", "reel-hash"}));
}

TEST(FileCheck, ItIsCancelledBetweenFilesAndKeepsWhatWasFound) {
  const testsupport::TemporaryFolder folder;
  FilePackage().Drop("12").Put("file_12.mxf", "x").Remove("VOLINDEX.xml").Write(folder.Folder().string());
  CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.OnProgress = [&](const Assay::CheckProgress& progress) { return progress.FileCount == 0; };
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_TRUE(report.IsCancelled);
  EXPECT_EQ(report.LookedAt, DepthSet{Depth::Documents});
  const Names names = testsupport::NamesOf(report.Findings);
  EXPECT_TRUE(std::ranges::count(names, "vi-missing") == 1 && std::ranges::count(names, "file-unreadable") == 0);
}

TEST(FileCheck, AFolderNamedTwiceIsCheckedOnce) {
  const testsupport::TemporaryFolder folder;
  FilePackage().Remove("VOLINDEX.xml").Write(folder.Path("package"));
  EXPECT_EQ(
      testsupport::NamesOf(FindingsIn({folder.Path("package"), folder.Folder().string(), folder.Path("package/")})),
      Names{"vi-missing"});
}

TEST(FileCheck, AFileThatTheSystemDoesNotOpenIsUnreadable) {
  Assay::TrackFile file;
  file.Path = "/no/such/file.mxf";
  Assay::FindingList findings;
  FindInFile(file, findings);
  EXPECT_TRUE(findings.empty()) << "was not read yet";
  ReadTrackFile(file);
  FindInFile(file, findings);
  EXPECT_EQ(testsupport::NamesOf(findings), Names{"file-unreadable"});
  EXPECT_EQ(findings[0].Place.Document, "/no/such/file.mxf");
}

}  // namespace
