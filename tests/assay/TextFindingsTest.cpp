// SPDX-License-Identifier: BSD-3-Clause
#include "SamplePackage.h"
#include "SampleText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using testsupport::NamesIn;
using testsupport::SampleText;
using enum testsupport::SampleText::Kind;
using Names = std::vector<std::string>;

Names After(const std::string& from, const std::string& to, SampleText::Kind kind = SMPTE) {
  return NamesIn(SampleText(kind).Edit(from, to));
}

Names AsCaption(const std::string& from, const std::string& to) {
  return NamesIn(SampleText().Edit(from, to).AsCaption());
}

/// A subtitle in the sample's font from one time to another, with whatever follows the times.
std::string Subtitle(const std::string& in, const std::string& out, const std::string& more = "") {
  return "<Font ID=\"Main\"><Subtitle TimeIn=\"00:00:" + in + "\" TimeOut=\"00:00:" + out + "\"" + more +
         "><Text Valign=\"bottom\" Vposition=\"8\">two</Text></Subtitle></Font>";
}

/// The sample with these subtitles alone.
Names Of(const std::string& subtitles) {
  return NamesIn(SampleText().Subtitles(subtitles));
}

std::string Lines(size_t count) {
  std::string lines;
  for (size_t i = count; i > 0; --i)
    lines += "<Text Valign=\"bottom\" Vposition=\"" + std::to_string(i * 5) + "\">two</Text>\n";
  return lines;
}

std::string Images(size_t count) {
  std::string images;
  for (size_t i = 0; i < count; ++i)
    images += "<Image Vposition=\"8\">urn:uuid:0f0f0f0f-1111-4222-8333-000000000032</Image>";
  return images;
}

TEST(TextFindings, NothingIsWrongWithSoundTexts) {
  for (const SampleText::Kind kind : {SMPTE, Interop}) {
    EXPECT_EQ(NamesIn(SampleText(kind)), Names{});
    EXPECT_EQ(NamesIn(SampleText(kind).AsCaption()), Names{});
  }
}

TEST(TextFindings, TheFormIsThatOfTexts) {
  const Names schema{"text-schema"};
  EXPECT_EQ(After("<IssueDate>2024-03-01T09:00:00Z</IssueDate>\n", ""), schema);
  EXPECT_EQ(After("Vposition=\"14\"", "Vposition=\"100.5\""), schema);
  EXPECT_EQ(After("Vposition=\"14\"", "Vposition=\"low\""), schema);
  EXPECT_EQ(After("Vposition=\"14\"", "VPosition=\"14\" Vposition=\"9\""), schema);
  EXPECT_EQ(After("<StartTime>00:00:00:00", "<StartTime>0"), schema);
  EXPECT_EQ(After("TimeIn=\"00:00:07:00\"", "TimeIn=\"00:00:07:24\""), schema);  // there are units 0 to 23
  EXPECT_EQ(After("TimeIn=\"00:00:07:00\"", "TimeIn=\"00:00:07:23\""), Names{});
  EXPECT_EQ(After("/2014/DCST", "/2099/DCST"), schema);
  EXPECT_EQ(After("</SubtitleReel>", "</Subtitle>"), Names{"xml-malformed"});
  EXPECT_EQ(After("encoding=\"UTF-8\"", "encoding=\"UTF-8\" standalone=\"yes\""), Names{"xml-constraints"});
}

TEST(TextFindings, WhatCannotBeTakenIsOfTheFormToo) {
  const Names schema{"text-schema"};
  EXPECT_EQ(After("TimeIn=\"00:00:07:000\"", "TimeIn=\"00:00:07:250\"", Interop), schema);  // there are ticks 0 to 249
  EXPECT_EQ(After("TimeIn=\"00:00:07:000\"", "TimeIn=\"00:00:07:249\"", Interop), Names{});
  EXPECT_EQ(
      After("<Text Valign=\"bottom\" Vposition=\"14\">", "<Text Valign=\"bottom\" Vposition=\"14\" VariableZ=\"z\">"),
      schema);
  EXPECT_EQ(After("<EditRate>24 1", "<EditRate>0 1"), schema);
}

TEST(TextFindings, OneFaultOfFormStandsForAll) {
  const auto findings = testsupport::FindIn({SampleText().EditAll("Valign", "Align")}, {});
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].Found, "Text has the unknown attribute Align, 2 more");
  EXPECT_EQ(findings[0].Place.Line, 16U);
}

