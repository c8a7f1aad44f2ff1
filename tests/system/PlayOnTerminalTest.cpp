// SPDX-License-Identifier: BSD-3-Clause
//
// A person at a terminal plays the sample show. What is typed next follows from what stands on the screen.
#include "BrokenShow.h"
#include "TerminalProgram.h"
#include "play/PlaySession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>

using namespace Tool;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

namespace fs = std::filesystem;

const std::string Left = "\x1b[D";
const std::string Right = "\x1b[C";

class PlayOnTerminal : public testing::Test {
 protected:
  [[nodiscard]] std::string PositionKept() const {
    std::string line;
    std::ifstream file(m_Position);
    std::getline(file, line);
    return line;
  }

  BrokenShow m_Show;  // whole
  const std::string m_Position = m_Show.Beside("position");
};

TEST_F(PlayOnTerminal, ObeysKeysAndCommandsAndShowsWhereItIs) {
  TerminalProgram play({"play", m_Show.Path(), "--paused", "--verify", "--resume", m_Position});
  EXPECT_TRUE(play.WaitFor("space pause   . , step   arrows jump   q quit   ? help\r\n"));
  EXPECT_TRUE(play.WaitFor("composition \"SampleTrailer\", reel 1 of 1: 96\u00d764, 24 fps, "));
  EXPECT_TRUE(play.WaitFor("event SHOW_START\r\n"));
  EXPECT_TRUE(
      play.WaitFor("00:00:00:00 of 0:07  0/168  pause  late 0  1/5 SampleTrailer  reel 1/1  next SampleEncrypted in "
                   "0:01  LIGHTS_DOWN in 0:02"));

  play.Type(".");
  EXPECT_TRUE(play.WaitFor("00:00:00:01 of 0:07  1/168  pause  late 0  1/5 SampleTrailer"));
  play.Type("..");
  EXPECT_TRUE(play.WaitFor("00:00:00:03 of 0:07  3/168"));
  play.Type(",");
  EXPECT_TRUE(play.WaitFor("00:00:00:02 of 0:07  2/168"));

  play.Type("l48\r");
  EXPECT_TRUE(play.WaitFor("composition \"SampleFeature\", reel 1 of 3: "));
  EXPECT_TRUE(play.WaitFor("event LIGHTS_DOWN\r\n"));
  EXPECT_TRUE(play.WaitFor(
      "00:00:02:00 of 0:07  48/168  pause  late 0  3/5 SampleFeature  reel 1/3  next SampleStereoscopic in "
      "0:03  FEATURE_SECOND_1 in 0:01"));
  play.Type("l100\r");
  EXPECT_TRUE(play.WaitFor("00:00:04:04 of 0:07  100/168  pause  late 0  3/5 SampleFeature  reel 3/3  next "));
  play.Type("?");
  EXPECT_TRUE(play.WaitFor("  right left    ten seconds on, back\r\n"));
  EXPECT_TRUE(play.WaitFor("In short: (f|b|l<n>|t<n>|j(b|f)|p|s|?)\r\n"));
  play.Type(Right);
  EXPECT_TRUE(play.WaitFor("167/168  pause  late 0  5/5 SampleImmersive  reel 1/1  end in 0:00"));
  play.Type(Left);
  EXPECT_TRUE(play.WaitFor("00:00:00:00 of 0:07  0/168  "));

  play.Type(" ");
  EXPECT_TRUE(play.WaitFor("/168  play  "));
  EXPECT_TRUE(play.WaitFor("composition \"SampleEncrypted\", reel 1 of 1: "));
  play.Type(" ");
  EXPECT_TRUE(play.WaitFor("/168  pause  "));
  play.Type("q");
  EXPECT_EQ(play.Wait(), 0) << play.Screen();
  EXPECT_THAT(PositionKept(), MatchesRegex("12882066-0fed-5c52-83e0-cf5e3b96e2bb [0-9]+"));
}

// It is the last column that is left free: a line that reaches into it may wrap.
TEST_F(PlayOnTerminal, LateFramesShowOnANarrowTerminalToo) {
  TerminalProgram play({"play", m_Show.Path(), "--paused"}, 80);
  EXPECT_TRUE(
      play.WaitFor("\r00:00:00:00 of 0:07  0/168  pause  late 0  1/5 SampleTrailer  reel 1/1  next S\u2026\x1b[K"));
  play.Type("q");
  EXPECT_EQ(play.Wait(), 0);
}

