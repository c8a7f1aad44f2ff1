// SPDX-License-Identifier: BSD-3-Clause
#include "../support/TemporaryFolder.h"
#include "SamplePackage.h"
#include "SampleText.h"

#include "base/LanguageNames.h"
#include "run/Causes.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using testsupport::FindIn;
using testsupport::NamesIn;
using testsupport::NamesOf;
using testsupport::SampleText;
using testsupport::TextCheck;
using enum testsupport::SampleText::Kind;
using Names = std::vector<std::string>;

Names InReels(const std::vector<SampleText>& reels) {
  return NamesOf(FindIn(reels, {}));
}

SampleText InSecondReel() {
  return SampleText().Edit("<ReelNumber>1", "<ReelNumber>2");
}

TEST(TextUse, FlavourIsThatOfTheComposition) {
  TextCheck interop;
  interop.IsInterop = true;
  EXPECT_EQ(NamesOf(FindIn({SampleText()}, interop)), Names{"text-flavour"});
  EXPECT_EQ(NamesOf(FindIn({SampleText(Interop)}, {})), Names{"text-flavour"});
  SampleText inside;  // an Interop document in a track file
  inside.Xml = SampleText(Interop).Edit("000000000014", "000000000030").Xml;
  const auto findings = FindIn({inside}, {});
  EXPECT_TRUE(std::ranges::any_of(
      findings, [](const Assay::Finding& finding) { return finding.ID == Assay::FindingID::TextFlavour; }));
}

TEST(TextUse, TextSaysItsReel) {
  EXPECT_EQ(NamesIn(SampleText().Edit("<ReelNumber>1", "<ReelNumber>2")), Names{"text-reel"});
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("<ReelNumber>1", "<ReelNumber>2"), Assay::Depth::Documents),
            Names{"text-reel"});
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("<ReelNumber>1", "<ReelNumber>1 of 5")), Names{"text-reel"});
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("<ReelNumber>1", "<ReelNumber>")), Names{"text-reel"});
  EXPECT_EQ(NamesIn(SampleText().Edit("<ReelNumber>1</ReelNumber>\n", "")), Names{});
  EXPECT_EQ(InReels({SampleText(), InSecondReel()}), Names{});
}

TEST(TextUse, FourSecondsAreWithoutText) {
  const Names first{"text-first"};
  EXPECT_EQ(NamesIn(SampleText().Edit("TimeIn=\"00:00:04:00\"", "TimeIn=\"00:00:03:23\"")), first);
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("TimeIn=\"00:00:04:000\"", "TimeIn=\"00:00:03:229\"")), first);
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("TimeIn=\"00:00:04:000\"", "TimeIn=\"00:00:03:249\"")), Names{});
  EXPECT_EQ(InReels({SampleText(), InSecondReel().Edit("TimeIn=\"00:00:04:00\"", "TimeIn=\"00:00:00:00\"")}), Names{});
  SampleText later;  // the entry point takes a second away
  later.EditAsset(
      "MainSubtitle>\n<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000014</Id>\n<EditRate>24 1</EditRate>"
      "<IntrinsicDuration>240</IntrinsicDuration><EntryPoint>0</EntryPoint>",
      "MainSubtitle>\n<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000014</Id>\n<EditRate>24 1</EditRate>"
      "<IntrinsicDuration>264</IntrinsicDuration><EntryPoint>24</EntryPoint>");
  EXPECT_EQ(NamesIn(later), first);
}

/// The same with the played part of the text's file changed.
SampleText Played(SampleText text, const std::string& entry, const std::string& duration) {
  const size_t at = text.Asset.find("<MainSubtitle>");
  std::string subtitle = text.Asset.substr(at);
  text.Asset.resize(at);
  const std::string from = "<EntryPoint>0</EntryPoint><Duration>240";
  subtitle.replace(subtitle.find(from), from.size(), "<EntryPoint>" + entry + "</EntryPoint><Duration>" + duration);
  text.Asset += subtitle;
  return text;
}

