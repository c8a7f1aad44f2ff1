// SPDX-License-Identifier: BSD-3-Clause
#include "Judges.h"
#include "ModelBuilder.h"
#include "TemporaryFolder.h"
#include "drawing/TimelineSvg.h"
#include "terminal/DisplayText.h"
#include "timeline/TimelineHtml.h"
#include "timeline/TimelineText.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace Tool;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* Hostile = "</script><script>alert(\"1\")</script> & 'Gro\u00dfe' \u6620\u753b\u9928 \x1b[2J";

/// Something of everything: a long and a short composition, nothing and too much at one place, names of all kinds.
TimelineModel Crowded() {
  ModelBuilder builder;
  builder.Add(Hostile, 3, 172800);
  builder.Add("One frame", 1, 1);
  builder.Add("", 2, 0);
  builder.AddMissing("Missing without length", 0);
  builder.AddMissing(Hostile, 24);
  for (int number = 0; number < 12; ++number) builder.Mark(Hostile, 172800);
  builder.Mark("End", builder.Model.Duration);
  TimelineModel model = builder.Model;
  model.Title = Hostile;
  model.Lanes[0].Tracks[1].Asset.KeyID = Cairn::UUID::FromHex("22222222-2222-4222-8222-222222222222").value();
  model.Lanes[0].Tracks[1].Stereoscopic = true;
  model.Lanes[1].Tracks[2].State = TimelineState::Broken;
  model.Lanes[1].Tracks[2].Problems = {Hostile};
  model.Lanes[1].Tracks[2].File = "/x/\xff<&>.mxf";
  model.Shows = {{{0, model.Duration, 0, model.Seconds}, {}, Hostile, "/x/show.xml", 0},
                 {{0, 1, 0, 1.0 / 24}, {}, Hostile, "/x/nested.xml", 1}};
  Tool::Finding& finding = model.Findings.emplace_back(Tool::FindingID::FileDamaged);
  finding.Found = finding.Place.CompositionTitle = Hostile;
  model.Code = ExitCode::NotPlayable;
  return model;
}

/// One reel of many that is missing.
TimelineModel ManyReels() {
  ModelBuilder builder;
  builder.Add("Many", 5000, 24);
  builder.Model.Lanes[0].Tracks[3001].State = TimelineState::Missing;
  return builder.Model;
}

void ExpectWellFormed(const std::string& svg) {
  const testsupport::TemporaryFolder folder;
  ASSERT_TRUE(Ferro::WriteStringIntoFile(folder.Path("a.svg"), svg).Success());
  testsupport::RunJudge({"xmllint", "--nonet", "--noout", folder.Path("a.svg")});
}

std::string LineOf(const std::string& text, const std::string& start) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    if (line.starts_with(start)) return line;
  return "";
}

TEST(TimelineText, DrawsToScale) {
  ModelBuilder builder;
  builder.Add("First", 2, 24).Description = "24 fps, 2 reels";
  builder.Add("Second", 1, 48);
  builder.Mark("GO", 24);
  builder.Model.Lanes[1].Tracks[1].State = TimelineState::Missing;
  EXPECT_EQ(
      TimelineText(builder.Model, {53, true}),
      "Show\n"
      "00:00:04:00, 96 edit units. All assets are there.\n"
      "\n"
      "Events                 \u25bcGO\n"
      "Time         \u25020:00     \u25020:01     \u25020:02     \u25020:03\n"
      "Compositions \u25021 First            \u25022 Second\n"
      "Reels        \u25021        \u25022        \u25021\n"
      "Picture      "
      "\u2502\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2502\u2588\u2588\u2588\u2588\u2588\u2588\u2588"
      "\u2588\u2588\u2502\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588"
      "\u2588\u2588\u2588\u2588\n"
      "Sound        \u2502\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2502X missing\u2502\u2588\u2588"
      "\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\n"
      "\n"
      "\u2588 plays; \u2593 encrypted; \u2592 unusual; \u00b7 silence, or no\n"
      "  sound; X missing; # broken\n"
      "\n"
      "  #  starts at    takes        title and what it is\n"
      "  1  00:00:00:00  00:00:02:00  First  24 fps, 2 reels\n"
      "  2  00:00:02:00  00:00:02:00  Second\n"
      "\n"
      "  \u25bc  00:00:01:00  GO\n");
}

TEST(TimelineText, ShortGapIsSeen) {
  ModelBuilder builder;
  builder.Add("Long", 1, 24 * 600);
  builder.Model.Lanes[1].Tracks[0].Duration -= 24;
  builder.Model.Lanes[1].Tracks[0].Seconds -= 1;
  builder.Model.Lanes[0].Tracks[0].Asset.Duration -= 24;
  EXPECT_THAT(TimelineText(builder.Model, {21, false}), HasSubstr("\nPicture      |=======\nSound        |======\n"));
}

TEST(TimelineText, NoLineIsLongerThanAsked) {
  for (const TimelineModel& model : {Crowded(), ManyReels(), TimelineModel()})
    for (const unsigned columns : {40U, 41U, 79U, 80U, 133U, 1000U}) {
      std::istringstream lines(TimelineText(model, {columns, true}));
      for (std::string line; std::getline(lines, line);) EXPECT_LE(ColumnsOf(line), columns) << line;
    }
}