TEST(TextFindings, TooManyTextsAreRefused) {
  std::string many;
  const std::string one = "<Subtitle TimeIn=\"00:00:05:00\" TimeOut=\"00:00:06:00\"><Text>x</Text></Subtitle>";
  for (size_t i = 0; i <= Cairn::TimedText::MaxInstanceCount; ++i) many += one;
  EXPECT_EQ(Of(many), Names{"text-schema"});
}

TEST(TextFindings, IdentifiersAreThoseOfThePackage) {
  const Names id{"text-id"};
  SampleText other;
  other.ResourceID = *Assay::UUID::FromHex("0f0f0f0f-1111-4222-8333-000000000099");
  EXPECT_EQ(NamesIn(other), id);
  SampleText same;
  same.FileID = same.ResourceID;
  EXPECT_EQ(NamesIn(same), id);
  EXPECT_EQ(After("000000000014</SubtitleID>", "000000000015</SubtitleID>", Interop), id);
}

TEST(TextFindings, SMPTETextsLoadOneFontWithAName) {
  const Names load{"text-font-load"};
  const std::string font = "<LoadFont ID=\"Main\">urn:uuid:0f0f0f0f-1111-4222-8333-000000000031</LoadFont>\n";
  EXPECT_EQ(After(font, ""), load);
  EXPECT_EQ(After(font, font + "<LoadFont ID=\"Other\">urn:uuid:0f0f0f0f-1111-4222-8333-000000000031</LoadFont>\n"),
            load);
  EXPECT_EQ(After("<LoadFont ID=\"Main\"", "<LoadFont ID=\"\""), load);
  EXPECT_EQ(After("<LoadFont ID=\"Main\"", "<LoadFont"), load);
  EXPECT_EQ(After("<Font ID=\"Main\"", "<Font ID=\"Other\""), load);
  EXPECT_EQ(After("<Font ID=\"Main\"", "<Font"), Names{});
  const std::string images = "<Subtitle TimeIn=\"00:00:05:00\" TimeOut=\"00:00:06:00\">" + Images(1) + "</Subtitle>";
  EXPECT_EQ(NamesIn(SampleText().Subtitles(images).Edit(font, "")), Names{});  // pictures alone
}

TEST(TextFindings, ManyFaultsOfOneKindDoNotHideAnother) {
  std::string many;
  for (size_t i = 0; i <= Cairn::TimedText::MaxProblemCount; ++i) many += "<Text Vposition=\"low\">a</Text>\n";
  SampleText text;
  text.Subtitles(Subtitle("05:00", "06:00") + "<Font ID=\"Main\"><Subtitle TimeIn=\"00:00:07:00\" " +
                 "TimeOut=\"00:00:09:00\">" + many + "<Text Vposition=\"8\"><Font ID=\"Other\">a</Font></Text>" +
                 "</Subtitle></Font>");
  const Names names = NamesIn(text);
  EXPECT_TRUE(std::ranges::find(names, "text-font-load") != names.end());
}

TEST(TextFindings, SeveralFontsDoNotHideThatOneIsUnknown) {
  const std::string font = "<LoadFont ID=\"Main\">urn:uuid:0f0f0f0f-1111-4222-8333-000000000031</LoadFont>\n";
  SampleText text = SampleText().Edit("<Font ID=\"Main\"", "<Font ID=\"Unknown\"");
  text.Edit(font, font + "<LoadFont ID=\"Other\">urn:uuid:0f0f0f0f-1111-4222-8333-000000000031</LoadFont>\n");
  EXPECT_EQ(NamesIn(text), (Names{"text-font-load", "text-font-load"}));
}

TEST(TextFindings, InteropTextsUseFontsThatTheyLoad) {
  EXPECT_EQ(After("<Font Id=\"Main\"", "<Font Id=\"Other\"", Interop), Names{"text-font-load"});
  EXPECT_EQ(After("<LoadFont Id=\"Main\" URI=\"font.ttf\"/>\n", "", Interop), Names{"text-font-load"});
}

