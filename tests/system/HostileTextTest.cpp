// SPDX-License-Identifier: BSD-3-Clause
//
// Titles and file names come from anyone's disks. What a command prints of them neither commands the terminal nor looks
// like a line of the command's own; and what cannot be printed at all is reported.
#include "BrokenShow.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// A title that would clear the screen (CSI is one character in C1) and claim a verdict.
constexpr const char* Title = "Sample\u009b2J\nThis show will play: 9:99.";
constexpr const char* Shown = "Sample\uFFFD2J This show will play: 9:99.";

class HostileText : public testing::Test {
 protected:
  void SetUp() override {
    m_Show.Replace("Trailer/CPL.xml", "SampleTrailer", Title, "<ContentTitleText>");
    m_Show.ListSize("Trailer/CPL.xml");
  }

  BrokenShow m_Show;
};

TEST_F(HostileText, TitlesStayInTheirLine) {
  const std::vector<std::vector<std::string>> commands = {{"check", m_Show.Path()},
                                                          {"info", m_Show.Path("Trailer/CPL.xml")},
                                                          {"play", m_Show.Path("Trailer"), "--speed", "max"}};
  for (const auto& arguments : commands) {
    StrataProgram run(arguments);
    EXPECT_EQ(run.Wait(), 0) << arguments[0] << ": " << run.Errors();
    EXPECT_THAT(run.Output(),
                AllOf(HasSubstr(Shown), Not(HasSubstr("\u009b")), Not(HasSubstr("\nThis show will play: 9"))))
        << arguments[0];
  }
}

TEST_F(HostileText, FindingsAboutThemAreWhole) {
  m_Show.Remove("Trailer/sound-1.mxf");
  for (const std::string command : {"check", "play", "timeline"}) {
    StrataProgram run({command, m_Show.Path("Trailer")});
    EXPECT_EQ(run.Wait(), 3);
    const std::string said = run.Output() + run.Errors();
    EXPECT_THAT(said, AllOf(HasSubstr(Shown), HasSubstr("A file of the"), Not(HasSubstr("\u009b")))) << command;
  }
}

TEST_F(HostileText, JsonKeepsTitlesAsTheyAre) {
  StrataProgram check({"check", m_Show.Path("Trailer"), "--json"});
  EXPECT_EQ(check.Wait(), 0) << check.Errors();
  EXPECT_EQ(nlohmann::json::parse(check.Output())["compositions"][0]["title"], Title);
}

TEST_F(HostileText, JsonPrintsNoControlCharacters) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"check", m_Show.Path("Trailer"), "--json"},
                                                    {"info", m_Show.Path("Trailer/CPL.xml"), "--json"},
                                                    {"timeline", m_Show.Path("Trailer"), "--json"}}) {
    StrataProgram run(arguments);
    EXPECT_EQ(run.Wait(), 0) << run.Errors();
    EXPECT_THAT(run.Output(), AllOf(HasSubstr("Sample\\u009b2J\\nThis"), Not(HasSubstr("\u009b")))) << arguments[0];
  }
}

// An override that its title does not end reaches as far as the title.
TEST_F(HostileText, DrawingsKeepTheDirectionOfTheirText) {
  m_Show.Replace("Trailer/CPL.xml", "Sample", "\u202eSample", "<ContentTitleText>");
  m_Show.ListSize("Trailer/CPL.xml");
  const std::string svg = m_Show.Beside("a.svg");
  const std::string html = m_Show.Beside("a.html");
  StrataProgram run({"timeline", m_Show.Path("Trailer"), "--svg", svg, "--html", html});
  EXPECT_EQ(run.Wait(), 0) << run.Errors();
  const auto text_of = [](const std::string& file) {
    std::string text;
    EXPECT_TRUE(Ferro::ReadFileIntoString(file, text).Success()) << file;
    return text;
  };
  const auto isolates =
      AllOf(HasSubstr("\uFFFDSample\uFFFD2J This"), HasSubstr("unicode-bidi: isolate"), Not(HasSubstr("\u009b")));
  EXPECT_THAT(text_of(svg), AllOf(isolates, Not(HasSubstr("\u202e"))));
  const std::string page = text_of(html);
  EXPECT_THAT(page, AllOf(isolates, HasSubstr("Sample\\u009b2J")));
  // Nothing but the model, which scripts put into elements of their own, has it as it is.
  const std::string before_model = page.substr(0, page.find("id=\"model\""));
  EXPECT_THAT(before_model, Not(HasSubstr("\u202e")));
}

TEST_F(HostileText, FileNamesDoNotCommandTheTerminal) {
  const std::string folder = m_Show.Beside("esc\x1b]0;x\x07");
  fs::rename(m_Show.Path("Trailer"), folder);
  fs::remove(folder + "/sound-1.mxf");
  const std::vector<std::vector<std::string>> commands = {
      {"check", folder},
      {"info", folder},
      {"check", folder + "/nothing"},
      {"frame", folder + "/CPL.xml", "--at", "x", "--out", "x.png"}};
  for (const auto& arguments : commands) {
    StrataProgram run(arguments);
    EXPECT_NE(run.Wait(), 0);
    EXPECT_THAT(run.Output() + run.Errors(), AllOf(Not(HasSubstr("\x1b")), Not(HasSubstr("\x07")))) << arguments[0];
  }
}

// On a full disk the end of a report is missing, if not all of it.
TEST_F(HostileText, ReportThatCannotBePrintedIsNoSuccess) {
  const std::string show = m_Show.Path();
  const std::vector<std::vector<std::string>> commands = {{"check", show},
                                                          {"check", show, "--json"},
                                                          {"info", show, "--json"},
                                                          {"timeline", show},
                                                          {"play", show, "--speed", "max"},
                                                          {"export", "spl", show},
                                                          {"export", "ids", show},
                                                          {"--help"}};
  for (const auto& arguments : commands) {
    StrataProgram run(arguments, "", "/dev/full");
    EXPECT_EQ(run.Wait(), 2) << arguments[0];
    EXPECT_EQ(run.Errors(), "strata: standard output cannot be written: No space left on device\n") << arguments[0];
  }
}

}  // namespace