TEST(LateText, SaysHowManyAndOfWhichChannels) {
  std::vector<ChannelStatistics> channels(3);
  channels[0].Name = "picture";
  channels[1].Name = "sound";
  channels[2].Name = "subtitle";
  EXPECT_EQ(LateText(channels), "late 0");
  channels[0].Late = 3;
  channels[2].Late = 2;
  EXPECT_EQ(LateText(channels), "late 5 (picture 3, subtitle 2)");
}

TEST_F(PlayOnTerminal, EndsWithASummaryOfEveryChannel) {
  TerminalProgram play({"play", m_Show.Path(), "--speed", "20", "--verify"});
  EXPECT_EQ(play.Wait(), 0) << play.Screen();
  for (const char* line :
       {"event SHOW_START\r\n", "event LIGHTS_DOWN\r\n", "event FEATURE_SECOND_1\r\n", "event CREDITS\r\n",
        "composition \"SampleImmersive\", reel 1 of 1: ", "Played 168 edit units in 0:0"})
    EXPECT_TRUE(play.WaitFor(line)) << line << play.Screen();
  for (const char* channel : {"  picture                 168 delivered  ", "  sound                   168 delivered  ",
                              "  subtitle                 72 delivered  ", "  closed caption           72 delivered  ",
                              "  auxiliary data           24 delivered  "}) {
    EXPECT_TRUE(play.WaitFor(channel)) << channel << play.Screen();
    EXPECT_TRUE(play.WaitFor(" late  "));
    EXPECT_TRUE(play.WaitFor(" repeated  wait p50 "));
    EXPECT_TRUE(play.WaitFor(" ms\r\n"));
  }
  EXPECT_TRUE(play.WaitFor("Verified 504 frames: all were read as they stand in their files. "));
}

TEST_F(PlayOnTerminal, GoesOnWhereItWasLeft) {
  {
    TerminalProgram play({"play", m_Show.Path(), "--paused", "--resume", m_Position});
    EXPECT_TRUE(play.WaitFor(" 0/168"));
    play.Type("l100\r");
    EXPECT_TRUE(play.WaitFor(" 100/168"));
    play.Type("q");
    EXPECT_EQ(play.Wait(), 0);
  }
  EXPECT_EQ(PositionKept(), "12882066-0fed-5c52-83e0-cf5e3b96e2bb 100");
  TerminalProgram play({"play", m_Show.Path(), "--paused", "--resume", m_Position});
  EXPECT_TRUE(play.WaitFor("00:00:04:04 of 0:07  100/168"));
  play.Type("q");
  EXPECT_EQ(play.Wait(), 0);
}

// Nothing but the position and the show is left, and the position is whole.
TEST_F(PlayOnTerminal, InterruptedItKeepsItsPosition) {
  TerminalProgram play({"play", m_Show.Path(), "--resume", m_Position});
  EXPECT_TRUE(play.WaitFor("composition \"SampleEncrypted\", reel 1 of 1: "));
  play.Type("\x03");
  EXPECT_EQ(play.Wait(), 4) << play.Screen();
  EXPECT_TRUE(play.WaitFor("Played "));
  EXPECT_THAT(PositionKept(), MatchesRegex("12882066-0fed-5c52-83e0-cf5e3b96e2bb [0-9]+"));
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(fs::path(m_Position).parent_path()))
    names.push_back(entry.path().filename());
  EXPECT_THAT(names, testing::UnorderedElementsAre("position", "show"));
}

TEST_F(PlayOnTerminal, KeysItDoesNotKnowAreNoCommand) {
  TerminalProgram play({"play", m_Show.Path(), "--paused"});
  EXPECT_TRUE(play.WaitFor(" 0/168"));
  // Delete, Ctrl-Right, Shift-Tab, F1 of two terminals, F5, F12, Alt-x, a mouse, and one that is no sequence.
  play.Type("\x1b[3~\x1b[1;5C\x1b[Z\x1bOP\x1b[[A\x1b[15~\x1b[24~\x1bx\x1b[<0;10;5M\x1b[1\x01\t");
  play.Type(".");
  EXPECT_TRUE(play.WaitFor(" 1/168"));
  play.Type("q");
  EXPECT_EQ(play.Wait(), 0);
  EXPECT_THAT(play.Screen(), testing::Not(HasSubstr("> ")));
}

