// SPDX-License-Identifier: BSD-3-Clause
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

class AssetStoreTest : public testing::Test, public StoreFixture {
 protected:
  void SetUp() override { ASSERT_EQ(Opened, RESULT_OK); }
};

// ---- packages

TEST_F(AssetStoreTest, PackageTellsWhatEachAssetIsAndWhereItLies) {
  PackageMaker package = Package("feature", 0x100);
  package.AddComposition(0x110);
  const testsupport::Bytes png = testsupport::MakePNG(200);
  package.Add(SampleID(0x111), "sub/image.png", {reinterpret_cast<const char*>(png.data()), png.size()});
  package.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_THAT(Describe(), ElementsAre("00000000-0000-4000-8000-000000000110 type 12 size 152 of 152 problems 0 at "
                                      "feature/cpl_272.xml in feature",
                                      testing::MatchesRegex(
                                          "00000000-0000-4000-8000-000000000101 type 13 size [0-9]+ of 0 problems 0 "
                                          "at feature/pkl.xml in feature"),
                                      "00000000-0000-4000-8000-000000000111 type 7 size 200 of 200 problems 0 at "
                                      "feature/sub/image.png in feature",
                                      "package feature map 00000000-0000-4000-8000-000000000100",
                                      "  list 00000000-0000-4000-8000-000000000101"));
  EXPECT_EQ(Only(SampleID(0x111)).Info.Digest, package.List.AssetList.back().Digest);
  EXPECT_EQ(Log.Text(), "");
}

TEST_F(AssetStoreTest, SupplementalPackageResolvesAgainstItsOriginalInAnotherFolder) {
  PackageMaker original = Package("disk1/deep/down/original", 0x100);
  original.AddComposition(0x110);
  original.Write();
  PackageMaker supplement = Package("disk2/supplement", 0x200);
  supplement.AddComposition(0x210);
  supplement.Write();
  ASSERT_EQ(Add("disk1"), RESULT_OK);
  ASSERT_EQ(Add("disk2"), RESULT_OK);
  AssetInfoList found;
  EXPECT_EQ(Store.GetInfoForAssetIDList({SampleID(0x210), SampleID(0x110)}, found, true), RESULT_OK);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found.front().RealFilename, At("disk2/supplement/cpl_528.xml"));
  EXPECT_EQ(found.back().RealFilename, At("disk1/deep/down/original/cpl_272.xml"));
  EXPECT_THAT(Store.Folders(), ElementsAre(At("disk1").string(), At("disk2").string()));
}

TEST_F(AssetStoreTest, PackageWithoutAssetMapServesByWhatItsFilesSay) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.Add(SampleID(0x111), "font.ttf", "true, a font");
  package.WriteList();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
  EXPECT_EQ(Only(SampleID(0x110)).Info.Digest, package.List.AssetList.front().Digest);
  EXPECT_EQ(Only(SampleID(0x111)).Info.RealFilename, At("p/font.ttf"));  // says nothing of itself: found by name
  EXPECT_THAT(Reasons(Store.Packages().at(0)), ElementsAre("The package has no asset map."));
}

TEST_F(AssetStoreTest, PackageWithoutPackingListServes) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.WriteMap();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
  EXPECT_FALSE(Only(SampleID(0x110)).HasListedSize);
  EXPECT_THAT(Reasons(Store.Packages().at(0)), ElementsAre("The package has no packing list."));
}

TEST_F(AssetStoreTest, SeveralPackingListsOfOneMapAllCount) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.WriteList("pkl1.xml");
  package.List.ID = SampleID(0x102);
  package.List.AssetList.clear();
  package.AddComposition(0x111);
  package.WriteList("pkl2.xml");
  package.WriteMap();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_THAT(Store.Packages().at(0).PackingLists, ElementsAre(SampleID(0x101), SampleID(0x102)));
  for (const ui32_t number : {0x110U, 0x111U}) {
    EXPECT_EQ(Only(SampleID(number)).Problems, 0U);
    EXPECT_TRUE(Only(SampleID(number)).HasListedSize);
  }
}

TEST_F(AssetStoreTest, FirstOfDisagreeingPackingListsCounts) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.WriteList("pkl1.xml");
  package.List.AssetList.front().Size = 7;
  package.WriteList("pkl2.xml");
  package.WriteMap();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
  EXPECT_THAT(Reasons(Store.Packages().at(0)),
              ElementsAre("pkl2.xml: Packing lists disagree on an asset; the first counts."));
}

