// SPDX-License-Identifier: BSD-3-Clause
//
// What can be wrong with packages: each fault is told with its reason, and what is sound is answered all the same.
#include "EssenceMaker.h"
#include "StoreFixture.h"
#include "TrackFileMaker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace CairnTest {
namespace {

namespace fs = std::filesystem;
using namespace Cairn;
using Ferro::RESULT_FALSE;
using Ferro::RESULT_NOT_FOUND;
using Ferro::RESULT_OK;
using testing::ElementsAre;
using testing::IsEmpty;

class StoreOfFaultyPackages : public testing::Test, public StoreFixture {
 protected:
  void SetUp() override { ASSERT_EQ(Opened, RESULT_OK); }
};

struct Fault {
  const char* Name;
  void (*Make)(PackageMaker&, const StoreFixture&);
  ui32_t Problems;
  const char* Reason;
};

void SetPath(PackageMaker& package, const std::string& path) {
  package.Map.AssetList.front().ChunkList.front().Path = path;
}

// The map leads elsewhere, and no other file says that it is the asset.
void SetOtherPath(PackageMaker& package, const std::string& path) {
  fs::remove(package.Folder / "cpl_272.xml");
  SetPath(package, path);
}

void PutIDOutside(PackageMaker& package, const char* path) {
  PutText(package.Folder.parent_path() / "outside.xml", CompositionText(SampleID(0x999)));
  SetOtherPath(package, path);
}

const Fault Faults[] = {
    {"MissingFile", [](PackageMaker& p, const StoreFixture&) { fs::remove(p.Folder / "cpl_272.xml"); }, AP_MISSING_FILE,
     "The file is missing."},
    {"WrongListedSize", [](PackageMaker& p, const StoreFixture&) { p.List.AssetList.front().Size = 151; },
     AP_WRONG_SIZE, "The file does not have the size that the package lists."},
    {"WrongMappedLength",
     [](PackageMaker& p, const StoreFixture&) {
       p.Map.AssetList.front().ChunkList.front().HasLength = true;
       p.Map.AssetList.front().ChunkList.front().Length = 153;
     },
     AP_WRONG_SIZE, "The file does not have the size that the package lists."},
    {"ListedButNotPacked", [](PackageMaker& p, const StoreFixture&) { p.Map.AssetList.clear(); }, AP_NOT_PACKED,
     "The packing list names it, but the asset map does not."},
    {"PackedButNotListed",
     [](PackageMaker& p, const StoreFixture&) {
       p.List.AssetList.clear();
       p.Add(SampleID(0x111), "b.bin", "another");
     },
     AP_NOT_LISTED, "It lies in the package, but no packing list names it."},
    {"AnotherID",
     [](PackageMaker& p, const StoreFixture&) { PutText(p.Folder / "cpl_272.xml", CompositionText(SampleID(0x119))); },
     AP_WRONG_ID, "The file says that it is another asset."},
    {"TwoChunks",
     [](PackageMaker& p, const StoreFixture&) {
       p.Map.AssetList.front().ChunkList.push_back({"b.bin", 1, 152, false, 0});
     },
     AP_CHUNKED, "The asset is chunked: several files hold it, which is not supported."},
    {"SecondVolume",
     [](PackageMaker& p, const StoreFixture&) { p.Map.AssetList.front().ChunkList.front().VolumeIndex = 2; },
     AP_OTHER_VOLUME, "The asset map puts the file on another volume than the first, which is not supported."},
    {"LaterChunkAlone",
     [](PackageMaker& p, const StoreFixture&) { p.Map.AssetList.front().ChunkList.front().Offset = 1; }, AP_PARTIAL,
     "The asset map says that the file holds the end of the asset alone."},
    {"LinkOutOfTheFolder",
     [](PackageMaker& p, const StoreFixture&) {
       fs::remove(p.Folder / "cpl_272.xml");
       fs::create_symlink("/etc/hostname", p.Folder / "cpl_272.xml");
     },
     AP_LINK, "The file is a symbolic link that leads out of the folder, or nowhere."},
    {"LinkToNothing",
     [](PackageMaker& p, const StoreFixture&) {
       fs::remove(p.Folder / "cpl_272.xml");
       fs::create_symlink("nothing", p.Folder / "cpl_272.xml");
     },
     AP_LINK, "The file is a symbolic link that leads out of the folder, or nowhere."},
    {"Pipe",
     [](PackageMaker& p, const StoreFixture&) {
       fs::remove(p.Folder / "cpl_272.xml");
       ASSERT_EQ(mkfifo((p.Folder / "cpl_272.xml").c_str(), 0600), 0);
     },
     AP_NOT_A_FILE, "It is no regular file but a folder, a pipe, a socket or a device."},
    {"Folder",
     [](PackageMaker& p, const StoreFixture&) {
       fs::remove(p.Folder / "cpl_272.xml");
       fs::create_directory(p.Folder / "cpl_272.xml");
     },
     AP_NOT_A_FILE, "It is no regular file but a folder, a pipe, a socket or a device."},
    {"LetterCase", [](PackageMaker& p, const StoreFixture&) { SetPath(p, "CPL_272.XML"); }, AP_PATH_CASE,
     "The file's name differs from the asset map's path in upper and lower case."},
    {"BrokenDocument",
     [](PackageMaker& p, const StoreFixture&) {
       std::string text = CompositionText(SampleID(0x110));
       text.replace(text.find("<Id>"), 4, "<Id ");
       PutText(p.Folder / "cpl_272.xml", text);
     },
     AP_UNREADABLE, "The file could not be read or understood."},
    {"StepUpwards", [](PackageMaker& p, const StoreFixture&) { PutIDOutside(p, "../outside.xml"); }, AP_BAD_PATH,
     "The asset map's path leaves the package."},
    {"StepUpwardsInTheMiddle", [](PackageMaker& p, const StoreFixture&) { PutIDOutside(p, "a/../../outside.xml"); },
     AP_BAD_PATH, "The asset map's path leaves the package."},
    {"EncodedStepUpwards", [](PackageMaker& p, const StoreFixture&) { PutIDOutside(p, "%2e%2e/outside.xml"); },
     AP_BAD_PATH, "The asset map's path leaves the package."},
    {"AbsolutePath", [](PackageMaker& p, const StoreFixture& f) { PutIDOutside(p, f.At("outside.xml").c_str()); },
     AP_BAD_PATH, "The asset map's path leaves the package."},
    {"OtherScheme", [](PackageMaker& p, const StoreFixture&) { SetOtherPath(p, "http://quayside.example/cpl.xml"); },
     AP_BAD_PATH, "The asset map's path leaves the package."},
    {"LinkOutOfThePackage",
     [](PackageMaker& p, const StoreFixture&) {
       PutIDOutside(p, "link.xml");
       fs::create_symlink("../outside.xml", p.Folder / "link.xml");
     },
     AP_BAD_PATH, "The asset map's path leaves the package."},
};

class AssetStoreFaults : public testing::TestWithParam<Fault>, public StoreFixture {};

// The fault is told, with its sentence, and a fatal one keeps the asset from the engine.
TEST_P(AssetStoreFaults, IsToldWithItsReason) {
  PackageMaker package(At("p"), 0x100);
  package.AddComposition(0x110);
  GetParam().Make(package, *this);
  package.Write();
  PutText(package.Folder / "CPL_272.TXT", "stands near, but is another");
  ASSERT_EQ(Add(), RESULT_OK);

  const AssetRecord record = Only(SampleID(0x110));
  EXPECT_EQ(record.Problems, GetParam().Problems);
  EXPECT_THAT(record.Reasons(), ElementsAre(GetParam().Reason));
  const bool is_fatal = (GetParam().Problems & FatalAssetProblems) != 0;
  AssetInfo info;
  EXPECT_EQ(Store.GetInfoForAssetID(SampleID(0x110), info, true), is_fatal ? RESULT_NOT_FOUND : RESULT_OK);
  EXPECT_EQ(info.HasValue(), !is_fatal);
  EXPECT_EQ(Store.GetInfoForAssetID(SampleID(0x110), info, false), RESULT_OK);
  EXPECT_EQ(info.ID, SampleID(0x110));
  if ((GetParam().Problems & AP_BAD_PATH) != 0) {
    EXPECT_EQ(record.Info.RealFilename, "");
  }
}

INSTANTIATE_TEST_SUITE_P(Each, AssetStoreFaults, testing::ValuesIn(Faults),
                         [](const auto& fault) { return std::string(fault.param.Name); });

TEST_F(StoreOfFaultyPackages, ListedAssetThatIsNowhereIsMissingAndNotPacked) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.AddComposition(0x111);
  fs::remove(At("p/cpl_272.xml"));
  package.Map.AssetList.pop_front();
  package.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x110)).Problems, ui32_t{AP_NOT_PACKED | AP_MISSING_FILE});
}