TEST_F(PlayOnTerminal, ArrowsInPiecesAndOfTheApplicationModeAreArrows) {
  TerminalProgram play({"play", m_Show.Path(), "--paused"});
  EXPECT_TRUE(play.WaitFor(" 0/168"));
  play.Type("\x1b");
  play.Type("[C");
  EXPECT_TRUE(play.WaitFor(" 167/168"));
  play.Type("\x1bOD");
  EXPECT_TRUE(play.WaitFor(" 0/168"));
  play.Type("q");
  EXPECT_EQ(play.Wait(), 0);
}

TEST_F(PlayOnTerminal, EscapeGivesUpACommand) {
  TerminalProgram play({"play", m_Show.Path(), "--paused"});
  play.Type("l10");
  EXPECT_TRUE(play.WaitFor("\r> l10  00:00:00:00 of 0:07  0/168"));
  play.Type("\x1b");
  EXPECT_TRUE(play.WaitFor("\r00:00:00:00 of 0:07  0/168"));
  play.Type("l2\r");
  EXPECT_TRUE(play.WaitFor(" 2/168"));
  play.Type("q");
  EXPECT_EQ(play.Wait(), 0);
}

// What the keys Ctrl-C and Ctrl-\ send; the other two come from elsewhere.
TEST_F(PlayOnTerminal, LeavesTheTerminalAsItWasWhateverEndsIt) {
  for (const int number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
    TerminalProgram play({"play", m_Show.Path(), "--paused", "--resume", m_Position});
    EXPECT_TRUE(play.WaitFor(" 0/168"));
    EXPECT_FALSE(play.Echoes());
    if (number == SIGINT || number == SIGQUIT)
      play.Type(number == SIGINT ? "\x03" : "\x1c");
    else
      play.Signal(number);
    EXPECT_EQ(play.Wait(), 4) << number << play.Screen();
    EXPECT_TRUE(play.Echoes()) << number;
    EXPECT_EQ(PositionKept(), "12882066-0fed-5c52-83e0-cf5e3b96e2bb 0");
    fs::remove(m_Position);
  }
}

// The file is as long as half an hour's reading, all of it a hole.
TEST_F(PlayOnTerminal, VerifyingDigestsShowsProgressAndCanBeInterrupted) {
  fs::resize_file(m_Show.Path("Feature/sound-1.mxf"), std::uintmax_t{1} << 40);
  m_Show.ListSize("Feature/sound-1.mxf");
  m_Show.Remove("Feature/sound-2.mxf");
  TerminalProgram check({"check", m_Show.Path(), "--hash"});
  EXPECT_TRUE(check.WaitFor("Verifying [........................] ")) << check.Screen();
  EXPECT_TRUE(check.WaitFor(" of 1.10 TB, "));
  EXPECT_TRUE(check.WaitFor("/s, "));
  EXPECT_TRUE(check.WaitFor(" left"));
  check.Type("\x03");
  EXPECT_EQ(check.Wait(), 4);
  EXPECT_TRUE(check.WaitFor("strata: interrupted\r\n"));
  EXPECT_TRUE(check.WaitFor(" SampleFeature, reel 2, sound: A file of the package is missing.")) << check.Screen();
  EXPECT_TRUE(check.WaitFor("Interrupted: this is what was found until then.\r\n"));
}

TEST_F(PlayOnTerminal, MakingASampleShowsProgressAndCanBeInterrupted) {
  TerminalProgram maker({"make-sample", m_Show.Beside("long"), "--length", "600", "--size", "64x64"});
  EXPECT_TRUE(maker.WaitFor("Trailer: 600 seconds\r\n"));
  EXPECT_TRUE(maker.WaitFor("\rDrawing [........................] ")) << maker.Screen();
  EXPECT_TRUE(maker.WaitFor(" of 115200 pictures, "));
  EXPECT_TRUE(maker.WaitFor("/s, "));
  EXPECT_TRUE(maker.WaitFor(" left"));
  maker.Type("\x03");
  EXPECT_EQ(maker.Wait(), 4);
  EXPECT_TRUE(maker.WaitFor("\r\x1b[Kstrata: interrupted; nothing was left behind\r\n"));
}

}  // namespace
