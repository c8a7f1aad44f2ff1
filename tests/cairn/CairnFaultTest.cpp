// SPDX-License-Identifier: BSD-3-Clause
// Memory and threads that the system refuses. A program of its own, because it takes the place of the system's functions.
#include "../support/ThreadFault.h"
#include "HostileDocuments.h"
#include "StoreFixture.h"

#include <Cairn/AssetMap.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

// A parser whose construction fails for want of memory leaves what Xerces-C had allocated for it.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:xercesc_3_2::MemoryManagerImpl::allocate\n";
}

namespace CairnTest {
namespace {

using namespace Cairn;
using testsupport::NoMemory;

enum ChildEnd { WasEnough = 0, WasTooLittle = 1, IsWrong = 2 };

// Reads the process's first document with memory for that many allocations, then another with all memory there is.
ChildEnd ReadFirstDocument(unsigned pieces) {
  const testsupport::LogCapture log;
  const std::string text = VolumeIndexText("<Index>3</Index>");
  VolumeIndex volume;
  Result_t result = Ferro::RESULT_FAIL;
  {
    const NoMemory out(pieces);
    result = volume.DecodeXML(text);
  }
  const bool was_enough = !NoMemory::WasMissed();
  VolumeIndex later;
  const Result_t after = later.DecodeXML(text);
  if (result.Success() != (volume.Index == 3) || after.Success() != (later.Index == 3)) return IsWrong;
  if (was_enough && (result.Failure() || after.Failure())) return IsWrong;
  return was_enough ? WasEnough : WasTooLittle;
}

// The libraries below are initialised by the first document: each try is a process of its own.
TEST(XMLLibrariesFault, MemoryThatRunsOutWhileTheyAreInitialisedIsAResult) {
  unsigned tries = 0;
  for (unsigned pieces = 0;; pieces += 1 + pieces / 40, ++tries) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) _exit(ReadFirstDocument(pieces));
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status) << " with memory for " << pieces;
    ASSERT_LT(WEXITSTATUS(status), IsWrong) << "with memory for " << pieces;
    if (WEXITSTATUS(status) == WasEnough) break;
  }
  EXPECT_GT(tries, 20U);
}

class StoreFaultTest : public testing::Test, protected StoreFixture {};

TEST_F(StoreFaultTest, DigestsAreComputedWithoutFurtherThreads) {
  PackageMaker package(At("package"), 0x100);
  for (const ui32_t number : {0x110U, 0x111U, 0x112U}) package.AddComposition(number);
  package.Write();
  ASSERT_EQ(Store.AddFolder(At("package")), Ferro::RESULT_OK);
  const testsupport::NoThreads none;
  EXPECT_EQ(Store.VerifyDigests({}, 3), Ferro::RESULT_OK);
  EXPECT_THAT(Log.Text(), testing::HasSubstr("Digests are computed in 1 threads: "));
}

// A folder is added with memory for more and more allocations, and in the end with enough.
TEST_F(StoreFaultTest, MemoryThatRunsOutInAStoreIsAResult) {
  PackageMaker package(At("package"), 0x100);
  package.AddComposition(0x110);
  package.Write();
  const std::string folder = At("package");
  const UUIDList none;
  ASSERT_EQ(Store.AddFolder(folder), Ferro::RESULT_OK);  // the libraries below are initialised now
  unsigned pieces = 0;
  for (bool was_enough = false; !was_enough; ++pieces) {
    AssetStore store;
    ASSERT_EQ(store.Open(), Ferro::RESULT_OK);
    const auto work = [&] {
      AssetInfo info;
      Result_t result = store.AddFolder(folder);
      if (result.Success()) result = store.VerifyDigests(none, 1);
      return result.Success() ? store.GetInfoForAssetID(SampleID(0x110), info, true) : result;
    };
    Result_t result = Ferro::RESULT_FAIL;
    {
      const NoMemory out(pieces);
      ASSERT_NO_THROW(result = work());
    }
    was_enough = !NoMemory::WasMissed();
    ASSERT_TRUE(!was_enough || result.Success()) << result.Label();
    ASSERT_EQ(store.AddFolder(folder), Ferro::RESULT_OK);
  }
  EXPECT_GT(pieces, 100U);
}

}  // namespace
}  // namespace CairnTest