TEST_F(AssetStoreTest, LooseFilesServe) {
  PutText(At("cpl.xml"), CompositionText(SampleID(1)));
  PutText(At("deep/down/show.xml"), ShowText(SampleID(2)));
  testsupport::TrackFileSpec spec;
  spec.AssetID = SampleID(3);
  ASSERT_TRUE(testsupport::MakeTrackFile(testsupport::TrackKind::Sound, At("deep/sound.mxf"), spec).Success());
  PutText(At("notes.txt"), "no asset");
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(1)).Info.FileType, FT_CPL);
  EXPECT_EQ(Only(SampleID(2)).Info.FileType, FT_SHOW);
  EXPECT_EQ(Only(SampleID(3)).Info.FileType, FT_QUIRE_PCM);
  EXPECT_EQ(Only(SampleID(3)).Package, At("deep").string());
  EXPECT_EQ(Store.Assets().size(), 3U);
  EXPECT_THAT(Store.Packages(), IsEmpty());
}

TEST_F(AssetStoreTest, NestedPackagesAreTwoAndTheOuterMayNameFilesOfTheInner) {
  PackageMaker inner = Package("outer/inner", 0x200);
  inner.AddComposition(0x210);
  inner.Write();
  PackageMaker outer = Package("outer", 0x100);
  outer.AddComposition(0x110);
  outer.Map.AssetList.push_back({SampleID(0x210), "", false, {{"inner/cpl_528.xml", 1, 0, false, 0}}});
  outer.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Store.Packages().size(), 2U);
  const auto places = Store.FindAsset(SampleID(0x210));
  ASSERT_EQ(places.size(), 2U);
  EXPECT_EQ(places[0].Package, At("outer/inner").string());
  EXPECT_EQ(places[0].Problems, 0U);
  EXPECT_EQ(places[1].Package, At("outer").string());
  EXPECT_EQ(places[1].Problems, ui32_t{AP_NOT_LISTED});
  EXPECT_EQ(places[1].Info.RealFilename, places[0].Info.RealFilename);
}

TEST_F(AssetStoreTest, AssetMapIsKnownWithoutExtensionAndInAnyCase) {
  for (const char* name : {"ASSETMAP", "assetmap.xml", "AssetMap.XML"}) {
    PackageMaker package = Package(std::string("p_") + name, 0x100);
    package.AddComposition(0x110);
    package.WriteMap(name);
  }
  PackageMaker other = Package("other", 0x100);
  other.AddComposition(0x110);
  other.WriteMap("map.xml");
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Store.Packages().size(), 3U);
}

TEST_F(AssetStoreTest, OfTwoAssetMapsTheOneCountsWhosePathsLeadToFiles) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.WriteMap("ASSETMAP.xml");
  package.Map.ID = SampleID(0x103);
  package.Map.AssetList.front().ChunkList.front().Path = "nowhere.xml";
  package.WriteMap("ASSETMAP");
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Store.Packages().at(0).AssetMapID, SampleID(0x100));
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
  EXPECT_THAT(Reasons(Store.Packages().at(0)), testing::Contains("ASSETMAP.xml: The package has several asset maps."));
}

TEST_F(AssetStoreTest, DocumentsThatCannotBeUnderstoodAreFindings) {
  PutText(At("p/ASSETMAP.xml"), "<AssetMap xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\"><Id>");
  PutText(At("p/pkl.xml"), "<PackingList xmlns=\"http://www.smpte-ra.org/schemas/429-8/2007/PKL\"/>");
  PutText(At("p/cpl.xml"), CompositionText(SampleID(0x110)));
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_THAT(Reasons(Store.Packages().at(0)), ElementsAre("ASSETMAP.xml: The asset map could not be understood.",
                                                           "pkl.xml: The packing list could not be understood."));
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
}

// ---- file systems

TEST_F(AssetStoreTest, AnyFileNameIsTakenAsItIs) {
  const std::string names[] = {"line\nbreak.xml", "\xff\xfe no UTF-8.xml", "G\xc3\xb6ttin \xe5\xa4\xa2.xml",
                               "a'b\"c;--.xml", "\x1b[31m.xml"};
  ui32_t number = 1;
  for (const std::string& name : names) PutText(At("lo\nose") / name, CompositionText(SampleID(number++)));
  PackageMaker package = Package("pack\nage \xff", 0x100);
  package.Add(SampleID(0x110), "G\xc3\xb6ttin 100%.xml", CompositionText(SampleID(0x110)));
  package.Add(SampleID(0x111), "a b.xml", CompositionText(SampleID(0x111)));
  package.Map.AssetList.back().ChunkList.front().Path = "file:///./a%20b.xml";
  package.Write();
  PutText(package.Folder / "bad\nlist.xml", "<PackingList xmlns=\"http://www.smpte-ra.org/schemas/429-8/2007/PKL\"/>");
  ASSERT_EQ(Add(), RESULT_OK);
  number = 1;
  for (const std::string& name : names)
    EXPECT_EQ(Only(SampleID(number++)).Info.RealFilename, (At("lo\nose") / name).string());
  EXPECT_EQ(Only(SampleID(0x110)).Problems, 0U);
  EXPECT_EQ(Only(SampleID(0x111)).Info.RealFilename, (package.Folder / "a b.xml").string());
  EXPECT_THAT(Reasons(Store.Packages().at(0)), ElementsAre("bad?list.xml: The packing list could not be understood."));
  EXPECT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(Describe(), DescribeAnew({At("").string()}));
}