/// A reel without text.
SampleText Silent(const std::string& role, const std::string& duration) {
  SampleText text;
  text.Asset.resize(text.Asset.find("<MainSubtitle>"));
  text.EditAsset("<MainPicture>", '<' + role + '>').EditAsset("</MainPicture>", "</" + role + '>');
  return text.EditAsset("<Duration>240", "<Duration>" + duration);
}

TEST(TextUse, WhatIsNotPlayedIsNotFirst) {
  // The first of the two is over before the entry point, the second comes five seconds after it.
  SampleText later = Played(SampleText(), "144", "240");
  later.Edit("TimeIn=\"00:00:07:00\" TimeOut=\"00:00:09:00\"", "TimeIn=\"00:00:11:00\" TimeOut=\"00:00:12:00\"");
  EXPECT_EQ(NamesIn(later), Names{});
  EXPECT_EQ(NamesIn(Played(SampleText(), "143", "240")), Names{"text-first"});  // one unit of it is shown
  SampleText beyond = Played(SampleText(), "0", "72");
  beyond.Edit("TimeIn=\"00:00:04:00\"", "TimeIn=\"00:00:03:00\"");
  EXPECT_EQ(NamesIn(beyond), Names{"text-overrun"});
}

TEST(TextUse, AllReelsBeforeCount) {
  const SampleText at_once = SampleText().Edit("TimeIn=\"00:00:04:00\"", "TimeIn=\"00:00:00:00\"");
  SampleText second = at_once;
  second.Edit("<ReelNumber>1", "<ReelNumber>2");
  EXPECT_EQ(InReels({Silent("MainPicture", "96"), second}), Names{});
  EXPECT_EQ(InReels({Silent("MainPicture", "95"), second}), Names{"text-first"});
  EXPECT_EQ(InReels({Silent("MainSound", "96"), second}), Names{});
  SampleText seventh = at_once;  // six thirds of two seconds do not add up to four
  seventh.Edit("<ReelNumber>1", "<ReelNumber>7");
  std::vector<SampleText> reels(6, Silent("MainPicture", "16"));
  reels.push_back(seventh);
  EXPECT_EQ(InReels(reels), Names{});
}

TEST(TextUse, ADocumentIsReadForEachRateThatItIsPlayedAt) {
  const testsupport::TemporaryFolder folder;
  const Assay::DocumentPlace place{folder.Folder().string(), "text.xml"};
  std::ofstream(folder.Folder() / place.Path) << SampleText(Interop).Xml;
  Assay::ReelAsset assets[2];
  assets[0].EditRate = QUIRE::Rational(24, 1);
  assets[1].EditRate = QUIRE::Rational(48, 1);
  const std::deque<Assay::Package> packages;
  Assay::TextFiles texts(packages, {});
  for (const Assay::ReelAsset& asset : assets) {
    Assay::AssetFile use;
    use.Asset = &asset;
    use.Document = &place;
    const Assay::TextFile* text = texts.Read(use);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->EditRate, *asset.EditRate);
  }
}

TEST(TextUse, TextEndsWithItsReel) {
  EXPECT_EQ(NamesIn(SampleText().Edit("TimeOut=\"00:00:09:00\"", "TimeOut=\"00:00:10:00\"")), Names{});
  EXPECT_EQ(NamesIn(SampleText().Edit("TimeOut=\"00:00:09:00\"", "TimeOut=\"00:00:10:01\"")), Names{"text-overrun"});
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("TimeOut=\"00:00:09:000\"", "TimeOut=\"00:00:10:011\"")),
            Names{"text-overrun"});
}

TEST(TextUse, AllReelsHaveTextOfOneLanguage) {
  SampleText german = InSecondReel().Edit("<Language>fr", "<Language>de");
  german.EditAsset("<Language>fr", "<Language>de");
  EXPECT_EQ(InReels({SampleText(), german}), (Names{"text-language", "title-subtitle"}));
}

