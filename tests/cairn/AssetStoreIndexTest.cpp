// SPDX-License-Identifier: BSD-3-Clause
#include "StoreFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <random>
#include <thread>

namespace CairnTest {
namespace {

namespace fs = std::filesystem;
using namespace Cairn;
using Ferro::RESULT_OK;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string AskSQLite(const fs::path& file, const char* sql) {
  sqlite3* handle = nullptr;
  std::string answer;
  const auto take = [](void* out, int, char** values, char**) {
    *static_cast<std::string*>(out) += values[0] != nullptr ? values[0] : "";
    return 0;
  };
  char* message = nullptr;
  if (sqlite3_open(file.c_str(), &handle) != SQLITE_OK ||
      sqlite3_exec(handle, sql, take, &answer, &message) != SQLITE_OK)
    answer = std::string("failed: ") + sqlite3_errmsg(handle);
  sqlite3_free(message);
  sqlite3_close(handle);
  return answer;
}

/// A store whose index lies in a file beside the folder of its assets.
class AssetStoreIndexTest : public testing::Test, public StoreFixture {
 protected:
  void SetUp() override {
    fs::create_directories(At("assets"));
    ASSERT_EQ(Store.Open(Index()), RESULT_OK);
  }

  [[nodiscard]] std::string Index() const { return At("index.db").string(); }
  [[nodiscard]] std::string Assets(const std::string& name = "") const {
    return At(name.empty() ? "assets" : "assets/" + name).string();
  }
  PackageMaker MakePackage(const std::string& name, ui32_t number) const {
    PackageMaker package(Assets(name), number);
    package.AddComposition(number + 0x10);
    package.AddComposition(number + 0x11);
    package.Write();
    return package;
  }
};

// ---- what the second start does

TEST_F(AssetStoreIndexTest, SecondStartOpensNoFileThatIsAsItWas) {
  MakePackage("p", 0x100);
  PutText(Assets("loose.xml"), CompositionText(SampleID(1)));
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  const auto before = Describe();
  for (const auto& entry : fs::recursive_directory_iterator(Assets()))
    if (entry.is_regular_file()) SpoilUnseen(entry.path());

  AssetStore second;
  ASSERT_EQ(second.Open(Index()), RESULT_OK);
  EXPECT_THAT(second.Folders(), ElementsAre(Assets()));
  EXPECT_EQ(CairnTest::Describe(second, Base.Folder()), before);  // before anything is looked at
  EXPECT_EQ(second.Refresh(), RESULT_OK);
  EXPECT_EQ(CairnTest::Describe(second, Base.Folder()), before);
  EXPECT_NE(DescribeAnew({Assets()}), before);  // whoever opens a file sees that it is spoilt
}

TEST_F(AssetStoreIndexTest, FilesThatChangedCameAndWentAreFound) {
  PutText(Assets("changed.xml"), CompositionText(SampleID(1)));
  PutText(Assets("gone.xml"), CompositionText(SampleID(2)));
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  AlterFile(Assets("changed.xml"), CompositionText(SampleID(3)));
  fs::remove(Assets("gone.xml"));
  PutText(Assets("new.xml"), CompositionText(SampleID(4)));
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  UUIDList ids;
  EXPECT_EQ(Store.GetAssetIDList(ids), RESULT_OK);
  EXPECT_THAT(ids, ElementsAre(SampleID(3), SampleID(4)));
}

TEST_F(AssetStoreIndexTest, FolderThatIsGoneKeepsItsAssetsAndTheyComeBack) {
  MakePackage("p", 0x100);
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  ASSERT_EQ(Store.VerifyDigests({}), RESULT_OK);
  const auto before = Describe();
  fs::rename(Assets(), At("elsewhere"));
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(Log.Text(), Assets() + ": its assets are missing: " + Ferro::RESULT_NOT_FOUND.Label() + "\n");
  EXPECT_EQ(Only(SampleID(0x110)).Problems, ui32_t{AP_MISSING_FILE});
  EXPECT_EQ(Only(SampleID(0x110)).Info.RealFilename, Assets("p/cpl_272.xml"));
  AssetInfo info;
  EXPECT_EQ(Store.GetInfoForAssetID(SampleID(0x110), info, true), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Store.VerifyDigests({SampleID(0x110)}), Ferro::RESULT_FALSE);

  fs::rename(At("elsewhere"), Assets());
  ASSERT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(Describe(), before);
  EXPECT_TRUE(Only(SampleID(0x110)).DigestVerified);  // still known
}

TEST_F(AssetStoreIndexTest, GoneFolderCanBeForgotten) {
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  fs::remove(Assets());
  EXPECT_EQ(Store.Forget(Assets()), RESULT_OK);
  EXPECT_THAT(Store.Folders(), IsEmpty());
}

// Whatever happens to a folder, looking for changes finds what a new store finds.
TEST_F(AssetStoreIndexTest, UpdatesEndWhereANewStoreBegins) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const auto pick = [&](ui32_t count) { return static_cast<ui32_t>(random() % count); };
  const char* const names[] = {"a", "b", "a/n", "b/n/m", "c"};
  const std::string folders[] = {"a", "b", "a/n", "b/n/m", "c", "loose", "a/loose"};
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  for (int round = 0; round < 120; ++round) {
    const ui32_t which = pick(5);
    const std::string folder = Assets(folders[pick(7)]);
    switch (pick(8)) {
      case 0:
        MakePackage(names[which], 0x100 * (which + 1));
        break;
      case 1:
        PutText(folder + "/loose" + std::to_string(pick(3)) + ".xml", CompositionText(SampleID(pick(5) + 0x900)));
        break;
      case 2:
        fs::remove_all(folder);
        break;
      case 3:
        fs::remove(folder + "/ASSETMAP.xml");
        break;
      case 4:
        fs::remove(folder + "/pkl.xml");
        break;
      case 5:
        fs::remove(Assets(names[which]) + '/' + PackageMaker::CompositionName(0x100 * (which + 1) + 0x10));
        break;
      case 6: {
        PackageMaker package(folder, 0x100 * (which + 1));
        package.Map.AssetList.push_back({SampleID(0x210), "", false, {{"n/cpl_528.xml", 1, 0, false, 0}}});
        package.WriteMap();
        break;
      }
      default:
        if (fs::exists(folder + "/pkl.xml")) AlterFile(folder + "/pkl.xml", "<PackingList/>");
        break;
    }
    if (pick(3) == 0) continue;  // several changes at once
    ASSERT_EQ(Store.Refresh(), RESULT_OK);
    ASSERT_EQ(Describe(), DescribeAnew({Assets()})) << "round " << round;
  }
}

// ---- what is no index

TEST_F(AssetStoreIndexTest, FileThatIsNoDatabaseIsRefusedAndLeftAsItWas) {
  const std::string text(5000, 'x');
  PutText(At("text"), text);
  EXPECT_EQ(Store.Open(At("text")), RESULT_CN_STORE);
  EXPECT_EQ(Log.Text(), "Asset index " + At("text").string() + ": file is not a database\n");
  EXPECT_EQ(Store.LastFailure().Kind, SF_NOT_A_DATABASE);
  EXPECT_EQ(fs::file_size(At("text")), text.size());
  EXPECT_EQ(Store.Refresh(), Ferro::RESULT_INIT);
}

TEST_F(AssetStoreIndexTest, DatabaseOfAnotherProgramIsRefusedAndLeftAsItWas) {
  ASSERT_EQ(AskSQLite(At("other.db"), "CREATE TABLE mine (x); PRAGMA user_version = 1"), "");
  EXPECT_EQ(Store.Open(At("other.db")), RESULT_CN_STORE);
  EXPECT_EQ(Log.Text(), "Asset index " + At("other.db").string() + ": it is no asset index\n");
  EXPECT_EQ(Store.LastFailure().Kind, SF_NOT_AN_INDEX);
  EXPECT_EQ(AskSQLite(At("other.db"), "SELECT name FROM sqlite_master; PRAGMA journal_mode"), "minedelete");
}

TEST_F(AssetStoreIndexTest, IndexOfAnotherVersionIsRefused) {
  ASSERT_EQ(Store.Open(), RESULT_OK);  // lets go of the file
  ASSERT_EQ(AskSQLite(Index(), "PRAGMA user_version = 1"), "");
  EXPECT_EQ(Store.Open(Index()), RESULT_CN_STORE);
  EXPECT_EQ(Log.Text(), "Asset index " + Index() + ": it is an asset index of another version\n");
  EXPECT_EQ(Store.LastFailure().Kind, SF_OTHER_VERSION);
}

TEST_F(AssetStoreIndexTest, IndexInAFolderThatIsNotThereIsRefused) {
  EXPECT_EQ(Store.Open(At("nowhere/index.db")), RESULT_CN_STORE);
  EXPECT_EQ(Log.Text(), "Asset index " + At("nowhere/index.db").string() + ": unable to open database file\n");
  EXPECT_EQ(Store.LastFailure().Kind, SF_CANNOT_OPEN);
}

TEST_F(AssetStoreIndexTest, TornIndexIsRefusedWithOneLineAndNoCrash) {
  MakePackage("p", 0x100);
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  ASSERT_EQ(Store.Open(), RESULT_OK);
  const auto size = fs::file_size(Index());
  for (const auto length : {size / 2, std::uintmax_t{4096}, std::uintmax_t{100}}) {
    fs::resize_file(Index(), length);
    Log.Clear();
    AssetStore torn;
    Result_t result = torn.Open(Index());
    if (result.Success()) result = torn.AddFolder(Assets());
    EXPECT_EQ(result, RESULT_CN_STORE) << length;
    EXPECT_THAT(torn.LastFailure().Kind, testing::AnyOf(SF_CORRUPT, SF_NOT_A_DATABASE)) << length;
    EXPECT_EQ(Log.Count(Ferro::LogLevel::Error), 1U) << Log.Text();
  }
}

TEST_F(AssetStoreIndexTest, FileLargerThanAnyIndexIsRefused) {
  ASSERT_EQ(Store.Open(), RESULT_OK);
  fs::resize_file(Index(), 1'600'000'000);
  EXPECT_EQ(Store.Open(Index()), RESULT_CN_STORE);
  EXPECT_EQ(Store.LastFailure().Kind, SF_TOO_LARGE);
  EXPECT_EQ(Log.Text(), "Asset index " + Index() + ": it is larger than 256 MiB\n");
}

TEST_F(AssetStoreIndexTest, TextOfManyMegabytesIsRefused) {
  MakePackage("p", 0x100);
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  ASSERT_EQ(Store.Open(), RESULT_OK);
  ASSERT_EQ(AskSQLite(Index(), "UPDATE packages SET packing_lists = hex(zeroblob(10000000))"), "");
  ASSERT_EQ(Store.Open(Index()), RESULT_OK);
  EXPECT_THAT(Store.Packages(), IsEmpty());
  EXPECT_EQ(Store.LastFailure().Kind, SF_TOO_LARGE);
}

TEST_F(AssetStoreIndexTest, ViewThatNeverEndsIsRefused) {
  ASSERT_EQ(Store.Open(), RESULT_OK);
  ASSERT_EQ(AskSQLite(Index(),
                      "DROP TABLE assets; CREATE VIEW assets AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                      "SELECT i + 1 FROM n) SELECT i AS id, '' AS path, '' AS root, '' AS folder, 1 AS "
                      "listed_size, NULL AS listed_digest, 0 AS problems FROM n"),
            "");
  ASSERT_EQ(Store.Open(Index()), RESULT_OK);
  EXPECT_THAT(Store.Assets(), IsEmpty());
  EXPECT_NE(Store.LastFailure().Kind, SF_NONE);
}

TEST_F(AssetStoreIndexTest, OpenAgainLetsGoOfTheIndexBefore) {
  PutText(Assets("cpl.xml"), CompositionText(SampleID(1)));
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  ASSERT_EQ(Store.Open(), RESULT_OK);
  EXPECT_THAT(Store.Assets(), IsEmpty());
  ASSERT_EQ(Store.Open(Index()), RESULT_OK);
  EXPECT_EQ(Store.Assets().size(), 1U);
}

// ---- several processes

/// Runs `work` in a child process, which ends with status 0 when it answers true; else it shows its log.
template <class Work>
pid_t InChild(Work work) {
  const pid_t child = fork();
  if (child != 0) return child;
  const testsupport::LogCapture log;
  const bool good = work();
  if (!good) std::fputs(log.Text().c_str(), stderr);
  _exit(good ? 0 : 1);
}

bool EndedWell(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(AssetStoreIndexTest, TwoProcessesCreateOneIndexAtOnce) {
  PutText(Assets("cpl.xml"), CompositionText(SampleID(1)));
  for (int round = 0; round < 20; ++round) {
    const std::string index = At("index" + std::to_string(round)).string();
    std::vector<pid_t> children;
    for (int i = 0; i < 3; ++i)
      children.push_back(InChild([&] {
        AssetStore store;
        return store.Open(index) == RESULT_OK && store.AddFolder(Assets()) == RESULT_OK && store.Assets().size() == 1;
      }));
    for (const pid_t child : children) EXPECT_TRUE(EndedWell(child));
  }
}

// Each process changes the files, and looks for changes; in the end nothing is lost that one of them saw.
TEST_F(AssetStoreIndexTest, TwoProcessesKeepOneIndexAtOnce) {
  ASSERT_EQ(Store.Open(), RESULT_OK);
  std::vector<pid_t> children;
  for (ui32_t i = 0; i < 2; ++i)
    children.push_back(InChild([&] {
      AssetStore store;
      bool good = store.Open(Index()) == RESULT_OK;
      for (ui32_t round = 0; round < 40 && good; ++round) {
        PutText(Assets("shared/" + std::to_string(i) + "_" + std::to_string(round) + ".xml"),
                CompositionText(SampleID(1000 * i + round)));
        if (round % 10 == 0)
          MakePackage("p" + std::to_string(i) + std::to_string(round), 0x10000 * (i + 1) + 0x100 * round);
        good = store.AddFolder(Assets()) == RESULT_OK;
        // The other process may be just writing a package, which is then not sound yet.
        good = good && store.VerifyDigests({}).Success();
        good = good && store.FindAsset(SampleID(1000 * i + round)).size() == 1;
      }
      return good;
    }));
  for (const pid_t child : children) EXPECT_TRUE(EndedWell(child));
  ASSERT_EQ(Store.Open(Index()), RESULT_OK);
  EXPECT_EQ(Store.Assets().size(), 80U + 8U * 3U);
  EXPECT_EQ(Describe(), DescribeAnew({Assets()}));
}

TEST_F(AssetStoreIndexTest, ForgottenFolderStaysForgottenInAnotherProcess) {
  PutText(Assets("cpl.xml"), CompositionText(SampleID(1)));
  ASSERT_EQ(Store.AddFolder(Assets()), RESULT_OK);
  EXPECT_TRUE(EndedWell(InChild([&] {
    AssetStore store;
    return store.Open(Index()) == RESULT_OK && store.Forget(Assets()) == RESULT_OK;
  })));
  EXPECT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_THAT(Store.Folders(), IsEmpty());
  EXPECT_THAT(Store.Assets(), IsEmpty());
}

TEST_F(AssetStoreIndexTest, ProcessKilledInTheMiddleLeavesAUsableIndex) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  for (ui32_t number = 0; number < 20; ++number) MakePackage("a/p" + std::to_string(number), 0x100 * (number + 1));
  for (ui32_t number = 0; number < 20; ++number)
    PutText(Assets("b/f" + std::to_string(number) + ".xml"), CompositionText(SampleID(0x9000 + number)));
  const auto expected = DescribeAnew({Assets("a"), Assets("b")});
  ASSERT_EQ(Store.Open(), RESULT_OK);
  int unfinished = 0;
  for (int round = 0; round < 40; ++round) {
    const pid_t child = InChild([&] {
      AssetStore store;
      if (store.Open(Index()).Failure()) return false;
      for (;;) {
        for (const char* folder : {"a", "b"}) static_cast<void>(store.AddFolder(Assets(folder)));
        static_cast<void>(store.VerifyDigests({}));
        for (const char* folder : {"b", "a"}) static_cast<void>(store.Forget(Assets(folder)));
      }
    });
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 40'000));
    ASSERT_EQ(kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself in round " << round;

    ASSERT_EQ(AskSQLite(Index(), "PRAGMA integrity_check"), "ok");
    AssetStore store;
    ASSERT_EQ(store.Open(Index()), RESULT_OK) << Log.Text();
    const size_t present = store.Folders().size();
    const size_t assets = store.Assets().size();
    EXPECT_THAT(assets, testing::AnyOf(0U, 20U, 60U, 80U));  // a folder's assets are there all or none
    if (present == 1 || (present == 2 && assets == 80)) ++unfinished;
    ASSERT_EQ(store.AddFolder(Assets("a")), RESULT_OK);
    ASSERT_EQ(store.AddFolder(Assets("b")), RESULT_OK);
    ASSERT_EQ(CairnTest::Describe(store, Base.Folder()), expected) << "round " << round;
  }
  EXPECT_GT(unfinished, 0);  // some were indeed killed with work under way
}

}  // namespace
}  // namespace CairnTest
