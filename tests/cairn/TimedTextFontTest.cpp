// SPDX-License-Identifier: BSD-3-Clause
#include "TimedTextFixture.h"

namespace {

using Cairn::TextField;
using Cairn::TextFont;
using testing::ElementsAre;
using testing::IsEmpty;

class TimedTextFont : public CairnTest::TimedTextTest {
 protected:
  static std::string LoadFont(const std::string& id, int number = 2) {
    return "<LoadFont ID='" + id + "'>urn:uuid:00000000-0000-4000-8000-00000000000" + std::to_string(number) +
           "</LoadFont>";
  }

  /// The font of a run within a Font element of those attributes.
  const TextFont& ReadFont(const std::string& attributes, const std::string& year = "2014") {
    Read(SMPTE("<Font " + attributes + ">" + Instance("<Text>a</Text>") + "</Font>", "", year));
    return Font();
  }
};

TEST_F(TimedTextFont, WithoutFontElementsAllHasItsDefault) {
  Read(SMPTE(Instance("<Text>a</Text>")));
  EXPECT_EQ(Font(), TextFont());
  EXPECT_EQ(Font().Size.Value, 42U);
  EXPECT_EQ(Font().Color.Value, 0xFFFFFFFFU);
  EXPECT_EQ(Font().EffectColor.Value, 0xFF000000U);
  EXPECT_EQ(Font().Effect.Value, Cairn::TextEffect_t::Shadow);
  EXPECT_EQ(Font().EffectSize, (TextField<double>{0.01, 0}));
  EXPECT_EQ(Font().LoadFont.Value, TextFont::NoLoadFont);
}

TEST_F(TimedTextFont, EachAttributeIsInheritedUntilACloserOneSaysOtherwise) {
  Read(SMPTE("<Font Size='48' Color='80FFFF00'>\n" +
             Instance("<Font Italic='yes' Size='36'>\n<Text>a<Font Weight='bold'>b</Font>c</Text></Font>") +
             "</Font>"));
  ASSERT_EQ(Line().RunList.size(), 3U);
  const TextFont& outer = Font(0);
  EXPECT_EQ(outer.Size, (TextField<Cairn::ui32_t>{36, 3}));
  EXPECT_EQ(outer.Color, (TextField<Cairn::ui32_t>{0x80FFFF00, 2}));
  EXPECT_EQ(outer.Italic, (TextField<Cairn::TextSlant_t>{Cairn::TextSlant_t::Right, 3}));
  EXPECT_FALSE(outer.IsBold.IsPresent());
  EXPECT_EQ(Font(1).Size.Value, 36U);
  EXPECT_EQ(Font(1).IsBold, (TextField<bool>{true, 4}));
  EXPECT_EQ(Line().RunList[2].Font, Line().RunList[0].Font);
  EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(TimedTextFont, InteropFontsNestFreely) {
  Read(Interop("<Font Size='30'><Font Size='31'>" +
               Instance("<Font Size='32'><Font Script='sub'><Text>a<Font Size='33'>b<Font Size='34'>c</Font></Font>"
                        "</Text></Font></Font>") +
               "</Font></Font>"));
  EXPECT_THAT(Problems(), IsEmpty());
  ASSERT_EQ(Line().RunList.size(), 3U);
  EXPECT_EQ(Font(0).Size.Value, 32U);
  EXPECT_EQ(Font(1).Size.Value, 33U);
  EXPECT_EQ(Font(2).Size.Value, 34U);
  EXPECT_EQ(Font(2).Script.Value, Cairn::TextScript_t::Sub);
}

TEST_F(TimedTextFont, SMPTEFontsAreOneDeepAtEachLevel) {
  Read(SMPTE("<Font>\n<Font>\n" +
             Instance("<Font>\n<Font><Text><Font>\n<Font>a</Font></Font></Text></Font>\n<Image>urn:uuid:00000000-0000-"
                      "4000-8000-000000000009</Image></Font>") +
             "</Font></Font>"));
  EXPECT_THAT(Problems(), ElementsAre("3 misplaced Font [] []", "6 misplaced Font [] []", "5 misplaced Font [] []",
                                      "7 misplaced Image [] []"));
  EXPECT_EQ(Line().Characters(), "a");
}

TEST_F(TimedTextFont, TheIdentifierNamesTheFirstFontLoadedUnderIt) {
  Read(SMPTE("<Font ID='b'>" + Instance("<Text>a</Text>") + "</Font>", LoadFont("a") + LoadFont("b", 3)));
  EXPECT_EQ(Font().LoadFont, (TextField<Cairn::ui32_t>{1, 2}));
  Read(SMPTE("<Font Size='40'>" + Instance("<Text>a</Text>") + "</Font>", LoadFont("a") + LoadFont("b", 3)));
  EXPECT_EQ(Font().LoadFont, (TextField<Cairn::ui32_t>{0, 0}));
  EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(TimedTextFont, AnIdentifierThatNothingWasLoadedUnderIsTheDevicesFont) {
  Read(SMPTE("<Font ID='A'>" + Instance("<Text>a</Text>") + "</Font>", LoadFont("a")));
  EXPECT_EQ(Font().LoadFont, (TextField<Cairn::ui32_t>{TextFont::NoLoadFont, 2}));
  EXPECT_THAT(Problems(), ElementsAre("2 not loaded Font/@ID [A] []"));
}

TEST_F(TimedTextFont, AllAttributesAreRead) {
  const TextFont& font = ReadFont(
      "Script='super' Effect='none' Italic='left' Underline='yes' Weight='bold' Color='01020304' "
      "EffectColor='aBcDeF09' Size='39' AspectAdjust='0.8' Spacing='-.5' EffectSize='+0.05' Feather='yes'");
  EXPECT_THAT(Problems(), IsEmpty());
  EXPECT_EQ(font.Script.Value, Cairn::TextScript_t::Super);
  EXPECT_EQ(font.Effect.Value, Cairn::TextEffect_t::None);
  EXPECT_EQ(font.Italic.Value, Cairn::TextSlant_t::Left);
  EXPECT_TRUE(font.Underline.Value);
  EXPECT_TRUE(font.IsBold.Value);
  EXPECT_EQ(font.Color.Value, 0x01020304U);
  EXPECT_EQ(font.EffectColor.Value, 0xABCDEF09U);
  EXPECT_EQ(font.Size.Value, 39U);
  EXPECT_EQ(font.AspectAdjust.Value, 0.8);
  EXPECT_EQ(font.Spacing.Value, -0.5);
  EXPECT_EQ(font.EffectSize.Value, 0.05);
  EXPECT_TRUE(font.Feather.Value);
}

struct FontForm {
  std::string Attribute;
  std::string Problem;  // without "2 ", as Problems() has it
};

TEST_F(TimedTextFont, ProblemsSayWhatIsUsedInstead) {
  const FontForm forms[] = {
      {"Size='0'", "out of range Font/@Size [0] [42]"},
      {"Size='4294967296'", "out of range Font/@Size [4294967296] [42]"},
      {"Size='42.5'", "malformed Font/@Size [42.5] [42]"},
      {"Color='FFFF00'", "malformed Font/@Color [FFFF00] [FFFFFF00]"},
      {"Color='FFFF0'", "malformed Font/@Color [FFFF0] [FFFFFFFF]"},
      {"Color='0xFFFF00'", "malformed Font/@Color [0xFFFF00] [FFFFFFFF]"},
      {"Color='-FFFFFFF'", "malformed Font/@Color [-FFFFFFF] [FFFFFFFF]"},
      {"Effect='outline'", "malformed Font/@Effect [outline] [border]"},
      {"Effect='glow'", "malformed Font/@Effect [glow] [shadow]"},
      {"Italic='Yes'", "malformed Font/@Italic [Yes] [no]"},
      {"Underline='1'", "malformed Font/@Underline [1] [no]"},
      {"Underlined='yes'", "other edition Font/@Underlined [yes] [yes]"},
      {"AspectAdjust='0.2'", "out of range Font/@AspectAdjust [0.2] [0.25]"},
      {"AspectAdjust='4.01'", "out of range Font/@AspectAdjust [4.01] [4]"},
      {"AspectAdjust='1e0'", "malformed Font/@AspectAdjust [1e0] [1]"},
      {"AspectAdjust=''", "malformed Font/@AspectAdjust [] [1]"},
      {"AspectAdjust='+-1'", "malformed Font/@AspectAdjust [+-1] [1]"},
      {"AspectAdjust='nan'", "malformed Font/@AspectAdjust [nan] [1]"},
      {"Spacing='-1.1'", "out of range Font/@Spacing [-1.1] [-1]"},
      {"Spacing='0.1em'", "other edition Font/@Spacing [0.1em] [0.1]"},
      {"Spacing='em'", "malformed Font/@Spacing [] [0]"},
      {"EffectSize='-1'", "out of range Font/@EffectSize [-1] [0]"},
      {"Blink='yes'", "unknown Font/@Blink [yes] []"},
  };
  for (const FontForm& form : forms) {
    ReadFont(form.Attribute);
    EXPECT_THAT(Problems(), ElementsAre("2 " + form.Problem)) << form.Attribute;
  }
}

TEST_F(TimedTextFont, AMalformedAttributeLeavesTheInheritedOne) {
  Read(SMPTE("<Font Size='50'>" + Instance("<Font Size='big'><Text>a</Text></Font>") + "</Font>"));
  EXPECT_EQ(Font().Size, (TextField<Cairn::ui32_t>{50, 2}));
  EXPECT_THAT(Problems(), ElementsAre("2 malformed Font/@Size [big] [50]"));
}

TEST_F(TimedTextFont, AttributesOfLaterEditionsAreReadAndNamed) {
  EXPECT_EQ(ReadFont("EffectSize='0.05'", "2010").EffectSize.Value, 0.05);
  EXPECT_THAT(Problems(), ElementsAre("2 other edition Font/@EffectSize [0.05] [0.05]"));
  EXPECT_EQ(ReadFont("Italic='left'", "2010").Italic.Value, Cairn::TextSlant_t::Left);
  EXPECT_THAT(Problems(), ElementsAre("2 other edition Font/@Italic [left] [left]"));
  EXPECT_EQ(ReadFont("Spacing='0.1'", "2007").Spacing.Value, 0.1);
  EXPECT_THAT(Problems(), ElementsAre("2 other edition Font/@Spacing [0.1] [0.1]"));
  ReadFont("Spacing='0.1' AspectAdjust='1.0'", "2010");
  EXPECT_THAT(Problems(), IsEmpty());
  ReadFont("EffectSize='0.1' Feather='no' Italic='right'", "2031");
  EXPECT_THAT(Problems(), ElementsAre(testing::StartsWith("1 other edition SubtitleReel")));
}

TEST_F(TimedTextFont, InteropLengthsHaveAUnit) {
  Read(Interop("<Font Spacing='0.1em'>" + Instance("<Text>a<Font Spacing='0.2'>b</Font></Text>") + "</Font>"));
  EXPECT_EQ(Font(0).Spacing.Value, 0.1);
  EXPECT_EQ(Font(1).Spacing.Value, 0.2);
  EXPECT_THAT(Problems(), ElementsAre("2 other edition Font/@Spacing [0.2] [0.2]"));
}

TEST_F(TimedTextFont, NamespacesAndSchemaLocationsAreNoAttributes) {
  ReadFont("xmlns:x='urn:x' xml:lang='fr' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='false'");
  EXPECT_THAT(Problems(), IsEmpty());
}

}  // namespace