TEST(TextFindings, TheStartTimeIsThereAndZero) {
  const Names start{"text-start-time"};
  EXPECT_EQ(After("<StartTime>00:00:00:00</StartTime>\n", ""), start);
  EXPECT_EQ(After("<StartTime>00:00:00:00", "<StartTime>00:00:00:01"), (Names{"text-first", "text-start-time"}));
  EXPECT_EQ(After("<StartTime>00:00:00:00", "<StartTime>00:00:05:00"),
            (Names{"text-first", "text-start-time warning"}));
  EXPECT_EQ(After("<StartTime>00:00:00:00", "<StartTime>01:00:00:00"), Names{"text-start-time warning"});
}

TEST(TextFindings, TheLanguageIsATag) {
  EXPECT_EQ(After("<Language>fr</Language>\n", ""), Names{"text-language"});
  EXPECT_EQ(After("<Language>fr</Language>", "<Language/>"), Names{"text-language"});
  EXPECT_EQ(After("<Language>fr</Language>", "<Language>xx</Language>"), Names{"text-language"});
  EXPECT_EQ(After("<Language>fr</Language>", "<Language>fr-CA</Language>"), Names{});
}

TEST(TextFindings, RatesFit) {
  const Names rate{"text-rate"};
  EXPECT_EQ(After("<EditRate>24 1", "<EditRate>25 1"), rate);
  EXPECT_EQ(After("<EditRate>24 1", "<EditRate>48 2"), Names{});
  EXPECT_EQ(After("<TimeCodeRate>24", "<TimeCodeRate>25"), rate);
  EXPECT_EQ(After("<TimeCodeRate>24", "<TimeCodeRate>12"), Names{});
  SampleText fast;
  fast.FileRate = {48, 1};
  EXPECT_EQ(NamesIn(fast), rate);
  EXPECT_EQ(NamesIn(SampleText().EditAsset("<EditRate>24 1", "<EditRate>25 1")), rate);  // the picture's
  fast.Edit("<EditRate>24 1", "<EditRate>48 1");
  for (int i = 0; i < 2; ++i)
    fast.EditAsset("<EditRate>24 1</EditRate><IntrinsicDuration>240",
                   "<EditRate>48 1</EditRate><IntrinsicDuration>480");
  for (int i = 0; i < 2; ++i) fast.EditAsset("<Duration>240", "<Duration>480");
  EXPECT_EQ(NamesIn(fast), Names{});
}

TEST(TextFindings, TextsHaveCharacters) {
  const Names empty{"text-empty"};
  EXPECT_EQ(After(">two<", "><"), empty);
  EXPECT_EQ(After(">two<", "> <"), Names{});
  EXPECT_EQ(Of("<Font ID=\"Main\"></Font>"), (Names{"text-empty", "text-schema"}));
  EXPECT_EQ(NamesIn(SampleText(Interop).Subtitles("")), empty);
}

TEST(TextFindings, TextsEndAfterTheyBegin) {
  const Names order{"text-order"};
  EXPECT_EQ(After("TimeOut=\"00:00:09:00\"", "TimeOut=\"00:00:07:00\""), order);
  EXPECT_EQ(After("TimeOut=\"00:00:09:00\"", "TimeOut=\"00:00:05:00\""), order);
  EXPECT_EQ(After("TimeOut=\"00:00:09:000\"", "TimeOut=\"00:00:07:000\"", Interop), order);
}

TEST(TextFindings, FadesAreNoLongerThanTheirText) {
  EXPECT_EQ(Of(Subtitle("05:00", "06:00", " FadeUpTime=\"00:00:01:00\"")), Names{});
  EXPECT_EQ(Of(Subtitle("05:00", "06:00", " FadeUpTime=\"00:00:01:01\"")), Names{"text-fade"});
  EXPECT_EQ(Of(Subtitle("05:00", "06:00", " FadeDownTime=\"00:00:01:01\"")), Names{"text-fade"});
  EXPECT_EQ(After("FadeDownTime=\"20\"", "FadeDownTime=\"00:00:02:001\"", Interop), Names{"text-fade"});
}

TEST(TextFindings, TextsAreShownFor15EditUnits) {
  EXPECT_EQ(Of(Subtitle("05:00", "05:15")), Names{});
  EXPECT_EQ(Of(Subtitle("05:00", "05:14")), Names{"text-duration"});
  EXPECT_EQ(After("TimeOut=\"00:00:09:000\"", "TimeOut=\"00:00:07.625\"", Interop), Names{});
  EXPECT_EQ(After("TimeOut=\"00:00:09:000\"", "TimeOut=\"00:00:07.584\"", Interop), Names{"text-duration"});
}

