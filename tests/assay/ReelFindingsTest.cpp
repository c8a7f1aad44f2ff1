// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleDocuments.h"

namespace {

using testsupport::After;
using testsupport::ExpectEach;
using testsupport::Names;
using testsupport::SamplePackage;

constexpr char Cpl[] = "CPL.xml";

std::string ID(const std::string& last) {
  return "0000000000" + last + "</Id>\n";
}

/// The lengths that follow an asset's identifier.
std::string Lengths(const std::string& id, const std::string& rate, const std::string& intrinsic,
                    const std::string& entry, const std::string& duration) {
  return ID(id) + "<EditRate>" + rate + "</EditRate>\n<IntrinsicDuration>" + intrinsic +
         "</IntrinsicDuration>\n<EntryPoint>" + entry + "</EntryPoint>\n<Duration>" + duration + "</Duration>";
}

/// The findings where an asset has other lengths.
Names WithLengths(const std::string& id, const std::string& rate, const std::string& intrinsic,
                  const std::string& entry, const std::string& duration) {
  return After(Cpl, Lengths(id, "24 1", "240", "0", "240"), Lengths(id, rate, intrinsic, entry, duration));
}

/// The first element of that name that stands in the document, with all that is in it.
std::string Element(const std::string& text, const std::string& name, size_t from = 0) {
  const size_t begin = text.find('<' + name, from);
  const std::string close = "</" + name + ">\n";
  return text.substr(begin, text.find(close, begin) + close.size() - begin);
}

/// The composition without that element in its second reel.
Names WithoutInSecond(const std::string& name) {
  std::string text = testsupport::SMPTEComposition();
  const size_t second = text.find("<Reel>", text.find("<Reel>") + 1);
  const std::string element = Element(text, name, second);
  text.erase(text.find(element, second), element.size());
  return SamplePackage().Put(Cpl, text).Findings();
}

TEST(ReelFindings, EveryReelHasAPicture) {
  EXPECT_EQ(WithoutInSecond("MainPicture"), Names{"reel-picture-missing"});
}

TEST(ReelFindings, WhatSomeReelsHaveAllHave) {
  EXPECT_EQ(WithoutInSecond("MainSound"), Names{"reel-sound-some"});
  EXPECT_EQ(WithoutInSecond("MainSubtitle"), Names{"reel-subtitle-some"});
  EXPECT_EQ(WithoutInSecond("tt:ClosedCaption"), Names{"reel-caption-count"});
  const std::string key = "<KeyId>urn:uuid:0f0f0f0f-1111-4222-8333-0000000000d1</KeyId>\n<Hash>";
  // What is encrypted is to be signed, and needs keys.
  EXPECT_EQ(After(Cpl, "<Hash>", key), (Names{"kdm-none", "reel-encryption-some", "sign-missing", "sign-missing"}));
  EXPECT_EQ(SamplePackage().EditAll(Cpl, "<Hash>", key).Findings(),
            (Names{"kdm-none", "sign-missing", "sign-missing"}));
}

TEST(ReelFindings, ACompositionHasSound) {
  std::string text = testsupport::SMPTEComposition();
  for (int i = 0; i < 2; ++i) text.erase(text.find("<MainSound>"), Element(text, "MainSound").size());
  EXPECT_EQ(SamplePackage().Put(Cpl, text).Findings(), Names{"cpl-sound-missing"});
}

TEST(ReelFindings, SoundRunsAtThePicturesRate) {
  EXPECT_EQ(WithLengths("13", "25 1", "240", "0", "240"), Names{"reel-edit-rate"});
  EXPECT_EQ(WithLengths("13", "24000 1000", "240", "0", "240"), Names{});
  EXPECT_EQ(WithLengths("13", "48000 1000", "480", "0", "480"), Names{"reel-edit-rate"});
}

TEST(ReelFindings, AllOfAReelIsAsLongAsItsPicture) {
  EXPECT_EQ(WithLengths("13", "24 1", "240", "0", "239"), Names{"reel-durations"});
  EXPECT_EQ(WithLengths("13", "24 1", "241", "0", "241"), Names{"reel-durations"});
  EXPECT_EQ(WithLengths("16", "24 1", "480", "240", "240"), Names{});
  EXPECT_EQ(WithLengths("16", "24 1", "480", "0", "480"), Names{"reel-durations"});
  EXPECT_EQ(WithLengths("14", "24 1", "240", "0", "100"), Names{"reel-durations profile"});
  EXPECT_EQ(WithLengths("14", "24 1", "250", "0", "250"), Names{"reel-durations"});
  EXPECT_EQ(WithLengths("14", "25 1", "250", "0", "250"), Names{});  // ten seconds in both
  EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop)
                .Edit(Cpl, Lengths("14", "24 1", "240", "0", "240"), Lengths("14", "24 1", "240", "0", "100"))
                .Findings(),
            (Names{"package-interop", "reel-durations", "text-overrun"}));
}

