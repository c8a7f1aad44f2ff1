// SPDX-License-Identifier: BSD-3-Clause
#include "StoreFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace CairnTest {
namespace {

using namespace Cairn;
using Ferro::RESULT_OK;

constexpr ui32_t AssetCount = 60;

/// A package, with an index in memory and in a file.
class AssetStoreThreadsTest : public testing::TestWithParam<bool>, public StoreFixture {
 protected:
  void SetUp() override {
    PackageMaker package(At("p"), 0x100);
    for (ui32_t number = 0; number < AssetCount; ++number) package.AddComposition(0x1000 + number);
    package.Write();
    ASSERT_EQ(Store.Open(GetParam() ? At("index.db").string() : ""), RESULT_OK);
    ASSERT_EQ(Add("p"), RESULT_OK);
  }
};

// What is in the store all the time is answered all the time, whatever one thread does to the rest.
TEST_P(AssetStoreThreadsTest, LookUpsGoOnWhileOneThreadChangesTheStore) {
  std::atomic<bool> ends = false;
  std::atomic<ui32_t> answers = 0;
  std::atomic<ui32_t> failures = 0;
  const auto look_up = [&](ui32_t first) {
    const auto check = [&](bool good) { ++(good ? answers : failures); };
    for (ui32_t number = first; !ends; number = (number + 1) % AssetCount) {
      const UUID id = SampleID(0x1000 + number);
      AssetInfo info;
      AssetInfoList infos;
      UUIDList ids;
      check(Store.GetInfoForAssetID(id, info, true) == RESULT_OK && info.ID == id);
      check(Store.GetInfoForAssetIDList({id, SampleID(0x1000)}, infos, true) == RESULT_OK && infos.size() == 2);
      check(Store.GetAssetIDList(ids) == RESULT_OK && ids.size() >= AssetCount);
      check(Store.FindAsset(id).size() == 1);
      check(Store.Assets().size() > AssetCount);
      check(!Store.Packages().empty());
      check(!Store.Folders().empty());
    }
  };
  {
    std::vector<std::jthread> threads;
    for (ui32_t i = 0; i < 3; ++i) threads.emplace_back(look_up, i * 20);
    for (ui32_t round = 0; round < 15; ++round) {
      PutText(At("q/" + std::to_string(round) + ".xml"), CompositionText(SampleID(round)));
      EXPECT_EQ(Add("q"), RESULT_OK);
      EXPECT_EQ(Store.Refresh(), RESULT_OK);
      EXPECT_EQ(Store.VerifyDigests({}, 3), RESULT_OK);
      AssetInfo info;
      EXPECT_EQ(Store.RegisterAsset(At("q/0.xml"), SHA1(), info), RESULT_OK);
      EXPECT_EQ(Store.Forget(At("q")), RESULT_OK);
    }
    ends = true;
  }
  EXPECT_GT(answers, 0U);
  EXPECT_EQ(failures, 0U);
}

TEST_P(AssetStoreThreadsTest, VerificationReportsOneThreadAtATimeAndMayAskTheStore) {
  ui32_t calls = 0;  // guarded by what is proved here
  const auto progress = [&](const VerifyProgress&) {
    ++calls;
    return Store.FindAsset(SampleID(0x1000)).size() == 1;
  };
  EXPECT_EQ(Store.VerifyDigests({}, 8, progress), RESULT_OK);
  EXPECT_GT(calls, 0U);
}

INSTANTIATE_TEST_SUITE_P(Index, AssetStoreThreadsTest, testing::Bool(),
                         [](const auto& in_file) { return std::string(in_file.param ? "InFile" : "InMemory"); });

}  // namespace
}  // namespace CairnTest
