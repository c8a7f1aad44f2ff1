// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/LogEntry.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <sstream>
#include <vector>

using namespace Ferro;

namespace {

using Bytes = std::vector<ui8_t>;

LogEntry EntryOf(LogLevel level, const std::string& message) {
  LogEntry entry(level, message);
  entry.PID = 1234;
  entry.EventTime = Timestamp(1'772'366'400'000);
  return entry;
}

// "\x04\xd2" is 1234.
const std::string s_Archive = std::string("\0\0\x04\xd2\0\0\0\x19", 8) + "2026-03-01T12:00:00+00:00" +
                              std::string("\0\0\0\x03\0\0\0\x05", 8) + "late\n";

Bytes ArchiveBytes() {
  return Bytes(s_Archive.begin(), s_Archive.end());
}

}  // namespace

TEST(LogEntry, LineShowsTimeProcessLevelAndMessage) {
  EXPECT_EQ(EntryOf(LogLevel::Error, "message\n").EncodeLine(), "2026-03-01T12:00:00+00:00 [1234] ERROR: message");
  EXPECT_EQ(EntryOf(LogLevel::Warning, "message").EncodeLine(), "2026-03-01T12:00:00+00:00 [1234] WARNING: message");
  EXPECT_EQ(EntryOf(LogLevel::Info, "").EncodeLine(), "2026-03-01T12:00:00+00:00 [1234] INFO: ");
  EXPECT_EQ(EntryOf(LogLevel::Debug, "a\tb\n").EncodeLine(), "2026-03-01T12:00:00+00:00 [1234] DEBUG: a\tb");
  EXPECT_EQ(EntryOf(static_cast<LogLevel>(4), "x").EncodeLine(), "2026-03-01T12:00:00+00:00 [1234] UNKNOWN: x");
}

TEST(LogEntry, LineStaysOneLineWhateverTheMessageQuotes) {
  EXPECT_EQ(EntryOf(LogLevel::Error, "a\nb\r\n\n").EncodeLine(), "2026-03-01T12:00:00+00:00 [1234] ERROR: a\\nb\\r\\n");
  EXPECT_EQ(EntryOf(LogLevel::Error, std::string("\x1b[2J\0\x7f", 6)).EncodeLine(),
            "2026-03-01T12:00:00+00:00 [1234] ERROR: \\x1b[2J\\x00\\x7f");
  EXPECT_EQ(EntryOf(LogLevel::Error, "\xc3\xa4").EncodeLine(), "2026-03-01T12:00:00+00:00 [1234] ERROR: \xc3\xa4");
  EXPECT_EQ(EntryOf(LogLevel::Error,
                    "\xC2\x9B"
                    "2J\xC2\xA0\xC2")
                .EncodeLine(),
            "2026-03-01T12:00:00+00:00 [1234] ERROR: \\xc2\\x9b"
            "2J\xC2\xA0\xC2");
}

TEST(LogEntry, StreamGetsTheLineAndALineEnd) {
  std::ostringstream stream;
  stream << EntryOf(LogLevel::Info, "one\n") << EntryOf(LogLevel::Info, "two");
  EXPECT_EQ(stream.str(),
            "2026-03-01T12:00:00+00:00 [1234] INFO: one\n"
            "2026-03-01T12:00:00+00:00 [1234] INFO: two\n");
}

TEST(LogEntry, IsStampedWithThisProcess) {
  const LogEntry entry(LogLevel::Info, "message");
  EXPECT_EQ(entry.PID, static_cast<ui32_t>(getpid()));
  EXPECT_EQ(entry.Level, LogLevel::Info);
  EXPECT_EQ(entry.Message, "message");
  EXPECT_TRUE(entry.HasValue());
  EXPECT_FALSE(LogEntry().HasValue());
}

TEST(LogEntry, ArchiveFormIsProcessTimeLevelMessage) {
  const LogEntry entry = EntryOf(LogLevel::Error, "late\n");
  EXPECT_EQ(entry.ArchiveLength(), 46U);
  Bytes buffer(46);
  MemIOWriter writer(buffer);
  EXPECT_TRUE(entry.Archive(&writer));
  EXPECT_EQ(buffer, ArchiveBytes());

  MemIOReader reader(buffer);
  LogEntry copy;
  EXPECT_TRUE(copy.Unarchive(&reader));
  EXPECT_EQ(copy.PID, 1234U);
  EXPECT_EQ(copy.EventTime, entry.EventTime);
  EXPECT_EQ(copy.Level, LogLevel::Error);
  EXPECT_EQ(copy.Message, "late\n");
}

TEST(LogEntry, CutAtEachByteKeepsTheFieldsReadBefore) {
  const Bytes bytes = ArchiveBytes();
  for (ui32_t length = 0; length < bytes.size(); ++length) {
    MemIOReader reader(bytes.data(), length);
    LogEntry entry;
    entry.Message = "before";
    EXPECT_FALSE(entry.Unarchive(&reader)) << length;
    EXPECT_EQ(entry.PID, length < 4 ? 0U : 1234U) << length;
    EXPECT_EQ(entry.EventTime == Timestamp(1'772'366'400'000), length >= 33) << length;
    EXPECT_EQ(entry.Level, length < 37 ? LogLevel::Info : LogLevel::Error) << length;
    EXPECT_EQ(entry.Message, "before") << length;
  }
}

TEST(LogEntry, WritingIntoEachSmallerBufferKeepsWholeFields) {
  const LogEntry entry = EntryOf(LogLevel::Error, "late\n");
  for (ui32_t capacity = 0; capacity < 46; ++capacity) {
    Bytes buffer(46, 0xee);
    MemIOWriter writer(buffer.data(), capacity);
    EXPECT_FALSE(entry.Archive(&writer)) << capacity;
    const ui32_t expected = capacity < 4    ? 0
                            : capacity < 8  ? 4
                            : capacity < 33 ? 8
                            : capacity < 37 ? 33
                            : capacity < 41 ? 37
                                            : 41;
    EXPECT_EQ(writer.Length(), expected) << capacity;
  }
}

TEST(LogEntry, NullCursorFails) {
  LogEntry entry;
  EXPECT_FALSE(entry.Archive(nullptr));
  EXPECT_FALSE(entry.Unarchive(nullptr));
}