TEST(ReelFindings, NothingIsPlayedBeyondAFile) {
  EXPECT_EQ(WithLengths("12", "24 1", "250", "10", "240"), Names{});
  EXPECT_EQ(WithLengths("12", "24 1", "250", "11", "240"), Names{"reel-entry-beyond"});
  EXPECT_EQ(WithLengths("12", "24 1", "240", "0", "240"), Names{});
  EXPECT_EQ(WithLengths("16", "24 1", "10", "240", "240"), (Names{"reel-entry-beyond", "reel-short"}));
  EXPECT_EQ(WithLengths("12", "24 1", "18446744073709551615", "0", "240"), Names{"cpl-schema"});
  EXPECT_EQ(WithLengths("12", "24 1", "4294967295", "4294967055", "240"), Names{});
}

TEST(ReelFindings, AReelLastsASecond) {
  const auto with = [](const std::string& units) {
    std::string text = testsupport::SMPTEComposition();
    const size_t first = text.find("<Reel>");
    const size_t second = text.find("<Reel>", first + 1);
    for (size_t at = text.find("240<", first); at < second; at = text.find("240<", at)) text.replace(at, 3, units);
    return SamplePackage().Put(Cpl, text).Findings();
  };
  EXPECT_EQ(with("24"), Names{});
  EXPECT_EQ(with("23"), Names{"reel-short"});
}

TEST(ReelFindings, FrameRateIsTheEditRateOrTwiceIt) {
  ExpectEach({{Cpl, "<FrameRate>24 1", "<FrameRate>48 1", {"reel-frame-rate"}},
              {Cpl, "<FrameRate>24 1", "<FrameRate>48 2", {}}});
  const auto stereoscopic = [](const std::string& rate) {
    std::string text = testsupport::SMPTEStereoscopicComposition();
    text.replace(text.find("<FrameRate>48 1"), 15, "<FrameRate>" + rate);
    const auto findings = SamplePackage().Put(Cpl, text).Findings();
    return std::ranges::count(findings, "reel-frame-rate");
  };
  EXPECT_EQ(stereoscopic("48 1"), 0);
  EXPECT_EQ(stereoscopic("24 1"), 1);
}

TEST(ReelFindings, DigestsAreThereAndThoseOfTheList) {
  const std::string hash = "<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n";
  ExpectEach({{Cpl, hash, "", {"reel-hash-missing"}},
              {Cpl, hash, "<Hash>AAAABAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n", {"reel-hash"}},
              {Cpl, hash, "<Hash>AAAA AAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n", {}}});
  EXPECT_EQ(SamplePackage()
                .Edit(Cpl, hash, "")
                .EditAll(Cpl, "<Duration>240</Duration>\n",
                         "<Duration>240</Duration>\n<KeyId>urn:uuid:0f0f0f0f-1111-4222-8333-0000000000d1</KeyId>\n")
                .Findings(),
            (Names{"kdm-none", "reel-hash-missing warning", "sign-missing", "sign-missing"}));
}