TEST_F(StoreOfFaultyPackages, LetterCaseThatFitsTwoFilesFitsNone) {
  PackageMaker package = Package("p", 0x100);
  package.Add(SampleID(0x110), "a.bin", "one");
  PutText(At("p/A.bin"), "two");
  SetPath(package, "A.BIN");
  package.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x110)).Problems, ui32_t{AP_MISSING_FILE});
}

TEST_F(StoreOfFaultyPackages, FileIsFoundByItsPathWithAllThatPackagesSayOfIt) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.Write();
  PutText(At("p/other.xml"), CompositionText(SampleID(0x119)));
  fs::create_symlink("p", At("q"));
  ASSERT_EQ(Add(), RESULT_OK);
  const std::vector<AssetRecord> listed = Store.FindFile(At("q/../p/cpl_272.xml").string());
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed[0].Info.ID, SampleID(0x110));
  EXPECT_EQ(listed[0].FileID, SampleID(0x110));
  EXPECT_TRUE(listed[0].HasListedSize);
  EXPECT_TRUE(listed[0].Info.Digest.HasValue());
  const std::vector<AssetRecord> unlisted = Store.FindFile(At("p/other.xml").string());
  ASSERT_EQ(unlisted.size(), 1U);
  EXPECT_EQ(unlisted[0].Problems, ui32_t{AP_NOT_LISTED});
  EXPECT_THAT(Store.FindFile(At("nothing").string()), IsEmpty());
}

