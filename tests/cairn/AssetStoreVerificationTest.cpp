// SPDX-License-Identifier: BSD-3-Clause
#include "StoreFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include <atomic>

namespace CairnTest {
namespace {

namespace fs = std::filesystem;
using namespace Cairn;
using Ferro::RESULT_CANCELLED;
using Ferro::RESULT_FALSE;
using Ferro::RESULT_OK;

constexpr size_t FileSize = 100'000;
constexpr ui32_t FileCount = 20;

/// A package of 20 files of 100,000 bytes each, all sound.
ino_t s_BadFile = 0;  // that has a sector which cannot be read

}  // namespace
}  // namespace CairnTest

// Stands before the system's for the libraries too.
extern "C" __attribute__((visibility("default"))) ssize_t pread(int file, void* buffer, size_t size, off_t position) {
  struct stat status = {};
  if (CairnTest::s_BadFile == 0 || fstat(file, &status) != 0 || status.st_ino != CairnTest::s_BadFile)
    return syscall(SYS_pread64, file, buffer, size, position);
  errno = EIO;
  return -1;
}

namespace CairnTest {
namespace {

class AssetStoreVerificationTest : public testing::Test, public StoreFixture {
 protected:
  void SetUp() override {
    PackageMaker package(At("p"), 0x100);
    for (ui32_t number = 0; number < FileCount; ++number)
      package.Add(SampleID(0x110 + number), Name(number), std::string(FileSize, static_cast<char>('a' + number)));
    package.Write();
    ASSERT_EQ(Store.Open(At("index.db")), RESULT_OK);
    ASSERT_EQ(Add("p"), RESULT_OK);
  }

  static std::string Name(ui32_t number) { return std::to_string(number) + ".bin"; }
  [[nodiscard]] size_t CountVerified() const {
    size_t count = 0;
    for (const AssetRecord& asset : Store.Assets()) count += asset.DigestVerified ? 1 : 0;
    return count;
  }
  /// The bytes that a verification reads.
  ui64_t BytesRead(const UUIDList& ids = {}) {
    ui64_t bytes = 0;
    static_cast<void>(Store.VerifyDigests(ids, 2, [&](const VerifyProgress& progress) {
      bytes = progress.BytesDone;
      return true;
    }));
    return bytes;
  }
};

TEST_F(AssetStoreVerificationTest, SoundFilesAreVerifiedByAnyNumberOfThreads) {
  for (const ui32_t threads : {0U, 1U, 3U, 1'000'000U}) {
    AssetStore store;
    ASSERT_EQ(store.Open(), RESULT_OK);
    ASSERT_EQ(store.AddFolder(At("p")), RESULT_OK);
    EXPECT_EQ(store.VerifyDigests({}, threads), RESULT_OK);
    for (const AssetRecord& asset : store.Assets()) {
      EXPECT_EQ(asset.DigestVerified, asset.Info.FileType != FT_PKL);  // which nothing lists
      EXPECT_EQ(asset.Problems, 0U);
    }
  }
}

TEST_F(AssetStoreVerificationTest, ProgressCountsBytesFilesAndRate) {
  std::vector<VerifyProgress> steps;
  std::atomic<int> inside = 0;
  const auto take = [&](const VerifyProgress& progress) {
    EXPECT_EQ(++inside, 1);  // one at a time
    steps.push_back(progress);
    --inside;
    return true;
  };
  EXPECT_EQ(Store.VerifyDigests({}, 4, take), RESULT_OK);
  ASSERT_FALSE(steps.empty());
  for (size_t i = 1; i < steps.size(); ++i) {
    EXPECT_GE(steps[i].BytesDone, steps[i - 1].BytesDone);
    EXPECT_GE(steps[i].FilesDone, steps[i - 1].FilesDone);
  }
  EXPECT_EQ(steps.back().BytesDone, FileCount * FileSize);
  EXPECT_EQ(steps.back().BytesTotal, FileCount * FileSize);
  EXPECT_EQ(steps.back().FilesDone, FileCount);
  EXPECT_EQ(steps.back().FilesTotal, FileCount);
  EXPECT_GT(steps.back().BytesPerSecond, 0.0);
}

TEST_F(AssetStoreVerificationTest, VerifiedFilesAreNotReadAgainEvenByTheNextStart) {
  EXPECT_EQ(BytesRead(), FileCount * FileSize);
  EXPECT_EQ(BytesRead(), 0U);
  ASSERT_EQ(Store.Open(At("index.db")), RESULT_OK);
  EXPECT_EQ(CountVerified(), FileCount);
  EXPECT_EQ(BytesRead(), 0U);
  AlterFile(At("p") / Name(4), std::string(FileSize, 'e'));  // the same bytes, another time
  EXPECT_EQ(BytesRead(), FileSize);
  EXPECT_EQ(CountVerified(), FileCount);
}

TEST_F(AssetStoreVerificationTest, FileWithABadSectorIsToldAndKeptFromTheEngine) {
  struct stat status = {};
  ASSERT_EQ(stat((At("p") / Name(4)).c_str(), &status), 0);
  s_BadFile = status.st_ino;
  EXPECT_EQ(Store.VerifyDigests({}), RESULT_FALSE);
  EXPECT_EQ(CountVerified(), FileCount - 1);
  EXPECT_EQ(Only(SampleID(0x114)).Problems, ui32_t{AP_READ_FAILED});
  EXPECT_THAT(Only(SampleID(0x114)).Reasons(),
              testing::ElementsAre("The file could not be read to its end: File read error."));
  EXPECT_THAT(Log.Errors(), testing::ElementsAre((At("p") / Name(4)).string() + ": File read error.\n"));
  AssetInfo info;
  EXPECT_EQ(Store.GetInfoForAssetID(SampleID(0x114), info, true), Ferro::RESULT_NOT_FOUND);

  s_BadFile = 0;
  EXPECT_EQ(Store.VerifyDigests({}), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x114)).Problems, 0U);
}

