// SPDX-License-Identifier: BSD-3-Clause
//
// Commands are interrupted again and again, each time a little later, from before they begin until they are done by
// themselves. Whenever that is, what one was to write is there whole or not at all, and nothing else is.
#include "BrokenShow.h"
#include "Sanitized.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <thread>

namespace {

namespace fs = std::filesystem;

constexpr int Steps = testsupport::Sanitized ? 6 : 24;

struct WritingCommand {
  std::string Name;
  std::vector<std::string> Arguments;  ///< SHOW, SOUND and OUT stand for the show, a WAVE file and what to write
  std::string Out;                     ///< a file, or a folder
};

std::ostream& operator<<(std::ostream& stream, const WritingCommand& command) {
  return stream << command.Name;
}

const WritingCommand Commands[] = {
    {"ExportShowPlaylist", {"export", "spl", "SHOW", "--out", "OUT"}, "out.xml"},
    {"ExportIdentifiers", {"export", "ids", "SHOW", "--out", "OUT"}, "out.txt"},
    {"TimelinePicture", {"timeline", "SHOW", "--svg", "OUT"}, "out.svg"},
    {"CheckPage", {"check", "SHOW", "--html", "OUT"}, "out.html"},
    {"TimelinePage", {"timeline", "SHOW", "--html", "OUT"}, "out.html"},
    {"FramePicture", {"frame", "SHOW", "--at", "60", "--out", "OUT"}, "out.png"},
    {"FrameSound", {"frame", "SHOW", "--at", "60", "--count", "24", "--out", "OUT"}, "out.wav"},
    {"Wrap", {"wrap", "SOUND", "--out", "OUT"}, "out.mxf"},
    {"MakeSample", {"make-sample", "OUT", "--length", "1", "--size", "64x64", "--channels", "2"}, "out"},
};

std::uintmax_t SizeOf(const std::string& path) {
  if (!fs::is_directory(path)) return fs::file_size(path);
  std::uintmax_t size = 0;
  for (const auto& entry : fs::recursive_directory_iterator(path))
    if (!entry.is_directory()) size += entry.file_size();
  return size;
}

class Interrupted : public testing::TestWithParam<WritingCommand> {
 protected:
  void SetUp() override {
    fs::create_directory(Folder());
    StrataProgram frame({"frame", m_Show.Path("Trailer/sound-1.mxf"), "--at", "0", "--count", "24", "--out", Sound()});
    ASSERT_EQ(frame.Wait(), 0) << frame.Errors();
  }

  [[nodiscard]] std::vector<std::string> Arguments() const {
    std::vector<std::string> words = GetParam().Arguments;
    std::replace(words.begin(), words.end(), std::string("SHOW"), m_Show.Path());
    std::replace(words.begin(), words.end(), std::string("SOUND"), Sound());
    std::replace(words.begin(), words.end(), std::string("OUT"), Out());
    return words;
  }

  [[nodiscard]] std::string Folder() const { return m_Show.Beside("out"); }
  [[nodiscard]] std::string Out() const { return Folder() + '/' + GetParam().Out; }
  [[nodiscard]] std::string Sound() const { return m_Show.Beside("sound.wav"); }

  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Folder())) names.push_back(entry.path().filename());
    return names;
  }

  BrokenShow m_Show;  // whole
};

/// The length of what a command writes; its dates and identifiers may be new each time.
TEST_P(Interrupted, LeavesAWholeFileOrNone) {
  const auto started = std::chrono::steady_clock::now();
  StrataProgram whole(Arguments());
  ASSERT_EQ(whole.Wait(), 0) << whole.Errors();
  const auto length = std::chrono::steady_clock::now() - started;
  const auto size = SizeOf(Out());
  ASSERT_THAT(Names(), testing::ElementsAre(GetParam().Out));

  int interrupted = 0;
  for (int step = 0; step <= Steps; ++step) {
    fs::remove_all(Out());
    StrataProgram run(Arguments());
    std::this_thread::sleep_for(length * step / Steps);
    constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
    run.Signal(signals[step % 4]);
    const int code = run.Wait();
    // A signal that comes before the program has begun ends it as any program.
    EXPECT_THAT(code, testing::AnyOf(0, 4, 128 + SIGINT, 128 + SIGTERM, 128 + SIGHUP, 128 + SIGQUIT)) << run.Errors();
    if (code == 0) {
      EXPECT_THAT(Names(), testing::ElementsAre(GetParam().Out)) << step;
      EXPECT_EQ(SizeOf(Out()), size);
    } else {
      EXPECT_THAT(Names(), testing::IsEmpty()) << step << ": " << code;
      ++interrupted;
    }
  }
  EXPECT_GT(interrupted, 0);
}