TEST_F(StoreOfFaultyPackages, SameAssetTwiceAtOnePlaceDoesNoHarm) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.Map.AssetList.push_back(package.Map.AssetList.front());
  package.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
  EXPECT_THAT(Reasons(Store.Packages().at(0)), IsEmpty());
}

TEST_F(StoreOfFaultyPackages, SameIDAtTwoPlacesIsAFindingAndTheSoundFileIsAnswered) {
  PackageMaker package = Package("p", 0x100);
  PutText(At("p/a.bin"), "altered");
  package.Map.AssetList.push_back({SampleID(0x110), "", false, {{"a.bin", 1, 0, false, 0}}});
  package.AddComposition(0x110);
  package.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Store.FindAsset(SampleID(0x110)).size(), 2U);
  EXPECT_THAT(Reasons(Store.Packages().at(0)),
              ElementsAre("The asset map names 00000000-0000-4000-8000-000000000110 more than once."));
  AssetInfo info;
  ASSERT_EQ(Store.GetInfoForAssetID(SampleID(0x110), info, true), RESULT_OK);
  EXPECT_EQ(info.RealFilename, At("p/cpl_272.xml"));
}

TEST_F(StoreOfFaultyPackages, SoundCopyInAnotherPackageStandsInForAMissingOne) {
  for (const char* name : {"a", "b"}) {
    PackageMaker package = Package(name, 0x100);
    package.AddComposition(0x110);
    package.Write();
  }
  fs::remove(At("a/cpl_272.xml"));
  ASSERT_EQ(Add(), RESULT_OK);
  AssetInfo info;
  ASSERT_EQ(Store.GetInfoForAssetID(SampleID(0x110), info, true), RESULT_OK);
  EXPECT_EQ(info.RealFilename, At("b/cpl_272.xml"));
}

TEST_F(StoreOfFaultyPackages, FileThatAPackingListNamesGoesBeforeALooseCopy) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.Write();
  fs::copy_file(At("p/cpl_272.xml"), At("copy.xml"));
  ASSERT_EQ(Add(), RESULT_OK);
  ASSERT_EQ(Store.FindAsset(SampleID(0x110)).size(), 2U);
  AssetInfo info;
  ASSERT_EQ(Store.GetInfoForAssetID(SampleID(0x110), info, true), RESULT_OK);
  EXPECT_EQ(info.RealFilename, At("p/cpl_272.xml"));
  EXPECT_TRUE(info.Digest.HasValue());
}

TEST_F(StoreOfFaultyPackages, TextDocumentsIDIsNotItsAssets) {
  PackageMaker package = Package("p", 0x100);
  package.Add(SampleID(0x110), "text.xml",
              "<SubtitleReel xmlns=\"http://www.smpte-ra.org/schemas/428-7/2010/DCST\"><Id>urn:uuid:" +
                  SampleID(0x111).EncodeString() + "</Id></SubtitleReel>");
  package.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x110)).Info.FileType, FT_DCST);
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
}

}  // namespace
}  // namespace CairnTest
