// SPDX-License-Identifier: BSD-3-Clause
// What the headers promise to several threads at once.
#include <Ferro/FileReader.h>
#include <Ferro/FileText.h>
#include <Ferro/LogSink.h>
#include <Ferro/Result.h>
#include <Ferro/UUID.h>

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <thread>

#include "TestFiles.h"

using namespace Ferro;
using namespace Ferro::Test;

namespace {

constexpr int s_Threads = 4;

void OnSeveralThreads(const std::function<void(int)>& body) {
  std::vector<std::thread> threads;
  for (int i = 0; i < s_Threads; ++i) threads.emplace_back(body, i);
  for (std::thread& thread : threads) thread.join();
}

// Every line is one of the messages, whole, and each has come once.
void ExpectWholeLines(const std::string& text, int messages) {
  std::istringstream stream(text);
  std::set<std::string> seen;
  for (std::string line; std::getline(stream, line);) {
    const std::string message = line.substr(line.rfind(": ") + 2);
    ASSERT_EQ(message.size(), 300U) << line;
    EXPECT_TRUE(seen.insert(message).second) << line;
  }
  EXPECT_EQ(seen.size(), static_cast<size_t>(messages));
}

void LogMessages(ILogSink& sink, int messages) {
  OnSeveralThreads([&](int thread) {
    for (int i = 0; i < messages; ++i) {
      std::string message = std::to_string(thread) + "/" + std::to_string(i);
      message.resize(300, '.');
      sink.Info("%s\n", message.c_str());
    }
  });
}

}  // namespace

TEST(SharedUse, FileLogSinkWritesMessagesWhole) {
  const TemporaryFolder folder;
  FileLogSink sink(folder.Path("log"));
  LogMessages(sink, 200);
  EXPECT_EQ(sink.LostCount(), 0U);
  ExpectWholeLines(BytesOf(folder.Path("log")), s_Threads * 200);
}

TEST(SharedUse, StandardErrorGetsMessagesWhole) {
  testing::internal::CaptureStderr();
  LogMessages(DefaultLogSink(), 200);
  ExpectWholeLines(testing::internal::GetCapturedStderr(), s_Threads * 200);
}

TEST(SharedUse, MemoryLogSinkKeepsAllMessages) {
  MemoryLogSink first;
  MemoryLogSink second;
  TeeLogSink tee({&first, &second});
  LogMessages(tee, 200);
  EXPECT_EQ(first.Entries().size(), s_Threads * 200U);
  EXPECT_EQ(second.Entries().size(), s_Threads * 200U);
}

TEST(SharedUse, DefaultLogSinkMayChangeWhileOthersLog) {
  MemoryLogSink first;
  MemoryLogSink second;
  SetDefaultLogSink(&first);
  OnSeveralThreads([&](int thread) {
    for (int i = 0; i < 200; ++i) {
      if (thread == 0) SetDefaultLogSink(i % 2 == 0 ? &second : &first);
      DefaultLogSink().Info("message\n");
    }
  });
  SetDefaultLogSink(nullptr);
  EXPECT_EQ(first.Entries().size() + second.Entries().size(), s_Threads * 200U);
}

TEST(SharedUse, OneFileReaderServesSeveralThreads) {
  const TemporaryFolder folder;
  std::string bytes;
  for (int i = 0; i < 1024; ++i) bytes.append(64, static_cast<char>(i % 251));
  MakeFile(folder.Path("file"), bytes);
  FileReader reader;
  ASSERT_EQ(reader.OpenRead(folder.Path("file")), RESULT_OK);
  OnSeveralThreads([&](int thread) {
    std::vector<ui8_t> block(64);
    for (int i = thread; i < 1024; ++i) {
      ASSERT_EQ(reader.ReadAt(static_cast<fsize_t>(i) * 64, block), RESULT_OK);
      ASSERT_EQ(block, std::vector<ui8_t>(64, static_cast<ui8_t>(i % 251)));
    }
  });
}

TEST(SharedUse, WritersOfOneNameLeaveOneOfTheirTextsWhole) {
  const TemporaryFolder folder;
  OnSeveralThreads([&](int thread) {
    const std::string text(10'000, static_cast<char>('a' + thread));
    for (int i = 0; i < 10; ++i) EXPECT_EQ(WriteStringIntoFile(folder.Path("file"), text), RESULT_OK);
  });
  EXPECT_EQ(folder.Names(), std::set<std::string>{"file"});
  const std::string text = BytesOf(folder.Path("file"));
  EXPECT_EQ(text, std::string(10'000, text.at(0)));
}

TEST(SharedUse, ResultsAreFoundAndIdentifiersMadeOnSeveralThreads) {
  std::vector<std::set<UUID>> made(s_Threads);
  OnSeveralThreads([&](int thread) {
    for (int i = 0; i < 500; ++i) {
      made[static_cast<size_t>(thread)].insert(UUID::Random());
      EXPECT_EQ(Result_t::Find(-17), RESULT_ENDOFFILE);
    }
  });
  std::set<UUID> all;
  for (const std::set<UUID>& ids : made) all.insert(ids.begin(), ids.end());
  EXPECT_EQ(all.size(), s_Threads * 500U);
}