TEST_F(AssetStoreVerificationTest, ReadFailureIsForgottenWithTheFileThatHadIt) {
  struct stat status = {};
  ASSERT_EQ(stat((At("p") / Name(4)).c_str(), &status), 0);
  s_BadFile = status.st_ino;
  EXPECT_EQ(Store.VerifyDigests({SampleID(0x114)}), RESULT_FALSE);
  s_BadFile = 0;
  AlterFile(At("p") / Name(4), std::string(FileSize, 'e'));
  EXPECT_EQ(Store.Refresh(), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x114)).Problems, 0U);
}

TEST_F(AssetStoreVerificationTest, AlteredFileIsFoundAndKeptFromTheEngine) {
  AlterFile(At("p") / Name(4), std::string(FileSize, '!'));
  EXPECT_EQ(Store.VerifyDigests({}), RESULT_FALSE);
  EXPECT_EQ(CountVerified(), FileCount - 1);
  EXPECT_EQ(Only(SampleID(0x114)).Problems, ui32_t{AP_DIGEST_MISMATCH});
  EXPECT_THAT(Only(SampleID(0x114)).Reasons(),
              testing::ElementsAre("The file was altered: its digest is not the one that the packing list gives."));
  AssetInfo info;
  EXPECT_EQ(Store.GetInfoForAssetID(SampleID(0x114), info, true), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(BytesRead(), 0U);  // known to be altered
  EXPECT_EQ(Store.VerifyDigests({}), RESULT_FALSE);

  AlterFile(At("p") / Name(4), std::string(FileSize, 'e'));
  EXPECT_EQ(Store.VerifyDigests({}), RESULT_OK);
  EXPECT_EQ(Only(SampleID(0x114)).Problems, 0U);
}

TEST_F(AssetStoreVerificationTest, FileAlteredAfterVerificationIsVerifiedNoMore) {
  ASSERT_EQ(Store.VerifyDigests({}), RESULT_OK);
  AlterFile(At("p") / Name(4), std::string(FileSize, '!'));
  EXPECT_EQ(Store.VerifyDigests({SampleID(0x115)}), RESULT_OK);
  EXPECT_FALSE(Only(SampleID(0x114)).DigestVerified);
  EXPECT_EQ(Store.VerifyDigests({SampleID(0x114)}), RESULT_FALSE);
}

TEST_F(AssetStoreVerificationTest, OnlyTheAssetsAskedForAreRead) {
  EXPECT_EQ(BytesRead({SampleID(0x111), SampleID(0x112), SampleID(0x111)}), 2 * FileSize);
  EXPECT_EQ(CountVerified(), 2U);
  EXPECT_EQ(Store.VerifyDigests({SampleID(0x111)}), RESULT_OK);
  EXPECT_EQ(Store.VerifyDigests({SampleID(0x111), SampleID(0x999)}), RESULT_FALSE);  // one is not known
}

TEST_F(AssetStoreVerificationTest, MissingFileIsNotVerified) {
  fs::remove(At("p") / Name(4));
  EXPECT_EQ(Store.VerifyDigests({}), RESULT_FALSE);
  EXPECT_EQ(CountVerified(), FileCount - 1);
}

TEST_F(AssetStoreVerificationTest, AssetsWithoutListedDigestArePassedOver) {
  PutText(At("q/cpl.xml"), CompositionText(SampleID(1)));
  ASSERT_EQ(Add("q"), RESULT_OK);
  EXPECT_EQ(Store.VerifyDigests({SampleID(1)}), RESULT_OK);
  EXPECT_FALSE(Only(SampleID(1)).DigestVerified);
}

TEST_F(AssetStoreVerificationTest, FileThatSeveralPackagesListIsReadOnce) {
  const AssetRecord asset = Only(SampleID(0x111));
  AssetInfo info;
  PutText(At("cpl.xml"), CompositionText(SampleID(1)));
  PackageMaker outer(Base.Folder(), 0x200);
  outer.Add(SampleID(0x111), "p/" + Name(1), std::string(FileSize, 'b'));
  outer.Write();
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(Store.FindAsset(SampleID(0x111)).size(), 2U);
  EXPECT_EQ(BytesRead(), FileCount * FileSize);
  for (const AssetRecord& place : Store.FindAsset(SampleID(0x111))) EXPECT_TRUE(place.DigestVerified);
}

TEST_F(AssetStoreVerificationTest, CancelledVerificationKeepsWhatItFoundAndGoesOnThere) {
  ui32_t calls = 0;
  const auto cancel = [&](const VerifyProgress& progress) {
    ++calls;
    return progress.FilesDone < 3;
  };
  EXPECT_EQ(Store.VerifyDigests({}, 1, cancel, 0), RESULT_CANCELLED);
  EXPECT_GT(calls, 1U);
  const size_t kept = CountVerified();
  EXPECT_GE(kept, 3U);
  EXPECT_LT(kept, FileCount);
  EXPECT_EQ(BytesRead(), (FileCount - kept) * FileSize);
  EXPECT_EQ(CountVerified(), FileCount);
}

TEST_F(AssetStoreVerificationTest, CancelledAtOnceReadsOnePieceEach) {
  EXPECT_EQ(Store.VerifyDigests({}, 2, [](const VerifyProgress&) { return false; }), RESULT_CANCELLED);
  EXPECT_LE(CountVerified(), 2U);
}

TEST_F(AssetStoreVerificationTest, RegisteredFileIsVerifiedAgainstTheDigestGiven) {
  AssetInfo info;
  PutText(At("cpl.xml"), CompositionText(SampleID(1)));
  ASSERT_EQ(Store.RegisterAsset(At("cpl.xml"), SampleDigest(1), info), RESULT_OK);
  EXPECT_EQ(Store.VerifyDigests({SampleID(1)}), RESULT_FALSE);
  EXPECT_EQ(Only(SampleID(1)).Problems, ui32_t{AP_DIGEST_MISMATCH});
}

TEST_F(AssetStoreVerificationTest, VerifiedStateLastsWhenAnOuterFolderTakesThisOneIn) {
  ASSERT_EQ(Store.VerifyDigests({}), RESULT_OK);
  ASSERT_EQ(Add(), RESULT_OK);
  EXPECT_EQ(CountVerified(), FileCount);
  EXPECT_EQ(BytesRead(), 0U);
}

}  // namespace
}  // namespace CairnTest
