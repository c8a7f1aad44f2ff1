// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Command.h>

#include "../../support/RecordCheck.h"

#include <gtest/gtest.h>

#include <string>

namespace Strata {
namespace {

// A command all of whose fields differ from the default, so that a test sees each one that changes.
Command Other() {
  Command command;
  command.type = CMD_STOP;
  command.position = 77;
  command.rate = 88;
  command.direction = DIR_REVERSE;
  command.filename = "show.xml";
  return command;
}

// Expects `command` to hold exactly these values, the file name still being Other's.
void ExpectFields(const Command& command, CommandType_t type, ui32_t position, ui32_t rate, Direction_t direction) {
  EXPECT_EQ(command.type, type);
  EXPECT_EQ(command.position, position);
  EXPECT_EQ(command.rate, rate);
  EXPECT_EQ(command.direction, direction);
  EXPECT_EQ(command.filename, "show.xml");
}

// Parses `text` over Other, which must succeed and leave these values.
void ExpectParsed(const std::string& text, CommandType_t type, ui32_t position, ui32_t rate, Direction_t direction) {
  SCOPED_TRACE(text);
  Command command = Other();
  EXPECT_TRUE(command.ParseCommand(text));
  EXPECT_EQ(command.LastError(), "");
  ExpectFields(command, type, position, rate, direction);
}

// Parses `text` over Other, which must fail with this error and leave these values.
void ExpectRefused(const std::string& text, const std::string& error, CommandType_t type) {
  SCOPED_TRACE(text);
  Command command = Other();
  EXPECT_FALSE(command.ParseCommand(text));
  EXPECT_EQ(command.LastError(), error);
  ExpectFields(command, type, 77, 88, DIR_REVERSE);
}

TEST(Command, NewCommandHasNoValue) {
  const Command command;
  EXPECT_EQ(command.type, CMD_NONE);
  EXPECT_EQ(command.LastError(), "");
  EXPECT_FALSE(command.HasValue());
}

TEST(Command, HasValueFollowsTheType) {
  Command command;
  command.type = CMD_STOP;
  EXPECT_TRUE(command.HasValue());
}

TEST(Command, QuestionMarkAnswersTheGrammar) {
  ExpectRefused("?", "(f|b|l<n>|t<n>|j(b|f)|p|s|?)", CMD_STOP);
}

TEST(Command, PlaySetsTypeAndDirectionOnly) {
  ExpectParsed("f", CMD_PLAY, 77, 88, DIR_FORWARD);
  ExpectParsed("b", CMD_PLAY, 77, 88, DIR_REVERSE);
}

TEST(Command, WhiteSpaceBeforeTheLetterIsSkipped) {
  ExpectParsed("  f", CMD_PLAY, 77, 88, DIR_FORWARD);
  ExpectParsed(" \t\n\v\f\rb", CMD_PLAY, 77, 88, DIR_REVERSE);
}

TEST(Command, PauseAndStopSetTheTypeOnly) {
  ExpectParsed("p", CMD_PAUSE, 77, 88, DIR_REVERSE);
  ExpectParsed("s", CMD_STOP, 77, 88, DIR_REVERSE);
}

TEST(Command, WhatFollowsALetterWithoutArgumentIsNotLookedAt) {
  ExpectParsed("f17", CMD_PLAY, 77, 88, DIR_FORWARD);
  ExpectParsed("stop", CMD_STOP, 77, 88, DIR_REVERSE);
}

TEST(Command, UpperCaseLettersAreUnknown) {
  for (const char* letter : {"F", "B", "L1", "T1", "JB", "P", "S"})
    ExpectRefused(letter, std::string("unxpected command letter: ") + letter[0], CMD_STOP);
}

TEST(Command, UnknownLetterIsNamed) {
  ExpectRefused("x", "unxpected command letter: x", CMD_STOP);
  ExpectRefused("  xyz", "unxpected command letter: x", CMD_STOP);
  ExpectRefused("\xC3\xA4", "unxpected command letter: \xC3", CMD_STOP);
}

TEST(Command, EmptyOrBlankTextHasNulAsItsLetter) {
  const std::string error("unxpected command letter: \0", 27);
  ASSERT_EQ(error.size(), 27u);
  ExpectRefused("", error, CMD_STOP);
  ExpectRefused("  \t", error, CMD_STOP);
}

TEST(Command, LocateTakesAPosition) {
  ExpectParsed("l100", CMD_LOCATE, 100, 88, DIR_REVERSE);
  ExpectParsed(" l 25 ", CMD_LOCATE, 25, 88, DIR_REVERSE);
  ExpectParsed("l+7x8", CMD_LOCATE, 7, 88, DIR_REVERSE);
}

TEST(Command, LocateWithoutDigitsIsZero) {
  ExpectParsed("lx", CMD_LOCATE, 0, 88, DIR_REVERSE);
  ExpectParsed("  l", CMD_LOCATE, 0, 88, DIR_REVERSE);
}

TEST(Command, NumbersLoseTheirSign) {
  ExpectParsed("l-25", CMD_LOCATE, 25, 88, DIR_REVERSE);
  ExpectParsed("t-4", CMD_SHUTTLE, 77, 4, DIR_REVERSE);
}

TEST(Command, NumbersAreCutTo32SignedBits) {
  ExpectParsed("l2147483647", CMD_LOCATE, 2147483647, 88, DIR_REVERSE);
  ExpectParsed("l2147483648", CMD_LOCATE, 2147483648, 88, DIR_REVERSE);  // the most negative number, without its sign
  ExpectParsed("l2147483649", CMD_LOCATE, 2147483647, 88, DIR_REVERSE);
  ExpectParsed("l4294967295", CMD_LOCATE, 1, 88, DIR_REVERSE);
  ExpectParsed("l4294967297", CMD_LOCATE, 1, 88, DIR_REVERSE);
  ExpectParsed("l99999999999999999999", CMD_LOCATE, 1, 88, DIR_REVERSE);   // ends at the largest long
  ExpectParsed("l-99999999999999999999", CMD_LOCATE, 0, 88, DIR_REVERSE);  // ends at the smallest long
}

TEST(Command, LocateAloneIsRefusedWithItsTypeSet) {
  ExpectRefused("l", "position argument required for locate: l<pos>", CMD_LOCATE);
}

TEST(Command, ShuttleTakesARateAndLeavesTheDirection) {
  ExpectParsed("t-3", CMD_SHUTTLE, 77, 3, DIR_REVERSE);
  ExpectParsed("t8", CMD_SHUTTLE, 77, 8, DIR_REVERSE);
}

TEST(Command, ShuttleAloneIsRefusedWithItsTypeSet) {
  ExpectRefused("t", "rate argument required for shuttle: t<rate>", CMD_SHUTTLE);
}

TEST(Command, JogTakesADirection) {
  ExpectParsed("jb", CMD_JOG, 77, 88, DIR_REVERSE);
  ExpectParsed("jf", CMD_JOG, 77, 88, DIR_FORWARD);
  ExpectParsed("jx", CMD_JOG, 77, 88, DIR_FORWARD);
  ExpectParsed("j b", CMD_JOG, 77, 88, DIR_FORWARD);
}

TEST(Command, JogAloneIsRefusedWithItsTypeSet) {
  ExpectRefused("j", "direction argument required for jog: j<b|f>", CMD_JOG);
}

TEST(Command, BlanksBeforeTheLetterCountAsItsArgument) {
  ExpectParsed(" j", CMD_JOG, 77, 88, DIR_FORWARD);
  ExpectParsed(" t", CMD_SHUTTLE, 77, 0, DIR_REVERSE);
}

TEST(Command, SuccessAfterAFailureClearsTheError) {
  Command command;
  EXPECT_FALSE(command.ParseCommand("j"));
  EXPECT_NE(command.LastError(), "");
  EXPECT_TRUE(command.ParseCommand("jf"));
  EXPECT_EQ(command.LastError(), "");
}

TEST(Command, WithoutFilenameTakes20BytesEndingInAZeroCount) {
  Command command;
  command.type = CMD_LOCATE;
  command.position = 0x01020304;
  command.rate = 5;
  command.direction = DIR_REVERSE;
  EXPECT_EQ(command.ArchiveLength(), 20u);
  EXPECT_EQ(StrataTest::Archived(command), StrataTest::Hex("00000002 01020304 00000005 00000001 00000000"));
}

TEST(Command, ArchiveLengthCountsTheFilename) {
  EXPECT_EQ(Other().ArchiveLength(), 28u);
}

TEST(Command, FormIsCutAtEveryByte) {
  Command after;
  after.type = CMD_SHUTTLE;
  after.position = 0x11223344;
  after.rate = 2;
  after.filename = "a.b";
  StrataTest::CheckRecord(Other(), after,
                          {StrataTest::Number("00000003", "00000006"), StrataTest::Number("11223344", "0000004d"),
                           StrataTest::Number("00000002", "00000058"), StrataTest::Number("00000000", "00000001"),
                           StrataTest::Text("00000003 612e62", "00000008 73686f772e786d6c")});
}

TEST(Command, ErrorTextDoesNotTravel) {
  Command command;
  EXPECT_FALSE(command.ParseCommand("j"));
  const StrataTest::Bytes form = StrataTest::Archived(command);
  EXPECT_EQ(form, StrataTest::Hex("00000004 00000000 00000000 00000000 00000000"));
  StrataTest::ReadWhole(command, form);
  EXPECT_EQ(command.LastError(), "direction argument required for jog: j<b|f>");
}

TEST(Command, ValuesThatAreNoEnumeratorAreTaken) {
  Command command;
  StrataTest::ReadWhole(command, StrataTest::Hex("000000ff 00000000 00000000 ffffffff 00000000"));
  EXPECT_EQ(static_cast<ui32_t>(command.type), 255u);
  EXPECT_EQ(static_cast<ui32_t>(command.direction), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace Strata