// What a command keeps, it keeps as it was or as it is to be: either way the next command finds it in order.
class InterruptedKeeper : public testing::Test {
 protected:
  /// Interrupts the command at one moment after another. `check` is called each time, with whether it was interrupted.
  static void InterruptAtEachMoment(const std::vector<std::string>& arguments, const std::function<void()>& prepare,
                                    const std::function<void()>& check) {
    prepare();
    const auto started = std::chrono::steady_clock::now();
    StrataProgram whole(arguments);
    ASSERT_EQ(whole.Wait(), 0) << whole.Errors();
    const auto length = std::chrono::steady_clock::now() - started;
    for (int step = 0; step <= Steps; ++step) {
      prepare();
      StrataProgram run(arguments);
      std::this_thread::sleep_for(length * step / Steps);
      run.Signal(SIGINT);
      const int code = run.Wait();
      EXPECT_THAT(code, testing::AnyOf(0, 4, 128 + SIGINT)) << run.Errors();
      if (code == 4) {
        EXPECT_NE(run.Output() + run.Errors(), "") << "it must say that it was interrupted";
      }
      check();
    }
  }

  BrokenShow m_Show;  // whole
};

TEST_F(InterruptedKeeper, TheAssetIndexKnowsAllOfAFolderOrNothing) {
  const std::string index = m_Show.Beside("index.sqlite");
  const auto assets = [&] {
    StrataProgram list({"store", "list", "--index", index, "--json"});
    EXPECT_EQ(list.Wait(), 0) << list.Errors();
    return nlohmann::json::parse(list.Output())["assets"].size();
  };
  StrataProgram add({"store", "add", m_Show.Path(), "--index", index});
  ASSERT_EQ(add.Wait(), 0);
  const size_t all = assets();
  InterruptAtEachMoment(
      {"store", "add", m_Show.Path(), "--index", index}, [&] { fs::remove(index); },
      [&] {
        if (fs::exists(index)) {
          EXPECT_THAT(assets(), testing::AnyOf(0U, all));
        }
      });
}

TEST_F(InterruptedKeeper, ThePositionToResumeFromIsOneOfTheShow) {
  const std::string folder = m_Show.Beside("position");
  fs::create_directory(folder);
  const std::string file = folder + "/position.txt";
  InterruptAtEachMoment(
      {"play", m_Show.Path(), "--speed", "max", "--resume", file}, [&] { fs::remove(file); },
      [&] {
        for (const auto& entry : fs::directory_iterator(folder)) EXPECT_EQ(entry.path(), file);
        StrataProgram resumed({"play", m_Show.Path(), "--speed", "max", "--resume", file, "--paused"}, "q\n");
        EXPECT_EQ(resumed.Wait(), 0) << resumed.Errors();
      });
}

TEST_F(InterruptedKeeper, ACommandThatOnlyLooksLeavesTheShowAlone) {
  const auto files = [&] {
    std::map<std::string, fs::file_time_type> times;
    for (const auto& entry : fs::recursive_directory_iterator(m_Show.Path()))
      times[entry.path()] = entry.last_write_time();
    return times;
  };
  const auto before = files();
  const std::string index = m_Show.Beside("index.sqlite");
  StrataProgram add({"store", "add", m_Show.Path(), "--index", index});
  ASSERT_EQ(add.Wait(), 0) << add.Errors();
  InterruptAtEachMoment(
      {"check", m_Show.Path(), "--hash"}, [] {}, [] {});
  InterruptAtEachMoment(
      {"info", m_Show.Path()}, [] {}, [] {});
  InterruptAtEachMoment(
      {"store", "verify", "--hash", "--json", "--index", index}, [] {}, [] {});
  EXPECT_EQ(files(), before);
}

INSTANTIATE_TEST_SUITE_P(AtAnyMoment, Interrupted, testing::ValuesIn(Commands),
                         [](const auto& test) { return test.param.Name; });

}  // namespace