TEST(TextUse, CompositionAndTextSayTheSameLanguage) {
  EXPECT_EQ(NamesIn(SampleText().EditAsset("<Language>fr", "<Language>de")), Names{"reel-text-language"});
  EXPECT_EQ(NamesIn(SampleText().EditAsset("<Language>fr", "<Language>fr-CA")), Names{});
  EXPECT_EQ(NamesIn(SampleText().EditAsset("<Language>fr", "<Language>French")), Names{});
  EXPECT_EQ(NamesIn(SampleText().EditAsset("<Language>fr", "<Language>Klingon")), Names{});
  EXPECT_EQ(NamesIn(SampleText().EditAsset("<Language>fr</Language>", "")), Names{});
  EXPECT_EQ(NamesIn(SampleText(Interop).EditAsset("<Language>fr", "<Language>de")), Names{"reel-text-language"});
}

TEST(TextUse, TheTitleClaimsTheTextsLanguage) {
  const auto with = [](const std::string& languages) {
    TextCheck check;
    check.Title = "SoundFilm_FTR-1_F_" + languages + "_US-13_51_2K_ST_20240301_FAC_SMPTE_OV";
    return NamesOf(FindIn({SampleText()}, check));
  };
  EXPECT_EQ(with("EN-DE"), Names{"title-subtitle"});
  EXPECT_EQ(with("EN-NL-FR"), Names{});
  EXPECT_EQ(with("EN-QFC"), Names{});  // a code that tags have not
  EXPECT_EQ(with("EN-XX"), Names{});   // told by the composition alone
}

TEST(TextUse, WhatIsWrongWithOneFileIsToldOnce) {
  const Assay::FindingList findings = FindIn({SampleText().Edit(">two<", "><")}, {});
  EXPECT_EQ(NamesOf(findings), Names{"text-empty"});
}

TEST(TextUse, InteropDocumentsTellWithoutFiles) {
  const auto documents = [](const std::string& from, const std::string& to) {
    return NamesIn(SampleText(Interop).Edit(from, to), Assay::Depth::Documents);
  };
  EXPECT_EQ(documents("TimeOut=\"00:00:09:000\"", "TimeOut=\"00:00:07:000\""), Names{"text-order"});
  EXPECT_EQ(documents("font.ttf", "other.ttf"), Names{});
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("font.ttf", "other.ttf"), Assay::Depth::Files),
            Names{"text-font-missing"});
}

/// How many findings follow from no other.
size_t CauseCount(Assay::FindingList findings) {
  LinkCauses(findings);
  return static_cast<size_t>(
      std::ranges::count_if(findings, [](const Assay::Finding& finding) { return !finding.Cause; }));
}

TEST(TextUse, WhatFollowsIsShownBelowItsCause) {
  SampleText inside;
  inside.Xml = SampleText(Interop).Edit("000000000014", "000000000030").Xml;
  EXPECT_EQ(CauseCount(FindIn({inside}, {})), 1U);
  EXPECT_EQ(CauseCount(FindIn({SampleText().Subtitles("<Font ID=\"Main\"></Font>")}, {})), 1U);
  EXPECT_EQ(CauseCount(FindIn({SampleText().Edit("<StartTime>00:00:00:00", "<StartTime>00:00:05:00")}, {})), 1U);
}

TEST(LanguageNames, EnglishNamesCountAsTheirTags) {
  EXPECT_EQ(Assay::LanguageTagOf("French"), "fr");
  EXPECT_EQ(Assay::LanguageTagOf(" vietnamese "), "vi");
  EXPECT_EQ(Assay::LanguageTagOf("Brazilian Portuguese"), "pt-br");
  EXPECT_EQ(Assay::LanguageTagOf("Albanian"), "sq");
  EXPECT_EQ(Assay::LanguageTagOf("zh-Hant"), "zh-hant");
  EXPECT_EQ(Assay::LanguageTagOf("Klingon"), "");
  EXPECT_EQ(Assay::LanguageTagOf(""), "");
  EXPECT_TRUE(Assay::CanBeSameLanguage("fr-ca", "fr"));
  EXPECT_FALSE(Assay::CanBeSameLanguage("fr", "frr"));
}

}  // namespace