TEST(TextFindings, BetweenTextsAreTwoEditUnits) {
  const std::string first = Subtitle("05:00", "06:00");
  EXPECT_EQ(Of(first + Subtitle("06:02", "07:00")), Names{});
  EXPECT_EQ(Of(first + Subtitle("06:01", "07:00")), Names{"text-gap"});
  EXPECT_EQ(Of(first + Subtitle("06:00", "07:00")), Names{"text-gap"});
  EXPECT_EQ(Of(Subtitle("06:01", "07:00") + first), Names{"text-gap"});
  EXPECT_EQ(Of(first + Subtitle("05:23", "07:00")), Names{});  // they overlap
  EXPECT_EQ(Of(Subtitle("05:00", "07:00") + Subtitle("05:12", "06:06") + Subtitle("06:12", "07:06")), Names{});
}

TEST(TextFindings, FirstPlaceStandsForAll) {
  const auto findings = testsupport::FindIn(
      {SampleText().Subtitles(Subtitle("08:00", "08:03") + Subtitle("05:00", "05:07") + Subtitle("06:00", "06:04"))},
      {});
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].Expected, "15 edit units at least");
  EXPECT_EQ(findings[0].Found, "7 edit units, 2 more");
  EXPECT_EQ(findings[0].Place.EditUnit, 120U);
  EXPECT_EQ(findings[0].Place.EditRate, QUIRE::Rational(24, 1));
  EXPECT_EQ(findings[0].Place.Line, 14U);
  EXPECT_EQ(findings[0].Place.Document, "0.mxf");
}

TEST(TextFindings, ThreeLinesAreShownAtOnce) {
  const auto with = [](size_t count) {
    return SampleText().Subtitles("<Font ID=\"Main\"><Subtitle TimeIn=\"00:00:05:00\" TimeOut=\"00:00:06:00\">" +
                                  Lines(count) + "</Subtitle></Font>");
  };
  EXPECT_EQ(NamesIn(with(3)), Names{});
  EXPECT_EQ(NamesIn(with(4)), Names{"text-lines"});
  EXPECT_EQ(NamesIn(with(6)), Names{"text-lines"});
  EXPECT_EQ(NamesIn(with(7)), (Names{"text-elements", "text-lines"}));
  EXPECT_EQ(NamesIn(with(3).AsCaption()), Names{});
  EXPECT_EQ(NamesIn(with(4).AsCaption()), Names{"caption-lines"});
}

TEST(TextFindings, TextsSideBySideAreOneLine) {
  const std::string lines =
      "<Text Halign=\"left\" Valign=\"bottom\" Vposition=\"8\">a</Text>"
      "<Text Halign=\"right\" Valign=\"bottom\" Vposition=\"8\">b</Text>"
      "<Text Halign=\"right\" Valign=\"top\" Vposition=\"92\">b</Text>";
  const auto with = [&](size_t count) {
    return Of(
        "<Font ID=\"Main\"><Subtitle TimeIn=\"00:00:05:00\" TimeOut=\"00:00:06:00\">" + lines +
        std::string("<Text Valign=\"top\" Vposition=\"20\">c</Text><Text Valign=\"top\" Vposition=\"30\">d</Text>") +
        (count > 3 ? "<Text Valign=\"top\" Vposition=\"40\">e</Text>" : "") + "</Subtitle></Font>");
  };
  EXPECT_EQ(with(3), Names{});
  EXPECT_EQ(with(4), Names{"text-lines"});
}

std::string ClockAt(size_t unit) {
  const auto two = [](size_t value) { return (value < 10 ? "0" : "") + std::to_string(value); };
  return two(unit / 24 / 3600) + ':' + two(unit / 24 / 60 % 60) + ':' + two(unit / 24 % 60) + ':' + two(unit % 24);
}

TEST(TextFindings, ManyTextsAtOnceAreLookedAtOnce) {
  // Pictures that are all open while too many lines come and go: asking what is shown each time takes steps by the square,
  // and longer than a test may.
  constexpr size_t Count = 25'000;
  const auto shown = [](size_t begin, size_t end, const std::string& what) {
    return "<Subtitle TimeIn=\"" + ClockAt(begin) + "\" TimeOut=\"" + ClockAt(end) + "\">" + what + "</Subtitle>\n";
  };
  std::string many;
  for (size_t i = 0; i < Count; ++i) many += shown(120, 120 + 2 * Count, Images(1));
  for (size_t i = 0; i < Count; ++i) many += shown(120 + 2 * i, 121 + 2 * i, Lines(4));
  const Names names = NamesIn(SampleText().Subtitles(many), Assay::Depth::Files);
  EXPECT_TRUE(std::ranges::find(names, "text-lines") != names.end());
}