TEST(TimelineText, WithoutUtf8ItIsAscii) {
  for (const char letter : TimelineText(Crowded(), {80, false}))
    EXPECT_TRUE(letter == '\n' || (letter >= ' ' && letter <= '~')) << static_cast<int>(letter);
}

TEST(TimelineText, ControlCharactersOfTitlesDoNotReachTheTerminal) {
  EXPECT_THAT(TimelineText(Crowded(), {80, true}), Not(HasSubstr("\x1b")));
}

TEST(TimelineText, OneMissingReelOfThousandsIsSeen) {
  EXPECT_THAT(LineOf(TimelineText(ManyReels(), {80, true}), "Picture"), HasSubstr("X"));
}

TEST(TimelineText, CompositionWithoutLengthIsSeenWhereItIsMissing) {
  EXPECT_THAT(LineOf(TimelineText(Crowded(), {80, true}), "Compositions"), HasSubstr("X"));
}

TEST(TimelineText, EventsThatFindNoRowAreCounted) {
  EXPECT_THAT(TimelineText(Crowded(), {80, true}), HasSubstr("more: see below"));
}

TEST(TimelineSvg, IsWellFormedWhateverTheTextsHold) {
  ExpectWellFormed(TimelineSvg(Crowded()));
}

TEST(TimelineSvg, EmptyShowIsDrawn) {
  ExpectWellFormed(TimelineSvg(TimelineModel()));
}

TEST(TimelineSvg, ThousandsOfReelsAreDrawnAsOneWithTheMissingOneOnTop) {
  const std::string svg = TimelineSvg(ManyReels());
  ExpectWellFormed(svg);
  EXPECT_LT(svg.size(), 30'000U);
  EXPECT_THAT(svg, HasSubstr(">4999 reels<"));
  EXPECT_GT(svg.rfind("class=\"missing\" x="), svg.find("Picture, 4999 reels"));
}

TEST(TimelineSvg, RefersToNothingOutside) {
  const std::string svg = TimelineSvg(Crowded());
  EXPECT_THAT(svg, Not(HasSubstr("href")));
  EXPECT_EQ(CountOf(svg, "url("), CountOf(svg, "url(#"));
}

TEST(TimelineSvg, TellsOfEachLookInWords) {
  ModelBuilder builder;
  builder.Add("A", 5, 240);
  auto& tracks = builder.Model.Lanes[1].Tracks;
  tracks[0].State = TimelineState::Missing;
  tracks[1].State = TimelineState::Broken;
  tracks[2].State = TimelineState::Silence;
  tracks[3].State = TimelineState::NoSound;
  tracks[4].Asset.EntryPoint = 12;
  tracks[4].Asset.IntrinsicDuration = 300;
  const std::string svg = TimelineSvg(builder.Model);
  for (const char* word :
       {">missing</text>", ">broken</text>", ">silence</text>", ">no sound</text>", ">from 12</text>"})
    EXPECT_THAT(svg, HasSubstr(word));
  EXPECT_EQ(CountOf(svg, "class=\"trim\""), 4U);  // the head's and the tail's, there and in the legend
}

TEST(TimelineHtml, TitlesCannotEndTheScript) {
  const std::string html = TimelineHtml(Crowded());
  EXPECT_EQ(CountOf(html, "<script"), 2U);
  EXPECT_EQ(CountOf(html, "</script>"), 2U);
  EXPECT_THAT(html, HasSubstr("\\u003c/script>\\u003cscript>alert"));
  EXPECT_THAT(html, HasSubstr("<title>&lt;/script&gt;"));
}

TEST(TimelineHtml, RefersToNothingOutside) {
  const std::string html = TimelineHtml(Crowded());
  for (const char* reference : {"src=", "@import", "fetch(", "XMLHttpRequest", "https:"})
    EXPECT_THAT(html, Not(HasSubstr(reference)));
  EXPECT_EQ(CountOf(html, "href"), CountOf(html, "{href: '#page'}"));
  EXPECT_EQ(CountOf(html, "url("), CountOf(html, "url(#"));
  EXPECT_EQ(CountOf(html, "http:"), CountOf(html, "http://www.w3.org/2000/svg"));
  EXPECT_THAT(html, HasSubstr("default-src 'none'"));
}

TEST(TimelineHtml, FindingsAndRowsAreLinksAndTheVerdictIsTheHeadline) {
  const std::string html = TimelineHtml(Crowded());
  EXPECT_THAT(html, HasSubstr("make('h1', {class: model.exit_code === 0 ? 'verdict' : 'alarmed'}, model.verdict)"));
  EXPECT_THAT(html, HasSubstr("composition ? link(text, act) : text"));
  EXPECT_THAT(html, HasSubstr("model.compositions[finding.composition_number - 1]"));
}

TEST(TimelineHtml, HoldsThePictureForPagesWithoutScripting) {
  EXPECT_THAT(TimelineHtml(Crowded()), HasSubstr("<noscript><svg "));
}

}  // namespace
