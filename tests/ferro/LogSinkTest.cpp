// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "FileSizeLimit.h"
#include "TestFiles.h"

using namespace Ferro;
using namespace Ferro::Test;

namespace {

LogEntry EntryOf(const std::string& message) {
  LogEntry entry(LogLevel::Info, message);
  entry.PID = 7;
  entry.EventTime = Timestamp(0);
  return entry;
}

const std::string s_LineStart = "1970-01-01T00:00:00+00:00 [7] INFO: ";

}  // namespace

TEST(LogSink, EachOperationHasItsLevel) {
  MemoryLogSink sink;
  sink.Debug("debug %d\n", 1);
  sink.Info("info %s\n", "two");
  sink.Warn("warn %u\n", 3U);
  sink.Error("error %lu%%\n", 4UL);
  EXPECT_TRUE(sink.Contains(LogLevel::Debug, "debug 1\n"));
  EXPECT_TRUE(sink.Contains(LogLevel::Info, "info two\n"));
  EXPECT_TRUE(sink.Contains(LogLevel::Warning, "warn 3\n"));
  EXPECT_TRUE(sink.Contains(LogLevel::Error, "error 4%\n"));
  EXPECT_FALSE(sink.Contains(LogLevel::Error, "warn 3\n"));
  EXPECT_FALSE(sink.Contains(LogLevel::Warning, "warn 3"));
  EXPECT_EQ(sink.Entries().size(), 4U);
  sink.Clear();
  EXPECT_TRUE(sink.Entries().empty());
}

TEST(LogSink, LongMessagesAreNotCut) {
  MemoryLogSink sink;
  const std::string text(100'000, 'x');
  sink.Info("%s\n", text.c_str());
  EXPECT_TRUE(sink.Contains(LogLevel::Info, text + "\n"));
}

TEST(LogSink, DefaultIsStandardError) {
  EXPECT_NE(dynamic_cast<StdErrLogSink*>(&DefaultLogSink()), nullptr);
  testing::internal::CaptureStderr();
  DefaultLogSink().WriteEntry(EntryOf("message\n"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), s_LineStart + "message\n");
}

TEST(LogSink, DebugMessagesGoToStandardErrorOnlyWhereTheyAreAskedFor) {
  const auto written = [](LogLevel least) {
    SetStdErrLogLevel(least);
    testing::internal::CaptureStderr();
    DefaultLogSink().Debug("a\n");
    DefaultLogSink().Info("b\n");
    DefaultLogSink().Error("c\n");
    const std::string text = testing::internal::GetCapturedStderr();
    return std::count(text.begin(), text.end(), '\n');
  };
  testing::internal::CaptureStderr();
  DefaultLogSink().Debug("a\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(written(LogLevel::Debug), 3);
  EXPECT_EQ(written(LogLevel::Error), 1);
  EXPECT_EQ(written(LogLevel::Info), 2);
}

TEST(LogSink, AnotherDefaultCanBeSetAndTakenBack) {
  MemoryLogSink first;
  MemoryLogSink second;
  ILogSink& initial = DefaultLogSink();
  EXPECT_EQ(SetDefaultLogSink(&first), nullptr);
  DefaultLogSink().Info("one\n");
  EXPECT_EQ(SetDefaultLogSink(&second), &first);
  DefaultLogSink().Info("two\n");
  EXPECT_EQ(SetDefaultLogSink(nullptr), &second);
  EXPECT_EQ(&DefaultLogSink(), &initial);
  EXPECT_EQ(first.Entries().size(), 1U);
  EXPECT_TRUE(second.Contains(LogLevel::Info, "two\n"));
}

TEST(LogSink, MessageWithoutLineEndIsStillALineOfItsOwn) {
  testing::internal::CaptureStderr();
  StdErrLogSink sink;
  sink.WriteEntry(EntryOf("one"));
  sink.WriteEntry(EntryOf("two\n"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), s_LineStart + "one\n" + s_LineStart + "two\n");
}

TEST(FileLogSink, AppendsLines) {
  const TemporaryFolder folder;
  MakeFile(folder.Path("log"), "before\n");
  {
    FileLogSink sink(folder.Path("log"));
    EXPECT_TRUE(sink.IsOpen());
    sink.WriteEntry(EntryOf("one\n"));
    sink.WriteEntry(EntryOf("two"));
    EXPECT_EQ(sink.LostCount(), 0U);
    // Written already, so that nothing is lost with the process.
    EXPECT_EQ(BytesOf(folder.Path("log")), "before\n" + s_LineStart + "one\n" + s_LineStart + "two\n");
  }
  FileLogSink again(folder.Path("log"));
  again.WriteEntry(EntryOf("three\n"));
  EXPECT_TRUE(BytesOf(folder.Path("log")).ends_with("two\n" + s_LineStart + "three\n"));
}

TEST(FileLogSink, CountsWhatItCannotOpenAFileFor) {
  const TemporaryFolder folder;
  FileLogSink sink(folder.Path("missing/log"));
  EXPECT_FALSE(sink.IsOpen());
  sink.WriteEntry(EntryOf("one\n"));
  sink.WriteEntry(EntryOf("two\n"));
  EXPECT_EQ(sink.LostCount(), 2U);
}

TEST(FileLogSink, CountsWhatAFullDiskDoesNotTake) {
  FileLogSink sink("/dev/full");
  EXPECT_TRUE(sink.IsOpen());
  sink.WriteEntry(EntryOf("one\n"));
  EXPECT_EQ(sink.LostCount(), 1U);
}

TEST(FileLogSink, MessageAfterACutOneBeginsItsOwnLine) {
  const TemporaryFolder folder;
  FileLogSink sink(folder.Path("log"));
  {
    const FileSizeLimit limit(s_LineStart.size() + 2);
    sink.WriteEntry(EntryOf("one\n"));
    sink.WriteEntry(EntryOf("two\n"));
  }
  sink.WriteEntry(EntryOf("three\n"));
  sink.WriteEntry(EntryOf("four\n"));
  EXPECT_EQ(sink.LostCount(), 2U);
  EXPECT_EQ(BytesOf(folder.Path("log")), s_LineStart + "on\n" + s_LineStart + "three\n" + s_LineStart + "four\n");
}

TEST(TeeLogSink, PassesEachMessageOnToAll) {
  MemoryLogSink first;
  MemoryLogSink second;
  TeeLogSink tee({&first, &second});
  tee.Warn("both\n");
  EXPECT_TRUE(first.Contains(LogLevel::Warning, "both\n"));
  EXPECT_TRUE(second.Contains(LogLevel::Warning, "both\n"));
  TeeLogSink({}).Warn("nobody\n");
}

TEST(LogSinkDeathTest, TeeWithoutASinkIsAProgrammingError) {
  EXPECT_DEATH(TeeLogSink({nullptr}), "Assertion 'sink != nullptr' failed");
}
