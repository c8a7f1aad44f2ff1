// SPDX-License-Identifier: BSD-3-Clause
//
// Every command that writes is interrupted again and again, each time a little later, from before it begins until it is
// done by itself. Whenever that is, what it was to write is there whole or not at all, and nothing else is.
#include "BrokenShow.h"
#include "Sanitized.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace {

namespace fs = std::filesystem;

struct WritingCommand {
  std::string Name;
  std::vector<std::string> Before;  ///< arguments before the show
  std::vector<std::string> After;   ///< and after it; the file to write follows
  std::string File;
};

std::ostream& operator<<(std::ostream& stream, const WritingCommand& command) {
  return stream << command.Name;
}

const WritingCommand Commands[] = {
    {"ExportShowPlaylist", {"export", "spl"}, {"--out"}, "out.xml"},
    {"ExportIdentifiers", {"export", "ids"}, {"--out"}, "out.txt"},
    {"TimelinePicture", {"timeline"}, {"--svg"}, "out.svg"},
    {"TimelinePage", {"timeline"}, {"--html"}, "out.html"},
    {"FramePicture", {"frame"}, {"--at", "60", "--out"}, "out.png"},
    {"FrameSound", {"frame"}, {"--at", "60", "--count", "24", "--out"}, "out.wav"},
};

class Interrupted : public testing::TestWithParam<WritingCommand> {
 protected:
  [[nodiscard]] std::vector<std::string> Arguments() const {
    std::vector<std::string> words = GetParam().Before;
    words.push_back(m_Show.Path());
    words.insert(words.end(), GetParam().After.begin(), GetParam().After.end());
    words.push_back(Out());
    return words;
  }

  [[nodiscard]] std::string Folder() const { return m_Show.Beside("out"); }
  [[nodiscard]] std::string Out() const { return Folder() + '/' + GetParam().File; }

  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Folder())) names.push_back(entry.path().filename());
    return names;
  }

  BrokenShow m_Show;  // whole
};

/// The length of what a command writes; its dates and identifiers may be new each time.
TEST_P(Interrupted, LeavesAWholeFileOrNone) {
  fs::create_directory(Folder());
  const auto started = std::chrono::steady_clock::now();
  StrataProgram whole(Arguments());
  ASSERT_EQ(whole.Wait(), 0) << whole.Errors();
  const auto length = std::chrono::steady_clock::now() - started;
  const auto size = fs::file_size(Out());
  ASSERT_THAT(Names(), testing::ElementsAre(GetParam().File));

  constexpr int steps = testsupport::Sanitized ? 6 : 24;
  int interrupted = 0;
  for (int step = 0; step <= steps; ++step) {
    fs::remove(Out());
    StrataProgram run(Arguments());
    std::this_thread::sleep_for(length * step / steps);
    run.Signal(step % 2 == 0 ? SIGINT : SIGTERM);
    const int code = run.Wait();
    // A signal that comes before the program has begun ends it as any program.
    EXPECT_THAT(code, testing::AnyOf(0, 4, 128 + SIGINT, 128 + SIGTERM)) << run.Errors();
    if (code == 0) {
      EXPECT_THAT(Names(), testing::ElementsAre(GetParam().File)) << step;
      EXPECT_EQ(fs::file_size(Out()), size);
    } else {
      EXPECT_THAT(Names(), testing::IsEmpty()) << step << ": " << code;
      ++interrupted;
    }
  }
  EXPECT_GT(interrupted, 0);
}

INSTANTIATE_TEST_SUITE_P(AtAnyMoment, Interrupted, testing::ValuesIn(Commands),
                         [](const auto& test) { return test.param.Name; });

}  // namespace
