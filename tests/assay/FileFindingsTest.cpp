// SPDX-License-Identifier: BSD-3-Clause
#include "FilePackage.h"
#include "FindingCases.h"

namespace {

using Assay::Finding;
using Assay::FindingID;
using testsupport::FilePackage;
using testsupport::FindingOf;
using testsupport::Names;
using testsupport::SampleID;
using testsupport::SamplePackage;
using testsupport::TrackFileSpec;
using testsupport::TrackKind;

/// The findings of a package, each with the name of what it follows from.
std::vector<std::string> WithCauses(const Assay::CheckReport& report) {
  std::vector<std::string> names;
  for (const Finding& finding : report.Findings) {
    if (finding.ID == FindingID::SignMissing) continue;  // the samples are not
    names.emplace_back(RuleOf(finding.ID).Name);
    if (finding.Cause) names.back() += std::string(" from ") + RuleOf(report.Findings[*finding.Cause].ID).Name;
  }
  std::ranges::sort(names);
  return names;
}

TEST(FileFindings, WhatIsNoTrackFileIsDamaged) {
  const Assay::CheckReport report = FilePackage().Drop("13").Put("file_13.mxf", "x").Report();
  ASSERT_EQ(testsupport::NamesOf(report.Findings), Names{"file-damaged"});
  const Finding finding = FindingOf(report, FindingID::FileDamaged);
  EXPECT_EQ(finding.Found, "not MXF");
  EXPECT_EQ(finding.Place.Asset, SampleID("13"));
  EXPECT_EQ(finding.Place.Document, "file_13.mxf");
}

TEST(FileFindings, AFileThatWasCutShortIsDamagedWhereItIsPlayed) {
  FilePackage package;
  package.Cut("13", 1'000'000);
  EXPECT_EQ(package.Findings(), Names{"file-damaged"});
  const Finding finding = FindingOf(package.Report(), FindingID::FileDamaged);
  EXPECT_EQ(finding.Expected, "240 edit units");
  EXPECT_EQ(finding.Found, "edit unit 239 is cut off");
}

TEST(FileFindings, AFileThatWasCutShortBehindWhatIsPlayedIsIncomplete) {
  const auto cut = [](const char* duration) {
    FilePackage package(SamplePackage::Kind::Interop);
    package.Cut("13", 1'000'000);
    for (const char* id : {"12", "13", "14"})
      package.Edit("CPL.xml",
                   std::string(id) +
                       "</Id>\n<EditRate>24 1</EditRate>\n<IntrinsicDuration>240</IntrinsicDuration>\n"
                       "<EntryPoint>0</EntryPoint>\n<Duration>240",
                   std::string(id) +
                       "</Id>\n<EditRate>24 1</EditRate>\n<IntrinsicDuration>240</IntrinsicDuration>\n"
                       "<EntryPoint>0</EntryPoint>\n<Duration>" +
                       duration);
    package.Edit("CPL.xml", "<Offset>239", "<Offset>100").Edit("CPL.xml", "<Label>LFOC", "<Label>FFTC");
    return testsupport::Without(package.Findings(), "text-overrun");
  };
  // 1,000,000 bytes are 27 edit units of six channels and more.
  EXPECT_EQ(cut("200"), (Names{"file-incomplete", "package-interop"}));
  EXPECT_EQ(cut("230"), (Names{"file-damaged", "package-interop"}));
}

TEST(FileFindings, AFontThatWasCutOffIsDamage) {
  FilePackage package;
  package.Cut("14", 1000);  // the footer and a part of the font
  const Assay::CheckReport report = package.Report();
  ASSERT_EQ(testsupport::NamesOf(report.Findings), Names{"file-damaged"});
  const Finding finding = FindingOf(report, FindingID::FileDamaged);
  EXPECT_EQ(finding.Expected, "1 resource");
  EXPECT_THAT(finding.Found, testing::EndsWith(" is not there"));
}

TEST(FileFindings, AFileWithoutItsFooterIsIncomplete) {
  for (const char* id : {"12", "13", "14", "16"}) {
    FilePackage package;
    package.Cut(id, 200);
    EXPECT_EQ(package.Findings(), Names{"file-incomplete"}) << id;
    EXPECT_EQ(FindingOf(package.Report(), FindingID::FileIncomplete).Expected, "a footer");
    FilePackage whole;
    EXPECT_EQ(whole.Cut(id, 1).Findings(), Names{}) << "the random index pack is optional, " << id;
  }
}

TEST(FileFindings, WhatACutFileIsToldForFollowsFromItsSize) {
  FilePackage package;
  package.Cut("12", 50'000).KeepSizes();
  EXPECT_EQ(WithCauses(package.Report()),
            (Names{"am-chunk-length from pkl-asset-size", "file-damaged from pkl-asset-size", "pkl-asset-size"}));
}

TEST(FileFindings, AFileSaysThatItIsAnother) {
  FilePackage package;
  package.SpecOf("13").AssetID = SampleID("93");
  const Assay::CheckReport report = package.Report();
  ASSERT_EQ(testsupport::NamesOf(report.Findings), Names{"file-id"});
  EXPECT_EQ(FindingOf(report, FindingID::FileID).Expected, SampleID("13").EncodeString());
  EXPECT_EQ(FindingOf(report, FindingID::FileID).Found, SampleID("93").EncodeString());
}

TEST(FileFindings, OneFileForTwoIdentifiersIsToldOnce) {
  FilePackage package;
  package.Drop("22").Edit("ASSETMAP.xml", "file_22.mxf", "file_12.mxf");
  package.Edit("PKL.xml", "22</Id>\n<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n<Size>1</Size>",
               "22</Id>\n<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>\n<Size>1</Size>");
  const Names names = WithCauses(package.Report());
  EXPECT_EQ(names, (Names{"am-chunk-length from pkl-asset-size", "am-duplicate-path", "file-id from am-duplicate-path",
                          "pkl-asset-size"}));
}

/// What is found where all pictures have that size, rate and kind, and the documents agree.
Names OfPictures(unsigned width, unsigned height, int rate = 24, TrackKind kind = TrackKind::Picture) {
  const bool is_pair = kind == TrackKind::StereoscopicPicture;
  FilePackage package(SamplePackage::Kind::Interop);
  if (is_pair) package.MakePairs();
  for (const char* id : {"12", "13"}) package.SpecOf(id).EditRate = {rate, 1};
  package.SpecOf("12").Width = width;
  package.SpecOf("12").Height = height;
  package.EditAll("CPL.xml", "<EditRate>24 1", "<EditRate>" + std::to_string(rate) + " 1");
  package.Edit("CPL.xml", is_pair ? "<FrameRate>48 1" : "<FrameRate>24 1",
               "<FrameRate>" + std::to_string(is_pair ? 2 * rate : rate) + " 1");
  char ratio[8];
  std::snprintf(ratio, sizeof ratio, "%.2f", double(width) / height);
  package.Edit("CPL.xml", "<ScreenAspectRatio>1.85", std::string("<ScreenAspectRatio>") + ratio);
  Names names;
  // The sample's title is of a flat picture in 2K, and its text lasts as long as 240 edit units at 24 a second.
  for (const std::string& name : package.Findings())
    if (!name.starts_with("title-") && name != "text-overrun" && name != "package-interop") names.push_back(name);
  return names;
}

TEST(FileFindings, PicturesHaveTheSizesOfTheCinema) {
  for (const auto& [width, height] : {std::pair(1998U, 1080U), {2048, 858}, {3996, 2160}, {4096, 1716}})
    EXPECT_EQ(OfPictures(width, height), Names{}) << width << 'x' << height;
  for (const auto& [width, height] : {std::pair(2048U, 1080U), {4096, 2160}})
    EXPECT_EQ(OfPictures(width, height), Names{"picture-size profile"}) << width << 'x' << height;
  for (const auto& [width, height] : {std::pair(1920U, 1080U), {3840, 2160}, {1998, 1079}, {2047, 858}, {64, 36}})
    EXPECT_EQ(OfPictures(width, height), Names{"picture-size"}) << width << 'x' << height;
}

TEST(FileFindings, PicturesRunAtTheRatesOfTheCinema) {
  for (const int rate : {24, 25, 48}) EXPECT_EQ(OfPictures(1998, 1080, rate), Names{}) << rate;
  for (const int rate : {30, 50, 60}) EXPECT_EQ(OfPictures(1998, 1080, rate), Names{"picture-rate profile"}) << rate;
  for (const int rate : {16, 20, 96, 100, 120}) EXPECT_EQ(OfPictures(1998, 1080, rate), Names{"picture-rate"}) << rate;
}

TEST(FileFindings, PicturesIn4KRunAtFewerRates) {
  EXPECT_EQ(OfPictures(3996, 2160, 24), Names{});
  for (const int rate : {25, 30}) EXPECT_EQ(OfPictures(3996, 2160, rate), Names{"picture-rate profile"}) << rate;
  for (const int rate : {48, 50, 60}) EXPECT_EQ(OfPictures(3996, 2160, rate), Names{"picture-rate"}) << rate;
}

TEST(FileFindings, PairsRunAtFewerRates) {
  constexpr auto Pair = TrackKind::StereoscopicPicture;
  for (const int rate : {24, 25}) EXPECT_EQ(OfPictures(1998, 1080, rate, Pair), Names{}) << rate;
  EXPECT_EQ(OfPictures(1998, 1080, 30, Pair), Names{"picture-rate profile"});
  for (const int rate : {48, 50, 60}) EXPECT_EQ(OfPictures(1998, 1080, rate, Pair), Names{"picture-rate"}) << rate;
  EXPECT_EQ(OfPictures(3996, 2160, 24, Pair), Names{"picture-rate"});
}

TEST(FileFindings, ARateNeedsNotBeReduced) {
  FilePackage package;
  for (const char* id : {"12", "22"}) package.SpecOf(id).EditRate = {48000, 2000};
  EXPECT_EQ(package.Findings(), Names{});
}

TEST(FileFindings, InteropTypesAreThoseOfTheFiles) {
  FilePackage package(SamplePackage::Kind::Interop);
  package.EditAll("PKL.xml", "asdcpKind=Sound", "asdcpKind=Picture");
  EXPECT_EQ(package.Findings(), (Names{"package-interop", "pkl-asset-type"}));
}

}  // namespace