TEST_F(AssetStoreTest, LinkedFoldersPipesAndLinksOutOfTheFolderAreLeftAlone) {
  PutText(At("outside/cpl.xml"), CompositionText(SampleID(1)));
  PutText(At("in/sub/cpl.xml"), CompositionText(SampleID(2)));
  fs::create_directory_symlink(At("outside"), At("in/linked"));
  fs::create_directory_symlink("..", At("in/sub/loop"));
  fs::create_symlink(At("outside/cpl.xml"), At("in/out.xml"));
  fs::create_symlink("nowhere", At("in/dangling.xml"));
  fs::create_symlink("sub/cpl.xml", At("in/within.xml"));
  ASSERT_EQ(mkfifo(At("in/pipe.xml").c_str(), 0600), 0);
  ASSERT_EQ(Add("in"), RESULT_OK);
  EXPECT_THAT(Store.FindAsset(SampleID(1)), IsEmpty());
  EXPECT_EQ(Store.FindAsset(SampleID(2)).size(), 2U);  // the file, and the link to it
}

TEST_F(AssetStoreTest, FolderThatIsNoneIsRefused) {
  EXPECT_EQ(Add("nowhere"), RESULT_NOT_FOUND);
  PutText(At("file"), "x");
  EXPECT_EQ(Add("file"), Ferro::RESULT_NOTAFILE);
  EXPECT_THAT(Store.Folders(), IsEmpty());
}

TEST_F(AssetStoreTest, OuterFolderTakesInnerOnesIn) {
  PutText(At("a/b/cpl.xml"), CompositionText(SampleID(1)));
  ASSERT_EQ(Add("a/b"), RESULT_OK);
  ASSERT_EQ(Add("a"), RESULT_OK);
  EXPECT_THAT(Store.Folders(), ElementsAre(At("a").string()));
  EXPECT_EQ(Store.FindAsset(SampleID(1)).size(), 1U);
  PutText(At("a/b/second.xml"), CompositionText(SampleID(2)));
  ASSERT_EQ(Add("a/b"), RESULT_OK);
  EXPECT_THAT(Store.Folders(), ElementsAre(At("a").string()));
  EXPECT_EQ(Store.FindAsset(SampleID(2)).size(), 1U);
  EXPECT_EQ(Add("a/b/../b/."), RESULT_OK);  // the same folder by another name
  EXPECT_THAT(Store.Folders(), ElementsAre(At("a").string()));
}

TEST_F(AssetStoreTest, ForgottenFolderTakesItsAssetsAlong) {
  PutText(At("a/cpl.xml"), CompositionText(SampleID(1)));
  PutText(At("ab/cpl.xml"), CompositionText(SampleID(2)));
  ASSERT_EQ(Add("a"), RESULT_OK);
  ASSERT_EQ(Add("ab"), RESULT_OK);
  EXPECT_EQ(Store.Forget(At("a")), RESULT_OK);
  EXPECT_EQ(Store.Forget(At("a")), RESULT_NOT_FOUND);
  EXPECT_THAT(Store.FindAsset(SampleID(1)), IsEmpty());
  EXPECT_EQ(Store.FindAsset(SampleID(2)).size(), 1U);
}

TEST_F(AssetStoreTest, NothingInAFolderIsChanged) {
  PackageMaker package = Package("p", 0x100);
  package.AddComposition(0x110);
  package.Write();
  const auto list = [&] {
    std::vector<std::pair<std::string, fs::file_time_type>> files;
    for (const auto& entry : fs::recursive_directory_iterator(Base.Folder()))
      files.emplace_back(entry.path(), entry.last_write_time());
    std::sort(files.begin(), files.end());
    return files;
  };
  const auto before = list();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Store.VerifyDigests({}), RESULT_OK);
  EXPECT_EQ(list(), before);
}

// ---- look-ups

