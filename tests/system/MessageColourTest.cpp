// SPDX-License-Identifier: BSD-3-Clause
// The words that warn are coloured on a terminal that shows colours, and nowhere else.
#include "BrokenShow.h"
#include "TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include <cstdlib>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr char Red[] = "\x1b[1;31m";
constexpr char Magenta[] = "\x1b[1;35m";
constexpr char Plain[] = "\x1b[0m";

class MessageColour : public testing::Test {
 protected:
  void SetUp() override {
    setenv("TERM", "xterm", 1);
    unsetenv("NO_COLOR");
    m_Show.Remove("Feature/sound-2.mxf");
    std::filesystem::create_symlink("loop", m_Show.Path("loop"));
  }
  void TearDown() override { unsetenv("NO_COLOR"); }

  [[nodiscard]] static std::string ScreenOf(const std::vector<std::string>& arguments) {
    TerminalProgram program(arguments, 200, true);
    program.Wait();
    return program.Screen();
  }

  BrokenShow m_Show;
};

TEST_F(MessageColour, WarnsOnATerminal) {
  EXPECT_THAT(ScreenOf({"check", m_Show.Path()}),
              AllOf(HasSubstr(std::string(Red) + "missing:" + Plain + " SampleFeature"),
                    HasSubstr(std::string(Magenta) + "warning:" + Plain + " The file or folder")));
  EXPECT_THAT(ScreenOf({"check", m_Show.Path("none")}), HasSubstr(std::string(Red) + "strata:" + Plain + ' '));
  EXPECT_THAT(ScreenOf({"frame", m_Show.Path("Encrypted"), "--at", "0", "--channel", "picture", "--out",
                        m_Show.Beside("a.bin")}),
              HasSubstr(std::string("strata: ") + Magenta + "warning:" + Plain + ' '));
}

TEST_F(MessageColour, IsRefusedByTheUser) {
  setenv("NO_COLOR", "1", 1);
  EXPECT_THAT(ScreenOf({"check", m_Show.Path()}),
              AllOf(HasSubstr("missing: SampleFeature"), Not(HasSubstr("\x1b[1;"))));
  setenv("NO_COLOR", "", 1);
  EXPECT_THAT(ScreenOf({"check", m_Show.Path()}), HasSubstr(Red));
  setenv("TERM", "dumb", 1);
  EXPECT_THAT(ScreenOf({"check", m_Show.Path()}), Not(HasSubstr("\x1b[1;")));
}

TEST_F(MessageColour, IsNotForFiles) {
  StrataProgram check({"check", m_Show.Path()});
  EXPECT_EQ(check.Wait(), 3);
  EXPECT_THAT(check.Output(), AllOf(HasSubstr("\nmissing: SampleFeature"), Not(HasSubstr("\x1b"))));
  StrataProgram usage({"check", m_Show.Path("none")});
  EXPECT_EQ(usage.Wait(), 1);
  EXPECT_THAT(usage.Errors(), Not(HasSubstr("\x1b")));
}

}  // namespace
