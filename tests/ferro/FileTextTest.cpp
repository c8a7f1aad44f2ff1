// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/FileText.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include "FileSizeLimit.h"
#include "TestFiles.h"

using namespace Ferro;
using namespace Ferro::Test;

TEST(FileText, BothWays) {
  const TemporaryFolder folder;
  const std::string text("text\0with NUL\n", 14);
  EXPECT_EQ(WriteStringIntoFile(folder.Path("a"), text), RESULT_OK);
  std::string out = "before";
  EXPECT_EQ(ReadFileIntoString(folder.Path("a"), out), RESULT_OK);
  EXPECT_EQ(out, text);
}

TEST(FileText, EmptyFileIsEmptyText) {
  const TemporaryFolder folder;
  EXPECT_EQ(WriteStringIntoFile(folder.Path("a"), ""), RESULT_OK);
  std::string out = "before";
  EXPECT_EQ(ReadFileIntoString(folder.Path("a"), out), RESULT_OK);
  EXPECT_EQ(out, "");
}

TEST(FileText, LargerThanTheLimitIsTooLargeAndLeavesTheOutput) {
  const TemporaryFolder folder;
  MakeFile(folder.Path("a"), "0123456789");
  std::string out = "before";
  EXPECT_EQ(ReadFileIntoString(folder.Path("a"), out, 9), RESULT_TOOLARGE);
  EXPECT_EQ(out, "before");
  EXPECT_EQ(ReadFileIntoString(folder.Path("a"), out, 10), RESULT_OK);
  EXPECT_EQ(out, "0123456789");
}

TEST(FileText, UsualLimitIsEightMiB) {
  EXPECT_EQ(DefaultTextLimit, 8U * 1024 * 1024);
  const TemporaryFolder folder;
  MakeFile(folder.Path("a"), std::string(8'388'608, 'a'));
  std::string out;
  EXPECT_EQ(ReadFileIntoString(folder.Path("a"), out), RESULT_OK);
  EXPECT_EQ(out.size(), 8'388'608U);
  MakeFile(folder.Path("a"), std::string(8'388'609, 'a'));
  EXPECT_EQ(ReadFileIntoString(folder.Path("a"), out), RESULT_TOOLARGE);
}

TEST(FileText, FileThatStatesNoSizeIsReadToItsEnd) {
  std::string out;
  EXPECT_EQ(ReadFileIntoString("/proc/self/status", out), RESULT_OK);
  EXPECT_NE(out.find("Pid:\t" + std::to_string(getpid())), std::string::npos);
  EXPECT_EQ(ReadFileIntoString("/proc/self/status", out, 10), RESULT_TOOLARGE);
}

TEST(FileText, FailuresAreThoseOfTheReader) {
  const TemporaryFolder folder;
  std::string out = "before";
  EXPECT_EQ(ReadFileIntoString("", out), RESULT_NULL_STR);
  EXPECT_EQ(ReadFileIntoString(folder.Path("missing"), out), RESULT_NOT_FOUND);
  EXPECT_EQ(ReadFileIntoString(folder.Folder(), out), RESULT_NOTAFILE);
  EXPECT_EQ(out, "before");
}

TEST(FileText, FailedWriteLeavesWhatStoodThere) {
  const TemporaryFolder folder;
  MakeFile(folder.Path("a"), "before");
  const FileSizeLimit limit(4096);
  EXPECT_EQ(WriteStringIntoFile(folder.Path("a"), std::string(5000, 'a')), RESULT_WRITEFAIL);
  EXPECT_EQ(BytesOf(folder.Path("a")), "before");
  EXPECT_EQ(folder.Names().size(), 1U);
  EXPECT_EQ(WriteStringIntoFile(folder.Path("missing/a"), "a"), RESULT_NOT_FOUND);
}