TEST_F(AssetStoreTest, LookUpsAnswerWhatIsKnownAndSayWhatIsNot) {
  PutText(At("a.xml"), CompositionText(SampleID(1)));
  PutText(At("b.xml"), CompositionText(SampleID(2)));
  ASSERT_EQ(Add(), RESULT_OK);
  AssetInfoList found;
  EXPECT_EQ(Store.GetInfoForAssetIDList({SampleID(2), SampleID(7), UUID(), SampleID(1)}, found, true), RESULT_FALSE);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found.front().ID, SampleID(2));
  EXPECT_EQ(Store.GetInfoForAssetIDList({SampleID(1)}, found, true), RESULT_OK);
  EXPECT_EQ(found.size(), 3U);  // appended
  AssetInfo info;
  EXPECT_EQ(Store.GetInfoForAssetID(SampleID(7), info, true), RESULT_NOT_FOUND);
  UUIDList ids{SampleID(9)};
  EXPECT_EQ(Store.GetAssetIDList(ids), RESULT_OK);
  EXPECT_THAT(ids, ElementsAre(SampleID(9), SampleID(1), SampleID(2)));
}

TEST(AssetStore, IsNotInitialisedBeforeOpen) {
  AssetStore store;
  AssetInfo info;
  AssetInfoList infos;
  UUIDList ids;
  for (const Result_t& result :
       {store.AddFolder("/"), store.Refresh(), store.Forget("/"), store.VerifyDigests({}), store.GetAssetIDList(ids),
        store.RegisterAsset("x", SHA1(), info), store.GetInfoForAssetID(SampleID(1), info, true),
        store.GetInfoForAssetIDList(ids, infos, true)})
    EXPECT_EQ(result, Ferro::RESULT_INIT);
  EXPECT_THAT(store.Assets(), IsEmpty());
  EXPECT_THAT(store.FindAsset(SampleID(1)), IsEmpty());
  EXPECT_THAT(store.Packages(), IsEmpty());
  EXPECT_THAT(store.Folders(), IsEmpty());
}

// ---- files registered one by one

TEST_F(AssetStoreTest, RegisteredFileIsAnsweredWithItsDigest) {
  PutText(At("cpl.xml"), CompositionText(SampleID(1)));
  AssetInfo info;
  ASSERT_EQ(Store.RegisterAsset(At("cpl.xml"), SampleDigest(3), info), RESULT_OK);
  EXPECT_EQ(info.ID, SampleID(1));
  EXPECT_EQ(info.FileType, FT_CPL);
  EXPECT_EQ(info.FileSize, 152U);
  EXPECT_EQ(info.RealFilename, At("cpl.xml"));
  EXPECT_EQ(info.Digest, SampleDigest(3));
  AssetInfo found;
  ASSERT_EQ(Store.GetInfoForAssetID(SampleID(1), found, true), RESULT_OK);
  EXPECT_EQ(found.Digest, SampleDigest(3));
  EXPECT_THAT(Store.Folders(), IsEmpty());
  EXPECT_EQ(Store.RegisterAsset(At("cpl.xml"), SampleDigest(4), info), RESULT_OK);  // again: replaces
  EXPECT_EQ(Only(SampleID(1)).Info.Digest, SampleDigest(4));
}

TEST_F(AssetStoreTest, WhatCannotBeRegisteredIsSaid) {
  AssetInfo info;
  EXPECT_EQ(Store.RegisterAsset(At("nowhere"), SHA1(), info), RESULT_NOT_FOUND);
  PutText(At("notes.txt"), "no identifier");
  EXPECT_EQ(Store.RegisterAsset(At("notes.txt"), SHA1(), info), RESULT_CN_VALUE);
  EXPECT_FALSE(info.HasValue());
}

TEST_F(AssetStoreTest, RegisteredFileIsLookedAtAgainAndLivesBesideItsFolder) {
  PutText(At("d/cpl.xml"), CompositionText(SampleID(1)));
  AssetInfo info;
  ASSERT_EQ(Store.RegisterAsset(At("d/cpl.xml"), SampleDigest(3), info), RESULT_OK);
  ASSERT_EQ(Add("d"), RESULT_OK);
  EXPECT_EQ(Store.FindAsset(SampleID(1)).size(), 2U);
  ASSERT_EQ(Store.Forget(At("d")), RESULT_OK);
  EXPECT_EQ(Only(SampleID(1)).Problems, 0U);

  AlterFile(At("d/cpl.xml"), CompositionText(SampleID(2)));
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(1)).Problems, ui32_t{AP_WRONG_ID});
  fs::remove(At("d/cpl.xml"));
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(1)).Problems, ui32_t{AP_MISSING_FILE});
  PutText(At("d/cpl.xml"), CompositionText(SampleID(1)));
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(1)).Problems, 0U);
}

}  // namespace
}  // namespace CairnTest
