// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/TaskStatus.h>

#include "../../support/RecordCheck.h"

#include <iomanip>
#include <sstream>

namespace Strata {
namespace {

using namespace StrataTest;

Ferro::LogEntry Message(Ferro::LogLevel level, const char* text) {
  Ferro::LogEntry entry(level, text);
  entry.PID = 7;
  entry.EventTime = Ferro::Timestamp(1772366400000);  // 2026-03-01T12:00:00Z
  return entry;
}

TaskStatus Ingest() {
  TaskStatus status;
  status.AssetID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  status.State = Cairn::TS_RUNNING;
  status.TaskType = TT_INGEST;
  status.Progress = 40;
  status.Size = 0x0102030405060708;
  return status;
}

TaskStatus IngestWithMessages() {
  TaskStatus status = Ingest();
  status.Messages.push_back(Message(Ferro::LogLevel::Info, "one"));
  status.Messages.push_back(Message(Ferro::LogLevel::Error, "four"));
  return status;
}

// The messages above: process, time, level, text.
const char* const One = "00000007 00000019 323032362d30332d30315431323a30303a30302b30303a3030 00000001 00000003 6f6e65";
const char* const Four =
    "00000007 00000019 323032362d30332d30315431323a30303a30302b30303a3030 00000003 00000004 666f7572";
const char* const Head = "00112233445566778899aabbccddeeff 00000002 00000001 00000028 0102030405060708";

TEST(TaskStatus, FormIsCutAtEveryByte) {
  TaskStatus before;
  before.Progress = 99;
  CheckRecord(before, Ingest(),
              {Number("00112233445566778899aabbccddeeff", "00000000000000000000000000000000"),
               Number("00000002", "00000000"), Number("00000001", "00000000"), Number("00000028", "00000063"),
               Number("0102030405060708", "0000000000000000"), Number("00000000", "00000000")});
}

TEST(TaskStatus, WithoutMessagesTakes40BytesAndStates36) {
  const Bytes form = Archived(Ingest());
  EXPECT_EQ(form, Hex(std::string(Head) + "00000000"));
  EXPECT_EQ(form.size(), 40u);
  EXPECT_EQ(Ingest().ArchiveLength(), 36u);
}

TEST(TaskStatus, MessagesFollowTheirCountAndLengthIsFourBytesShort) {
  const Bytes form = Archived(IngestWithMessages());
  EXPECT_EQ(form, Hex(std::string(Head) + "00000002" + One + Four));
  EXPECT_EQ(IngestWithMessages().ArchiveLength() + 4, form.size());
  EXPECT_EQ(IngestWithMessages().ArchiveLength(), 36u + 44u + 45u);
}

TEST(TaskStatus, MessagesReadBeforeACutAreKept) {
  const Bytes whole = Hex(std::string(Head) + "00000002" + One + Four);
  for (size_t size = 40; size <= whole.size(); ++size) {
    SCOPED_TRACE(size);
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    TaskStatus status;
    Ferro::MemIOReader reader(cut);
    EXPECT_EQ(status.Unarchive(&reader), size == whole.size());
    const size_t expected = size < 84 ? 0 : size < 129 ? 1 : 2;
    ASSERT_EQ(status.Messages.size(), expected);
    if (expected > 0) {
      EXPECT_EQ(status.Messages.front().Message, "one");
    }
    EXPECT_EQ(status.Size, 0x0102030405060708u);
  }
}

TEST(TaskStatus, MessagesWrittenBeforeACutStay) {
  const Bytes whole = Hex(std::string(Head) + "00000002" + One + Four);
  Bytes buffer(128, 0xEE);
  Ferro::MemIOWriter writer(buffer);
  EXPECT_FALSE(IngestWithMessages().Archive(&writer));
  EXPECT_EQ(writer.Length(), 125u);  // all but the last text
  EXPECT_TRUE(std::equal(whole.begin(), whole.begin() + 125, buffer.begin()));
}

TEST(TaskStatus, ReadingAppendsToTheMessages) {
  TaskStatus status = IngestWithMessages();
  ReadWhole(status, Archived(IngestWithMessages()));
  ASSERT_EQ(status.Messages.size(), 4u);
  EXPECT_EQ(status.Messages.back().Message, "four");
}

TEST(TaskStatus, CountBeyondTheDataIsRefusedWithoutAllocating) {
  TaskStatus status;
  const Bytes bytes = Hex(std::string(Head) + "ffffffff");
  Ferro::MemIOReader reader(bytes);
  EXPECT_FALSE(status.Unarchive(&reader));
  EXPECT_TRUE(status.Messages.empty());
}

TEST(TaskStatus, HasValueFollowsTheAssetsIdentifier) {
  EXPECT_TRUE(Ingest().HasValue());
  EXPECT_FALSE(TaskStatus().HasValue());
}

TEST(TaskStatusDeathTest, NullWriterNamesArgumentAndOperation) {
  EXPECT_DEATH(static_cast<void>(Ingest().Archive(nullptr)),
               "virtual bool Strata::TaskStatus::Archive\\(Ferro::MemIOWriter\\*\\) const: "
               "Assertion 'Writer' failed\\.");
}

TEST(TaskStatusDeathTest, NullReaderNamesArgumentAndOperation) {
  TaskStatus status;
  EXPECT_DEATH(static_cast<void>(status.Unarchive(nullptr)),
               "virtual bool Strata::TaskStatus::Unarchive\\(Ferro::MemIOReader\\*\\): "
               "Assertion 'Reader' failed\\.");
}

TEST(TaskStatusDump, WithoutMessagesSaysSo) {
  std::ostringstream stream;
  stream << Ingest();
  EXPECT_EQ(stream.str(),
            "AssetID: 00112233-4455-6677-8899-aabbccddeeff\n"
            "State: Running\n"
            "TaskType: Ingest\n"
            "Progress: 40\n"
            "Size: 72623859790382856\n"
            "No messages.\n");
}

TEST(TaskStatusDump, TakesTheStreamsFormatAndReturnsTheStream) {
  std::ostringstream stream;
  stream << std::setfill('.') << std::setw(12) << Ingest() << "end";
  EXPECT_EQ(stream.str().substr(0, 49), "...AssetID: 00112233-4455-6677-8899-aabbccddeeff\n");
  EXPECT_EQ(stream.str().substr(stream.str().size() - 16), "No messages.\nend");
}

TEST(TaskStatusDump, MessagesFollowOneLineEach) {
  TaskStatus status = IngestWithMessages();
  status.State = static_cast<Cairn::TaskState_t>(6);
  status.TaskType = static_cast<TaskType_t>(5);
  status.Progress = 0xFFFFFFFF;
  status.Size = 0xFFFFFFFFFFFFFFFF;
  std::ostringstream stream;
  stream << std::hex << status;
  EXPECT_EQ(stream.str(),
            "AssetID: 00112233-4455-6677-8899-aabbccddeeff\n"
            "State: *UNKNOWN*\n"
            "TaskType: *UNKNOWN*\n"
            "Progress: 4294967295\n"
            "Size: 18446744073709551615\n"
            "Messages: \n"
            "2026-03-01T12:00:00+00:00 [7] INFO: one\n"
            "2026-03-01T12:00:00+00:00 [7] ERROR: four\n");
}

}  // namespace
}  // namespace Strata
