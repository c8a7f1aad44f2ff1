// SPDX-License-Identifier: BSD-3-Clause
//
// The file of play's --resume when it is none, is of another show, or cannot be kept.
#include "BrokenShow.h"
#include "FileSizeLimit.h"
#include "TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace {

namespace fs = std::filesystem;

const std::string Show = "12882066-0fed-5c52-83e0-cf5e3b96e2bb ";
const std::string Other = "00000000-0000-4000-8000-000000000001 ";
const std::string Beginning = "; playing starts at the beginning";
const std::string NotKept = ", and the position will not be kept: the file is left as it is\n";

class Resume : public testing::Test {
 protected:
  void Put(const std::string& text) const { std::ofstream(m_File) << text; }
  [[nodiscard]] std::string Kept() const {
    std::ostringstream text;
    text << std::ifstream(m_File).rdbuf();
    return text.str();
  }
  [[nodiscard]] static nlohmann::json SummaryOf(StrataProgram& program) {
    EXPECT_EQ(program.Wait(), 0) << program.Errors();
    return nlohmann::json::parse(program.Output());
  }
  /// What play warns of when it is to resume there, goes to edit unit 30 and is quit.
  [[nodiscard]] std::string Warnings(const std::string& file) const {
    StrataProgram play({"play", m_Show.Path(), "--speed", "max", "--paused", "--json", "--resume", file}, "l30\nq\n");
    EXPECT_EQ(SummaryOf(play)["position"], 30);
    return play.Errors();
  }

  BrokenShow m_Show;  // whole
  const std::string m_File = m_Show.Beside("position");
};

TEST_F(Resume, NewOrEmptyFileIsTakenWithoutAWord) {
  EXPECT_EQ(Warnings(m_File), "");
  EXPECT_EQ(Kept(), Show + "30\n");
  Put("");
  EXPECT_EQ(Warnings(m_File), "");
  EXPECT_EQ(Kept(), Show + "30\n");
}

TEST_F(Resume, WhatIsNoPositionIsLeftAsItIs) {
  for (const std::string& text : {std::string("Notes of mine.\n"), Show + "x\n", Show + "12 13\n", Show + "-1\n",
                                  Show + "99999999999\n", Show, std::string("12\n"), std::string(5000, ' ')}) {
    Put(text);
    EXPECT_EQ(Warnings(m_File), "strata: warning: " + m_File + ": there is no position in it" + Beginning + NotKept);
    EXPECT_EQ(Kept(), text);
  }
}

TEST_F(Resume, PositionInAnotherShowIsOverwrittenOnlyWhenThatIsOver) {
  const std::string warning = "strata: warning: " + m_File + ": the position in it is of another show" + Beginning;
  Put(Other + "100\n");
  EXPECT_EQ(Warnings(m_File), warning + NotKept);
  EXPECT_EQ(Kept(), Other + "100\n");
  Put(Other + "0\n");
  EXPECT_EQ(Warnings(m_File), warning + '\n');
  EXPECT_EQ(Kept(), Show + "30\n");
}

TEST_F(Resume, PositionBehindTheEndIsToldAndReplaced) {
  Put(Show + "168\n");
  EXPECT_EQ(Warnings(m_File),
            "strata: warning: " + m_File + ": the position in it lies behind the end of this show" + Beginning + '\n');
  EXPECT_EQ(Kept(), Show + "30\n");
}

TEST_F(Resume, FileThatCannotBeWrittenIsToldOnceAndTheShowGoesOn) {
  const std::string file = m_Show.Beside("missing/position");
  EXPECT_EQ(Warnings(file), "strata: warning: " + file +
                                ": this file cannot be written: its folder is not there; the position will not be "
                                "kept\n");
  for (const std::string& name : {m_Show.Path(), std::string("/dev/full")})
    EXPECT_EQ(Warnings(name),
              "strata: warning: " + name + ": a folder, device or pipe has this name" + Beginning + NotKept);
}

TEST_F(Resume, FullDiskIsToldOnceAndThePositionStays) {
  Put(Show + "100\n");
  std::unique_ptr<TerminalProgram> play;  // whose messages go into no file
  {
    const Ferro::Test::FileSizeLimit limit(0);
    play = std::make_unique<TerminalProgram>(
        std::vector<std::string>{"play", m_Show.Path(), "--speed", "20", "--resume", m_File});
  }
  EXPECT_TRUE(play->WaitFor("strata: warning: " + m_File +
                            ": this file cannot be written: File too large; the position will not be kept\r\n"));
  EXPECT_TRUE(play->WaitFor("Played 68 edit units in "));
  EXPECT_EQ(play->Wait(), 0);
  const std::string& screen = play->Screen();
  EXPECT_EQ(screen.find("will not be kept"), screen.rfind("will not be kept"));
  EXPECT_EQ(Kept(), Show + "100\n");
}

}  // namespace
