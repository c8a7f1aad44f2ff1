// SPDX-License-Identifier: BSD-3-Clause
// Scans that take long, files that are forgotten, and an index that another process holds.
#include "StoreFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

namespace CairnTest {
namespace {

using namespace Cairn;
using Ferro::RESULT_CANCELLED;
using Ferro::RESULT_OK;
using testing::ElementsAre;
using testing::IsEmpty;

class AssetStoreScanTest : public testing::Test, public StoreFixture {
 protected:
  void SetUp() override {
    for (ui32_t number = 1; number <= 3; ++number)
      PutText(At("a/" + std::to_string(number) + ".xml"), CompositionText(SampleID(number)));
  }

  [[nodiscard]] UUIDList IDs() const {
    UUIDList ids;
    EXPECT_EQ(Store.GetAssetIDList(ids), RESULT_OK);
    return ids;
  }
};

TEST_F(AssetStoreScanTest, ProgressIsAskedBeforeEachFile) {
  std::vector<ui32_t> done;
  const auto progress = [&](const ScanProgress& now) {
    EXPECT_EQ(now.FilesTotal, 3U);
    done.push_back(now.FilesDone);
    return true;
  };
  EXPECT_EQ(Store.AddFolder(At("a"), progress), RESULT_OK);
  EXPECT_THAT(done, ElementsAre(0U, 1U, 2U));
  EXPECT_EQ(Store.Refresh(progress), RESULT_OK);
  EXPECT_THAT(done, ElementsAre(0U, 1U, 2U, 0U, 1U, 2U));
}

TEST_F(AssetStoreScanTest, CancelledAddingLeavesTheIndexAsItWas) {
  EXPECT_EQ(Store.AddFolder(At("a"), [](const ScanProgress& now) { return now.FilesDone < 2; }), RESULT_CANCELLED);
  EXPECT_THAT(Store.Folders(), IsEmpty());
  EXPECT_THAT(IDs(), IsEmpty());
}

TEST_F(AssetStoreScanTest, CancelledRefreshLeavesTheFolderAsItWas) {
  ASSERT_EQ(Add("a"), RESULT_OK);
  PutText(At("a/4.xml"), CompositionText(SampleID(4)));
  EXPECT_EQ(Store.Refresh([](const ScanProgress&) { return false; }), RESULT_CANCELLED);
  EXPECT_EQ(IDs().size(), 3U);
  EXPECT_EQ(Only(SampleID(1)).Problems, 0U);  // the folder is not taken for one that is gone
  EXPECT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(IDs().size(), 4U);
}

TEST_F(AssetStoreScanTest, WhatCannotBeOpenedIsToldUntilItCan) {
  EXPECT_THAT(Store.Unreadable(), IsEmpty());
  std::filesystem::create_symlink("loop", At("a/loop"));
  std::filesystem::create_symlink("nowhere", At("a/gone"));
  std::filesystem::create_directory(At("a/lost+found"));
  const auto entries = [&] {
    std::vector<std::string> lines;
    for (const UnreadableEntry& entry : Store.Unreadable())
      lines.push_back(entry.Path + ": " + entry.Reason + (entry.Kind == UK_LINK ? " (link)" : ""));
    return lines;
  };
  ASSERT_EQ(Add("a"), RESULT_OK);
  const std::vector<std::string> both{At("a/gone").string() + ": No such file or directory (link)",
                                      At("a/loop").string() + ": Too many levels of symbolic links (link)"};
  EXPECT_EQ(entries(), both);
  EXPECT_EQ(IDs().size(), 3U);  // the others serve
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(entries(), both);
  std::filesystem::remove(At("a/loop"));
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(entries(), std::vector<std::string>{both[0]});
  ASSERT_EQ(Store.Forget(At("a")), RESULT_OK);
  EXPECT_THAT(Store.Unreadable(), IsEmpty());
}

// As any user but root, whom every file is open to.
TEST_F(AssetStoreScanTest, FileAndFolderWithoutPermissionSaySo) {
  PackageMaker package(At("package"), 10);
  package.AddComposition(20);
  package.Write();
  std::filesystem::create_directories(At("package/inner/lost+found"));
  std::filesystem::permissions(Base.Folder(), std::filesystem::perms(0755));
  const std::string composition = At("package/cpl_20.xml").string();
  for (const std::string& path : {composition, At("package/inner").string()})
    std::filesystem::permissions(path, std::filesystem::perms::none);
  const uid_t user = geteuid();
  ASSERT_EQ(user == 0 ? seteuid(65534) : 0, 0);
  const Result_t added = Add("package");
  ASSERT_EQ(user == 0 ? seteuid(user) : 0, 0);
  std::filesystem::permissions(At("package/inner"), std::filesystem::perms(0755));

  ASSERT_EQ(added, RESULT_OK);
  ASSERT_EQ(Store.Unreadable().size(), 2U);
  EXPECT_EQ(Store.Unreadable()[0].Path, composition);
  EXPECT_EQ(Store.Unreadable()[0].Reason, "Permission denied");
  EXPECT_EQ(Store.Unreadable()[0].Kind, UK_FILE);
  EXPECT_EQ(Store.Unreadable()[1].Path, At("package/inner").string());
  EXPECT_EQ(Store.Unreadable()[1].Kind, UK_FOLDER);
  EXPECT_THAT(Only(SampleID(20)).Reasons(), ElementsAre("The file cannot be opened: Permission denied."));
}

// Permission comes and goes without a change of size or time.
TEST_F(AssetStoreScanTest, PermissionThatWentAndCameIsSeen) {
  PackageMaker package(At("package"), 10);
  package.AddComposition(20);
  package.Write();
  std::filesystem::permissions(Base.Folder(), std::filesystem::perms(0755));
  ASSERT_EQ(Add("package"), RESULT_OK);
  const std::vector<std::string> before = Describe();
  const std::string composition = At("package/cpl_20.xml").string();
  const uid_t user = geteuid();
  for (const bool may_read : {false, false, true}) {
    std::filesystem::permissions(composition, std::filesystem::perms(may_read ? 0644 : 0));
    ASSERT_EQ(user == 0 ? seteuid(65534) : 0, 0);
    const Result_t added = Add("package");
    ASSERT_EQ(user == 0 ? seteuid(user) : 0, 0);
    ASSERT_EQ(added, RESULT_OK);
    if (may_read)
      EXPECT_EQ(Describe(), before);
    else
      EXPECT_THAT(Only(SampleID(20)).Reasons(), ElementsAre("The file cannot be opened: Permission denied."));
    EXPECT_EQ(Store.Unreadable().empty(), may_read);
  }
}

// What stands beside packages: key messages, what other systems leave, other makers' documents.
TEST_F(AssetStoreScanTest, StrayDocumentsAreNoAssets) {
  PackageMaker package(At("package"), 10);
  package.AddComposition(20);
  package.Write();
  const std::string id = "<Id>urn:uuid:00000000-0000-4000-8000-0000000000ab</Id>";
  PutText(At("package/kdm.xml"),
          "<DCinemaSecurityMessage xmlns=\"http://www.smpte-ra.org/schemas/430-3/2006/ETM\"><AuthenticatedPublic>"
          "<MessageId>urn:uuid:00000000-0000-4000-8000-0000000000ab</MessageId><RequiredExtensions>CompositionPlaylist"
          "</RequiredExtensions></AuthenticatedPublic></DCinemaSecurityMessage>");
  PutText(At("package/._cpl_20.xml"), std::string_view("\0\x05\x16\x07\0\x02\0\0Mac OS X        ", 24));
  PutText(At("package/vendor.xml"),
          "<CompositionPlaylist xmlns=\"http://vendor.example/cpl\">" + id + "<PackingList/></CompositionPlaylist>");
  PutText(At("package/ASSETMAP"), "<AssetMap xmlns=\"http://vendor.example/map\">" + id + "</AssetMap>");
  PutText(At("package/list.xml"), "<PackingList>" + id + "</PackingList>");
  PutText(At("package/note.xml"), "<!-- <CompositionPlaylist/> --><note>" + id + "</note>");
  ASSERT_EQ(Add("package"), RESULT_OK);
  std::vector<std::string> found;
  for (const AssetRecord& record : Store.Assets())
    found.push_back(std::filesystem::path(record.Info.RealFilename).filename());
  EXPECT_THAT(found, testing::UnorderedElementsAre("cpl_20.xml", "pkl.xml"));
  ASSERT_EQ(Store.Packages().size(), 1U);
  EXPECT_THAT(Store.Packages().front().Findings, IsEmpty());
  AssetInfo info;
  EXPECT_EQ(Store.RegisterAsset(At("package/vendor.xml"), SHA1(), info), RESULT_CN_VALUE);
}

TEST_F(AssetStoreScanTest, RegisteredFileIsForgottenAndAFoldersFileStays) {
  AssetInfo info;
  ASSERT_EQ(Add("a"), RESULT_OK);
  PutText(At("loose.xml"), CompositionText(SampleID(9)));
  ASSERT_EQ(Store.RegisterAsset(At("loose.xml"), SHA1(), info), RESULT_OK);
  EXPECT_EQ(Store.ForgetAsset(SampleID(9)), RESULT_OK);
  EXPECT_THAT(Store.FindAsset(SampleID(9)), IsEmpty());
  EXPECT_EQ(Store.ForgetAsset(SampleID(9)), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Store.ForgetAsset(SampleID(1)), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(IDs().size(), 3U);
}

TEST_F(AssetStoreScanTest, ForgettingBeforeOpenIsRefused) {
  AssetStore store;
  EXPECT_EQ(store.ForgetAsset(SampleID(1)), Ferro::RESULT_INIT);
}

TEST_F(AssetStoreScanTest, LockedIndexIsRefusedAfterTheBusyTimeout) {
  ASSERT_EQ(Store.Open(At("index.db"), 0), RESULT_OK);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(At("index.db").c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(Add("a"), RESULT_CN_STORE);
  EXPECT_EQ(Log.Text(), "Asset index " + At("index.db").string() + ": database is locked\n");
  EXPECT_EQ(Store.LastFailure().Kind, SF_LOCKED);
  EXPECT_EQ(Store.LastFailure().File, At("index.db").string());
  EXPECT_EQ(Store.LastFailure().Reason, "database is locked");
  sqlite3_close(other);
  EXPECT_EQ(Add("a"), RESULT_OK);
  EXPECT_EQ(Store.LastFailure().Kind, SF_LOCKED);  // until it is cleared
  Store.ClearFailure();
  EXPECT_EQ(Store.LastFailure().Kind, SF_NONE);
}

}  // namespace
}  // namespace CairnTest
