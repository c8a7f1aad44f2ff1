// SPDX-License-Identifier: BSD-3-Clause
#include "HostileDocuments.h"

#include <Cairn/AssetMap.h>
#include <Cairn/XMLLibraries.h>

#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>
#include <vector>

namespace {

constexpr int ThreadCount = 8;

// First in its program, so that the libraries are not ready yet.
TEST(XMLLibraries, AreInitialisedOnceByThreadsThatAllComeFirst) {
  std::barrier start(ThreadCount);
  std::atomic<int> read_count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < ThreadCount; ++i)
    threads.emplace_back([&] {
      start.arrive_and_wait();
      Cairn::VolumeIndex volume;
      if (volume.DecodeXML(CairnTest::VolumeIndexText("<Index>3</Index>")).Success() && volume.Index == 3) ++read_count;
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(read_count, ThreadCount);
}

TEST(XMLLibraries, DocumentsAreReadAndRefusedByManyThreads) {
  std::atomic<int> wrong_count = 0;
  std::vector<std::thread> threads;
  Ferro::MemoryLogSink log;
  Ferro::ILogSink* const before = Ferro::SetDefaultLogSink(&log);
  for (int i = 0; i < ThreadCount; ++i)
    threads.emplace_back([&, i] {
      for (Cairn::ui64_t j = 1; j <= 50; ++j) {
        Cairn::VolumeIndex volume;
        const std::string index = std::to_string(j * 100 + static_cast<Cairn::ui64_t>(i));
        const bool is_read = volume.DecodeXML(CairnTest::VolumeIndexText("<Index>" + index + "</Index>")).Success();
        if (!is_read || std::to_string(volume.Index) != index) ++wrong_count;
        if (volume.DecodeXML(CairnTest::VolumeIndexText("<Index>&x;</Index>")).Success()) ++wrong_count;
      }
    });
  for (std::thread& thread : threads) thread.join();
  Ferro::SetDefaultLogSink(before);
  EXPECT_EQ(wrong_count, 0);
  EXPECT_EQ(log.Entries().size(), size_t{2 * 50 * ThreadCount});
}

TEST(XMLLibraries, InitialisingAgainIsHarmless) {
  Cairn::init_xml_libs();
  Cairn::init_xml_libs();
}

}  // namespace