// Interop's packing list may leave digests out, but then nothing confirms what the composition states.
TEST(ReelFindings, DigestsThatThePackingListLacks) {
  const std::string begin = "12</Id>\n", hash = "<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n";
  const auto without = [&](SamplePackage::Kind kind) {
    return SamplePackage(kind).Edit("PKL.xml", begin + hash, begin);
  };
  EXPECT_EQ(without(SamplePackage::Kind::Interop).Findings(), (Names{"package-interop", "reel-hash"}));
  const auto report = without(SamplePackage::Kind::SMPTE).Report();
  EXPECT_FALSE(testsupport::TheOne(report.Findings, Assay::FindingID::PklSchema).Cause.has_value());
  EXPECT_TRUE(testsupport::TheOne(report.Findings, Assay::FindingID::ReelHash).Cause.has_value());
}

TEST(ReelFindings, TextOfSMPTEBeginsAtItsStart) {
  EXPECT_EQ(WithLengths("14", "24 1", "250", "10", "240"), Names{"reel-text-entry"});
  const std::string lengths = Lengths("14", "24 1", "240", "0", "240");
  std::string without = lengths;
  without.erase(without.find("<EntryPoint>0</EntryPoint>\n"), 27);
  EXPECT_EQ(After(Cpl, lengths, without), Names{"reel-text-entry"});
}

TEST(ReelFindings, TextKeepsItsLanguage) {
  EXPECT_EQ(After(Cpl, "<Language>fr", "<Language>de"), Names{"reel-text-language"});
  EXPECT_EQ(After(Cpl, "<Language>fr", "<Language>FR"), Names{});
  EXPECT_EQ(After(Cpl, "<tt:Language>en", "<tt:Language>es"), Names{"reel-text-language"});
}

TEST(MarkerFindings, FirstAndLastFrameAreMarked) {
  const std::string ffoc = "<Marker><Label>FFOC</Label><Offset>1</Offset></Marker>\n";
  const std::string lfoc = "<Marker><Label>LFOC</Label><Offset>239</Offset></Marker>\n";
  ExpectEach({
      {Cpl, ffoc, "", {"marker-ffoc"}},
      {Cpl, "<Label>FFOC</Label><Offset>1<", "<Label>FFOC</Label><Offset>0<", {"marker-ffoc"}},
      {Cpl, lfoc, "", {"marker-lfoc"}},
      {Cpl, "<Offset>239<", "<Offset>238<", {"marker-lfoc"}},
      {Cpl, "<Offset>239<", "<Offset>240<", {"marker-range"}},
      {Cpl, "<Label>FFMC", "<Label>LFMC", {"marker-credits"}},
      {Cpl, "<Label>FFOC</Label>", "<Label>XXXX</Label>", {"marker-ffoc", "marker-unknown"}},
      {Cpl, ffoc, ffoc + "<Marker><Label scope=\"urn:own\">XXXX</Label><Offset>2</Offset></Marker>\n", {}},
      {Cpl,
       "<IntrinsicDuration>240</IntrinsicDuration>\n<MarkerList>",
       "<IntrinsicDuration>240</IntrinsicDuration>\n<EntryPoint>0</EntryPoint>\n<MarkerList>",
       {"marker-entry"}},
  });
}

TEST(MarkerFindings, CreditsAreMarkedInFeaturesAlone) {
  const std::string credits = "<Marker><Label>FFEC</Label><Offset>100</Offset></Marker>\n";
  EXPECT_EQ(After(Cpl, credits, ""), Names{"marker-credits"});
  EXPECT_EQ(SamplePackage()
                .Edit(Cpl, credits, "")
                .Edit(Cpl, "<ContentKind>feature", "<ContentKind>trailer")
                .EditAll(Cpl, "_FTR-1_", "_TLR-1_")
                .EditAll("PKL.xml", "_FTR-1_", "_TLR-1_")
                .Findings(),
            Names{});
}

}  // namespace