TEST(TextFindings, ThreePicturesAndTwoTextsAreShownAtOnce) {
  const auto with = [](size_t count) {
    return Of("<Subtitle TimeIn=\"00:00:05:00\" TimeOut=\"00:00:06:00\">" + Images(count) + "</Subtitle>");
  };
  EXPECT_EQ(with(3), Names{});
  EXPECT_EQ(with(4), Names{"text-elements"});
  const std::string two = Subtitle("05:00", "07:00") + Subtitle("05:00", "06:00", " FadeDownTime=\"00:00:00:03\"");
  EXPECT_EQ(Of(two + Subtitle("06:03", "07:00")), Names{});
  EXPECT_EQ(Of(two + Subtitle("06:02", "07:00")), Names{"text-elements"});  // the second fades away
}

TEST(TextFindings, LinesHaveReadableLengths) {
  const auto with = [](size_t count) { return After(">two<", '>' + std::string(count, 'x') + '<'); };
  EXPECT_EQ(with(52), Names{});
  EXPECT_EQ(with(53), Names{"text-line-length"});
  EXPECT_EQ(with(79), Names{"text-line-length"});
  EXPECT_EQ(with(80), Names{"text-line-length warning"});
  std::string accents;
  for (int i = 0; i < 52; ++i) accents += "\xC3\xA9";  // two bytes each
  EXPECT_EQ(NamesIn(SampleText().Edit(">two<", '>' + accents + '<'), Assay::Depth::Files), Names{});
}

TEST(TextFindings, LinesOfCaptionsAreShorter) {
  const auto with = [](size_t count) { return AsCaption(">two<", '>' + std::string(count, 'x') + '<'); };
  EXPECT_EQ(with(32), Names{});
  EXPECT_EQ(with(33), Names{"caption-lines"});
  EXPECT_EQ(with(80), Names{"caption-lines"});
}

TEST(TextFindings, LinesOfCaptionsStandInOneOrder) {
  const Names align{"caption-align"};
  EXPECT_EQ(AsCaption("Vposition=\"8\">two", "Vposition=\"20\">two"), align);
  EXPECT_EQ(AsCaption("Valign=\"bottom\" Vposition=\"8\">two", "Valign=\"top\" Vposition=\"8\">two"), align);
  EXPECT_EQ(AsCaption("Vposition=\"8\">two", "Vposition=\"14\">two"), Names{});
  EXPECT_EQ(NamesIn(SampleText().EditAll("Valign=\"bottom\"", "Valign=\"top\"").AsCaption()), align);
  EXPECT_EQ(After("Vposition=\"8\">two", "Vposition=\"20\">two"), Names{});  // on the screen the place tells
}

TEST(TextFindings, TextsStandOnTheScreen) {
  const Names position{"text-position"};
  const std::string place = "Valign=\"bottom\" Vposition=\"8\">two";
  const auto with = [&](const std::string& to) { return After(place, to + ">two"); };
  EXPECT_EQ(with("Valign=\"bottom\" Vposition=\"0\""), position);
  EXPECT_EQ(with("Valign=\"top\" Vposition=\"0\""), position);
  EXPECT_EQ(with("Valign=\"top\""), position);
  EXPECT_EQ(with("Valign=\"bottom\" Vposition=\"-1\""), position);
  EXPECT_EQ(with("Valign=\"bottom\" Vposition=\"100\""), position);
  EXPECT_EQ(with("Valign=\"center\" Vposition=\"50\""), position);
  EXPECT_EQ(with("Valign=\"top\" Vposition=\"0.5\""), Names{});
  EXPECT_EQ(with("Valign=\"center\" Vposition=\"0\""), Names{});
  EXPECT_EQ(with(""), Names{});
  EXPECT_EQ(AsCaption(place, "Valign=\"bottom\" Vposition=\"0\">two"), Names{});
  EXPECT_EQ(After("VPosition=\"8\">two", "VPosition=\"0\">two", Interop), position);
}

}  // namespace
