// SPDX-License-Identifier: BSD-3-Clause
#include "TimedTextFixture.h"

#include <chrono>

namespace {

using Cairn::TextField;
using testing::ElementsAre;
using testing::IsEmpty;

class TimedTextLine : public CairnTest::TimedTextTest {
 protected:
  const Cairn::TextLine& ReadLine(const std::string& text, const std::string& year = "2014") {
    Read(SMPTE(Instance(text), "", year));
    return Line();
  }
};

TEST_F(TimedTextLine, PlacesHaveTheirDefaults) {
  const Cairn::TextLine& line = ReadLine("<Text>a</Text>");
  EXPECT_EQ(line.Place, Cairn::TextPlace());
  EXPECT_EQ(line.Place.Halign.Value, Cairn::TextHalign_t::Center);
  EXPECT_EQ(line.Place.Valign.Value, Cairn::TextValign_t::Center);
  EXPECT_EQ(line.Direction, (TextField<Cairn::TextDirection_t>{Cairn::TextDirection_t::LeftToRight, 0}));
}

TEST_F(TimedTextLine, PlacesAreRead) {
  const Cairn::TextLine& line = ReadLine(
      "<LoadVariableZ ID='z'>1 2</LoadVariableZ><Text Halign='right' Hposition='10' Valign='top' "
      "Vposition='-2.5' Direction='btt' Zposition='-1' VariableZ='z'>a</Text>");
  EXPECT_EQ(line.Place.Halign.Value, Cairn::TextHalign_t::Right);
  EXPECT_EQ(line.Place.Hposition.Value, 10);
  EXPECT_EQ(line.Place.Valign.Value, Cairn::TextValign_t::Top);
  EXPECT_EQ(line.Place.Vposition.Value, -2.5);
  EXPECT_EQ(line.Place.Zposition, (TextField<double>{-1, 2}));
  EXPECT_EQ(line.Place.VariableZ.Value, "z");
  EXPECT_EQ(line.Direction.Value, Cairn::TextDirection_t::BottomToTop);
  EXPECT_THAT(m_Document.InstanceList.at(0).VariableZList, ElementsAre(Cairn::TextVariableZ{"z", "1 2", 2}));
  EXPECT_THAT(Problems(), IsEmpty());
}

struct PlaceForm {
  std::string Text;
  std::string Year;
  std::string Problem;
};

TEST_F(TimedTextLine, ProblemsOfPlacesSayWhatIsUsedInstead) {
  const PlaceForm forms[] = {
      {"<Text Vposition='100.5'>a</Text>", "2014", "out of range Text/@Vposition [100.5] [100]"},
      {"<Text Vposition='-101'>a</Text>", "2014", "out of range Text/@Vposition [-101] [-100]"},
      {"<Text Vposition='8%'>a</Text>", "2014", "malformed Text/@Vposition [8%] [0]"},
      {"<Text Valign='lower'>a</Text>", "2014", "malformed Text/@Valign [lower] [center]"},
      {"<Text VAlign='bottom'>a</Text>", "2014", "other edition Text/@VAlign [bottom] [bottom]"},
      {"<Text Direction='vertical'>a</Text>", "2014", "malformed Text/@Direction [vertical] [ltr]"},
      {"<Text Direction='hor'>a</Text>", "2010", "other edition Text/@Direction [hor] [hor]"},
      {"<Text Zposition='1'>a</Text>", "2010", "other edition Text/@Zposition [1] [1]"},
      {"<Text VariableZ='z'>a</Text>", "2014", "not loaded Subtitle/*/@VariableZ [z] []"},
      {"<Text>a</Text><LoadVariableZ>1</LoadVariableZ>", "2014", "missing LoadVariableZ/@ID [] []"},
      {"<Text>a</Text>b", "2014", "misplaced Subtitle [b] []"},
      {"<Text>a</Text><Line>b</Line>", "2014", "unknown Line [b] []"},
  };
  for (const PlaceForm& form : forms) {
    ReadLine(form.Text, form.Year);
    EXPECT_THAT(Problems(), ElementsAre("2 " + form.Problem)) << form.Text;
  }
}

TEST_F(TimedTextLine, TheOtherSpellingPlacesTheLineAllTheSame) {
  EXPECT_EQ(ReadLine("<Text VAlign='bottom' VPosition='8'>a</Text>").Place.Vposition.Value, 8);
  Read(Interop(Instance("<Text Valign='bottom' ZPosition='1'>a</Text>")));
  EXPECT_EQ(Line().Place.Valign.Value, Cairn::TextValign_t::Bottom);
  EXPECT_EQ(Line().Place.Zposition.Value, 1);
  EXPECT_THAT(Problems(),
              ElementsAre("2 other edition Text/@Valign [bottom] [bottom]", "2 other edition Text/@ZPosition [1] [1]"));
}

TEST_F(TimedTextLine, AllTextIsReadInItsOrder) {
  const Cairn::TextLine& line =
      ReadLine("<Text>a<Font Size='40'>b &amp; <![CDATA[<]]></Font><!-- not this -->c &#x1F600;</Text>");
  EXPECT_EQ(line.Characters(), "ab & <c \xF0\x9F\x98\x80");
  EXPECT_EQ(line.RunList.size(), 3U);
}

TEST_F(TimedTextLine, UnknownElementsKeepTheirCharacters) {
  EXPECT_EQ(ReadLine("<Text>a<i>b</i>c</Text>").Characters(), "abc");
  EXPECT_EQ(Line().RunList.size(), 1U);
  EXPECT_THAT(Problems(), ElementsAre("2 unknown i [b] []"));
}

TEST_F(TimedTextLine, RunsHaveTheirKinds) {
  const Cairn::TextLine& line = ReadLine(
      "<Text>a<Ruby><Rb>base</Rb><Rt Size='0.4' Position='after' Offset='-0.1' Spacing='0.2' AspectAdjust='2'>over</Rt>"
      "</Ruby><Space/><Space Size='-0.25'/><HGroup>12</HGroup><Rotate Direction='left'>x</Rotate><Rotate>y</Rotate>"
      "</Text>");
  EXPECT_THAT(Problems(), IsEmpty());
  std::vector<decltype(Cairn::TextRun::Content)> contents;
  for (const Cairn::TextRun& run : line.RunList) contents.push_back(run.Content);
  using Content = decltype(Cairn::TextRun::Content);
  EXPECT_THAT(contents,
              ElementsAre(Content(Cairn::TextCharacters{"a"}),
                          Content(Cairn::TextRuby{"base", "over", Cairn::RubyPosition_t::After, 0.4, -0.1, 0.2, 2}),
                          Content(Cairn::TextSpace{0.5}), Content(Cairn::TextSpace{-0.25}),
                          Content(Cairn::TextGroup{"12"}), Content(Cairn::TextRotate{"x", Cairn::TextRotation_t::Left}),
                          Content(Cairn::TextRotate{"y", Cairn::TextRotation_t::None})));
  EXPECT_EQ(line.Characters(), "abase12xy");
}

TEST_F(TimedTextLine, RubyIsReadAsFarAsItGoes) {
  const Cairn::TextLine& line = ReadLine("<Text><Ruby><Rt Size='0'>over</Rt><Rt>twice</Rt></Ruby></Text>");
  EXPECT_EQ(std::get<Cairn::TextRuby>(line.RunList.at(0).Content).Annotation, "over");
  EXPECT_THAT(Problems(),
              ElementsAre("2 repeated Rt [twice] []", "2 missing Ruby/Rb [] []", "2 out of range Rt/@Size [0] [0.01]"));
}

TEST_F(TimedTextLine, RubyInsideAFontIsMisplaced) {
  EXPECT_EQ(ReadLine("<Text><Font Size='40'><HGroup>12</HGroup></Font></Text>").Characters(), "12");
  EXPECT_EQ(Font().Size.Value, 40U);
  EXPECT_THAT(Problems(), ElementsAre("2 misplaced HGroup [] []"));
}

TEST_F(TimedTextLine, TheDocumentsOwnLayoutIsNoText) {
  const std::pair<std::string, std::string> forms[] = {
      {"<Text>\n   one\n   two\n  </Text>", "one two"},
      {"<Text>\n  <Font>one</Font>\n  <Font>two</Font>\n</Text>", "one two"},
      {"<Text>  one  two  </Text>", "  one  two  "},
      {"<Text>one\ttwo</Text>", "one two"},
      {"<Text> </Text>", " "},
      {"<Text>\n</Text>", ""},
      {"<Text>one \n</Text>", "one"},
      {"<Text><Font Size='9'>\n</Font><Font Size='8'>\n</Font>one</Text>", "one"},
      {"<Text></Text>", ""},
      {"<Text>\r\n one\r\n</Text>", "one"},
  };
  for (const auto& [text, expected] : forms) {
    EXPECT_EQ(ReadLine(text).Characters(), expected) << text;
    for (const Cairn::TextRun& run : Line().RunList)
      EXPECT_NE(run.Content, decltype(run.Content)(Cairn::TextCharacters())) << text;
  }
}

TEST_F(TimedTextLine, AnEmptyLineIsALineWithoutRuns) {
  EXPECT_THAT(ReadLine("<Text/>").RunList, IsEmpty());
  EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(TimedTextLine, TextsAndImagesStandInDocumentOrderWhateverFontsAreAroundThem) {
  Read(Interop(Instance("<Font><Text>a</Text><Image>1.png</Image></Font><Text>b</Text><Image>2.png</Image>")));
  const Cairn::TextInstance& instance = m_Document.InstanceList.at(0);
  EXPECT_EQ(instance.TextList.at(0).Characters(), "a");
  EXPECT_EQ(instance.TextList.at(1).Characters(), "b");
  EXPECT_EQ(instance.ImageList.at(1).Resource.Path, "2.png");
  EXPECT_THAT(Problems(), IsEmpty());
}

// Documents whose cost would grow with the square of their size, or which would swell in memory.

using Clock = std::chrono::steady_clock;

TEST_F(TimedTextLine, TooManyInstancesAreRefused) {
  std::string list;
  for (size_t i = 0; i < Cairn::TimedText::MaxInstanceCount; ++i) list += "<Subtitle/>";
  Read(Interop(list));
  EXPECT_EQ(m_Document.InstanceList.size(), Cairn::TimedText::MaxInstanceCount);
  EXPECT_EQ(m_Document.ProblemList.size(), Cairn::TimedText::MaxProblemCount);
  EXPECT_EQ(m_Document.ProblemCount, 3 * Cairn::TimedText::MaxInstanceCount);
  EXPECT_EQ(m_Document.DecodeXML(Interop(list + "<Subtitle/>")), Ferro::RESULT_TOOLARGE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("Timed text refused: it has more than 100000 instances\n"));
  EXPECT_EQ(m_Document, Cairn::TimedText());
}

TEST_F(TimedTextLine, ALineOfManyEmptyFontsTakesNoLongerThanItIsLong) {
  std::string text;
  for (int i = 0; i < 200'000; ++i) text += "<Font Size='9'>\n</Font>";
  const auto begin = Clock::now();
  EXPECT_THAT(ReadLine("<Text>" + text + "</Text>").RunList, IsEmpty());
  EXPECT_LT(Clock::now() - begin, std::chrono::seconds(30));
}

TEST_F(TimedTextLine, ManyListsOfDepthsTakeNoLongerThanTheyAreLong) {
  std::string text;
  for (int i = 0; i < 100'000; ++i)
    text += "<LoadVariableZ ID='" + std::to_string(i) + "'/><Text VariableZ='x" + std::to_string(i) + "'/>";
  const auto begin = Clock::now();
  ReadLine(text);
  EXPECT_EQ(m_Document.ProblemCount, 100'000U);
  EXPECT_LT(Clock::now() - begin, std::chrono::seconds(30));
}

TEST_F(TimedTextLine, FoundTextsAreCutBetweenCharacters) {
  std::string name(79, 'a');
  ReadLine("<Text Valign='" + name + "\xC3\xA9'>a</Text>");
  EXPECT_EQ(m_Document.ProblemList.at(0).Found, name);
}

}  // namespace
