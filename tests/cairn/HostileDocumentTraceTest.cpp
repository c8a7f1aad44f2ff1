// SPDX-License-Identifier: BSD-3-Clause
// A traced process decodes hostile documents: no file and no socket is opened meanwhile.
#include "../support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace {

using testing::IsEmpty;

bool Runs(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

// The lines of a trace between the marks; `has_marks` says whether both were there.
std::vector<std::string> CallsBetweenMarks(const std::string& trace, bool& has_marks) {
  std::ifstream file(trace);
  std::vector<std::string> calls;
  bool is_inside = false;
  has_marks = false;
  for (std::string line; std::getline(file, line);) {
    if (line.find("/strata-trace-end") != std::string::npos) has_marks = is_inside;
    if (line.find("/strata-trace-end") != std::string::npos) break;
    if (is_inside) calls.push_back(line);
    if (line.find("/strata-trace-begin") != std::string::npos) is_inside = true;
  }
  return calls;
}

TEST(HostileDocumentTrace, NoFileAndNoSocketIsOpened) {
  ASSERT_TRUE(Runs("command -v strace")) << "strace is not installed";
  if (!Runs("strace -f -o /dev/null true")) GTEST_SKIP() << "NOT RUN: this system does not let strace trace processes";

  const testsupport::TemporaryFolder folder;
  const std::string trace = folder.Path("trace");
  // The leak checker cannot work in a traced process.
  const std::string command = "ASAN_OPTIONS=detect_leaks=0 strace -f -e trace=%file,%network -o '" + trace + "' '" +
                              HOSTILE_DOCUMENT_PROBE + "'";
  ASSERT_TRUE(Runs(command)) << command;
  bool has_marks = false;
  EXPECT_THAT(CallsBetweenMarks(trace, has_marks), IsEmpty());
  EXPECT_TRUE(has_marks);
}

TEST(HostileDocumentTrace, TheTraceShowsAFileThatIsOpened) {
  if (!Runs("strace -f -o /dev/null true")) GTEST_SKIP() << "NOT RUN: this system does not let strace trace processes";
  const testsupport::TemporaryFolder folder;
  const std::string trace = folder.Path("trace");
  ASSERT_TRUE(Runs("strace -f -e trace=%file,%network -o '" + trace +
                   "' sh -c 'test -e /strata-trace-begin; read x </etc/passwd; test -e /strata-trace-end; true'"));
  bool has_marks = false;
  EXPECT_THAT(CallsBetweenMarks(trace, has_marks), testing::Contains(testing::HasSubstr("/etc/passwd")));
  EXPECT_TRUE(has_marks);
}

}  // namespace
