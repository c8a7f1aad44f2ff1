// SPDX-License-Identifier: BSD-3-Clause
#include "check/CheckPage.h"

#include "Judges.h"
#include "ModelBuilder.h"
#include "TemporaryFolder.h"
#include "check/PageFigures.h"
#include "check/PageFindings.h"
#include "drawing/HtmlPage.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace Tool;
using Assay::FindingClass;
using ID = Assay::FindingID;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* Hostile = "</h1><script>alert('1')</script> & \"x\" \u6620\u753b \x1b[2J";

Assay::Finding FindingAt(ID id, const std::string& document, std::optional<size_t> cause = std::nullopt) {
  Assay::Finding finding(id);
  finding.Place.Package = "/x/Package";
  finding.Place.Document = document;
  finding.Cause = cause;
  return finding;
}

/// A show of one composition with two reels of ten seconds, in which nothing is wrong.
PageContent Fine() {
  ModelBuilder builder;
  TimelineComposition& composition = builder.Add("Feature", 2, 240);
  composition.ID = Cairn::UUID::FromHex("33333333-3333-4333-8333-333333333333").value();
  composition.Description = "Flat 2K 1998\u00d71080, 24 fps, 5.1, en, SMPTE, OV, 2 reels";
  composition.Kind = "feature";
  PageContent content;
  content.Title = "Show";
  content.Verdict = "Nothing speaks against this show.";
  content.Date = "2026-03-05 20:00:00";
  content.Version = "2.0.3";
  content.Report.Packages = {{"/x/Package", std::nullopt}};
  Assay::CheckedComposition& checked = content.Report.Compositions.emplace_back();
  checked.ID = composition.ID;
  checked.Title = "Feature";
  checked.Package = "/x/Package";
  checked.Document = "CPL.xml";
  content.Report.LookedAt = {Assay::Depth::Documents, Assay::Depth::Files};
  content.Shows = {builder.Model};
  return content;
}

/// Picture and sound of the one asset that builders have.
Assay::FileFigures Figures() {
  Assay::FileFigures file;
  file.Asset = ModelBuilder::PictureAndSound();
  file.Document = "picture.mxf";
  file.EditRate = QUIRE::EditRate_24;
  file.Duration = 240;
  file.Picture = Assay::PictureFigures{80, 200, 100, 250, 24, {}};
  for (int second = 0; second < 10; ++second) file.Picture->Spans.push_back(100.0F + 10.0F * float(second));
  file.Channels = {{"L", -3.2}, {"", -6.5}, {"C", -std::numeric_limits<double>::infinity()}};
  return file;
}

/// What is between the first `from` and the `to` behind it.
std::string Between(const std::string& text, const std::string& from, const std::string& to) {
  const size_t start = text.find(from);
  if (start == std::string::npos) return "";
  return text.substr(start + from.size(), text.find(to, start + from.size()) - start - from.size());
}

void ExpectWellFormed(const std::string& page) {
  const testsupport::TemporaryFolder folder;
  ASSERT_TRUE(
      Ferro::WriteStringIntoFile(folder.Path("a.xml"), "<body>" + Between(page, "<body>", "</body>") + "</body>")
          .Success());
  testsupport::RunJudge({"xmllint", "--nonet", "--noout", folder.Path("a.xml")});
}

TEST(CheckPage, TellsAllOfASoundShow) {
  PageContent content = Fine();
  content.Report.Figures = {Figures()};
  const std::string page = CheckPage(content);
  ExpectWellFormed(page);
  EXPECT_THAT(page, HasSubstr("<title>Check of Show</title>"));
  EXPECT_THAT(page, HasSubstr("<h1 class=\"verdict\">Nothing speaks against this show.</h1>"));
  EXPECT_THAT(page, HasSubstr("Checked 2026-03-05 20:00:00 by strata 2.0.3, profile <code>plays</code>"));
  EXPECT_THAT(page, HasSubstr("<p>Flat 2K 1998\u00d71080, 24 fps, 5.1, en, SMPTE, OV, 2 reels, 0:20, feature</p>"));
  EXPECT_THAT(page, HasSubstr("<h2>Findings: nothing</h2>"));
  EXPECT_THAT(page, HasSubstr("<h2>Timeline</h2>"));
  EXPECT_THAT(page, HasSubstr("<h3>Bit rate of the picture</h3>"));
  EXPECT_THAT(page, HasSubstr("80 Mbit/s on average, 190 Mbit/s at most, at 0:09. The limit is 250 Mbit/s."));
  EXPECT_THAT(page, HasSubstr("<desc>L \u22123.2, 2 \u22126.5, C silent</desc>"));
  EXPECT_THAT(page, Not(HasSubstr("<h2>Packages</h2>"))) << "there is one";
  EXPECT_THAT(page, Not(HasSubstr("<h2>Other files</h2>")));
}

TEST(CheckPage, HasNoFiguresWhereNoFrameWasRead) {
  const std::string page = CheckPage(Fine());
  EXPECT_THAT(page, Not(HasSubstr("Bit rate")));
  EXPECT_THAT(page, Not(HasSubstr("Sound levels")));
}

TEST(CheckPage, SaysWhatWasNotLookedAtAndWhatWould) {
  const std::string page = CheckPage(Fine());
  EXPECT_THAT(page, HasSubstr("Not looked at: frames, hash, decode."));
  EXPECT_EQ(CountOf(page, "\">looked at<"), 2U);
  EXPECT_EQ(CountOf(page, "\">not looked at<"), 3U);
  EXPECT_THAT(page, HasSubstr("<code>--hash</code>"));
  EXPECT_THAT(page, Not(HasSubstr("--depth files")));
  PageContent content = Fine();
  content.Report.LookedAt = Assay::DepthSet::UpTo(Assay::Depth::Decode);
  EXPECT_THAT(CheckPage(content), HasSubstr("Everything was looked at."));
}

TEST(CheckPage, SaysThatItWasStopped) {
  PageContent content = Fine();
  EXPECT_THAT(CheckPage(content), Not(HasSubstr("stopped before its end")));
  content.Report.IsCancelled = true;
  EXPECT_THAT(CheckPage(content), HasSubstr("stopped before its end"));
}

TEST(CheckPage, EscapesWhatComesFromOutside) {
  PageContent content = Fine();
  content.Report.Figures = {Figures()};
  content.Title = content.Verdict = content.Date = content.Version = Hostile;
  content.Report.Compositions[0].Title = content.Report.Compositions[0].Document = Hostile;
  content.Report.Packages[0].Folder = Hostile;
  content.Report.Packages.push_back(content.Report.Packages[0]);
  content.Report.Figures[0].Channels[0].Label = Hostile;
  content.Report.Figures.push_back(content.Report.Figures[0]);
  content.Report.Figures[1].Asset = Cairn::UUID::Random();
  content.Report.Figures[1].Document = Hostile;
  content.Shows[0].Title = content.Shows[0].Compositions[0].Title = Hostile;
  content.Shows[0].Compositions[0].Description = content.Shows[0].Compositions[0].Kind = Hostile;
  content.Shows.push_back(content.Shows[0]);
  Assay::Finding finding = FindingAt(ID::PklAssetSize, Hostile);
  finding.Place.Package = finding.Place.CompositionTitle = finding.Expected = finding.Found = Hostile;
  content.Report.Findings = {finding, finding};
  content.Report.Findings[1].Cause = 0;
  const std::string page = CheckPage(content);
  ExpectWellFormed(page);
  EXPECT_THAT(page, HasSubstr("&lt;script&gt;"));
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(page, Not(HasSubstr("\x1b")));
  EXPECT_EQ(CountOf(page, "</h1>"), 1U);
}

TEST(CheckPage, RefersToNothingOutside) {
  PageContent content = Fine();
  content.Report.Figures = {Figures()};
  const std::string page = CheckPage(content);
  for (const char* reference : {"src=", "href", "@import", "<script", "https:"})
    EXPECT_THAT(page, Not(HasSubstr(reference)));
  EXPECT_EQ(CountOf(page, "url("), CountOf(page, "url(#"));
  EXPECT_EQ(CountOf(page, "http:"), CountOf(page, "http://www.w3.org/2000/svg"));
  EXPECT_THAT(page, HasSubstr("default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'"));
}

TEST(CheckPage, DrawsForEachWidth) {
  const std::string page = CheckPage(Fine());
  for (const char* width : {"360", "680", "1080"})
    EXPECT_THAT(page, HasSubstr(std::string("for-") + width +
                                "\"><svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" "
                                "width=\"" +
                                width + "\""));
  EXPECT_EQ(CountOf(page, "<pattern id=\"missing\""), 1U);
}

TEST(CheckPage, CountsFindingsOfCompositionsAndPackages) {
  PageContent content = Fine();
  content.Report.Packages.push_back({"/x/Other", FindingClass::Error});
  Assay::Finding of_reel = FindingAt(ID::ReelDurations, "sound.mxf");
  of_reel.Place.Composition = content.Report.Compositions[0].ID;
  Assay::Finding elsewhere = FindingAt(ID::AmSchema, "ASSETMAP.xml");
  elsewhere.Place.Package = "/x/Other";
  content.Report.Findings = {of_reel, FindingAt(ID::CplIssueDate, "CPL.xml"), elsewhere,
                             FindingAt(ID::CplIssueDate, "CPL.xml", 1)};
  content.Report.Compositions[0].Worst = FindingClass::Error;
  const std::string page = CheckPage(content);
  const std::string compositions = Between(page, "<section id=\"compositions\">", "</section>");
  FindingCounts two;
  two.Add(content.Report.Findings[0], Assay::Profile::Plays);
  two.Add(content.Report.Findings[1], Assay::Profile::Plays);
  EXPECT_THAT(compositions, HasSubstr("<span class=\"alarmed\">Found: " + CountsText(two) + ".</span>"));
  EXPECT_THAT(Between(page, "/x/Other</td>", "</tr>"), HasSubstr("Found: 1 "));
}

TEST(CheckPage, FilesThatNoShowPlaysHaveFiguresToo) {
  PageContent content = Fine();
  content.Report.Figures = {Figures()};
  content.Report.Figures[0].Asset = Cairn::UUID::Random();
  const std::string page = CheckPage(content);
  EXPECT_THAT(page, HasSubstr("<h2>Other files</h2>"));
  EXPECT_THAT(page, HasSubstr("<h3>Bit rate: picture.mxf</h3>"));
  EXPECT_THAT(page, Not(HasSubstr("<h3>Bit rate of the picture</h3>")));
}

TEST(PageFindings, WorstFirstEachKindOnceConsequencesBelowTheirCause) {
  Assay::CheckReport report;
  Assay::Finding warning = FindingAt(ID::AmMissing, "a.xml");
  warning.Class = FindingClass::Warning;
  Assay::Finding error = FindingAt(ID::PklAssetSize, "b.mxf");
  error.Class = FindingClass::Error;
  error.Expected = "100";
  error.Found = "99";
  Assay::Finding second = error;
  second.Place.Document = "c.mxf";
  Assay::Finding follows = FindingAt(ID::PklAssetHash, "b.mxf", 1);
  Assay::Finding follows_that = FindingAt(ID::FileDamaged, "b.mxf", 3);
  Assay::Finding note = FindingAt(ID::AmName, "d.xml");
  note.Class = FindingClass::Note;
  report.Findings = {warning, error, second, follows, follows_that, note};
  const std::string html = PageFindings(report, Assay::Profile::Plays, true);
  EXPECT_EQ(CountOf(html, "<article"), 2U);
  EXPECT_LT(html.find("<h3 class=\"alarmed\">Errors"), html.find("<h3 class=\"caution\">Warnings"));
  const std::string first = Between(html, "<article class=\"finding error\">", "</article>");
  EXPECT_THAT(first, HasSubstr("<li><span>b.mxf.</span> <span>Expected 100, found 99.</span>\n<p"));
  EXPECT_THAT(first, HasSubstr("<li><span>c.mxf.</span> <span>Expected 100, found 99.</span></li>"));
  EXPECT_EQ(CountOf(first, HtmlText(Assay::RuleOf(ID::PklAssetSize).Advice)), 1U);
  const std::string followers = Between(first, "<ul class=\"followers\">", "</ul>");
  EXPECT_THAT(followers, HasSubstr("pkl-asset-hash"));
  EXPECT_THAT(followers, HasSubstr("file-damaged"));
  EXPECT_EQ(CountOf(html, "pkl-asset-hash"), 1U);
  EXPECT_THAT(html, Not(HasSubstr("am-name")));
  EXPECT_THAT(html, Not(HasSubstr("Notes")));
  const std::string uncounted = PageFindings(report, Assay::Profile::Plays, false);
  EXPECT_EQ(CountOf(uncounted, "<article"), 1U);
  EXPECT_THAT(uncounted, HasSubstr("am-name"));
  EXPECT_EQ(PageFindings(report, Assay::Profile::All, false), "");
}

TEST(CheckPage, WhatTheProfileDoesNotCountStandsAtTheEnd) {
  PageContent content = Fine();
  Assay::Finding note = FindingAt(ID::AmName, "CPL.xml");
  note.Class = FindingClass::Note;
  content.Report.Findings = {note, note, FindingAt(ID::PklAssetHash, "CPL.xml", 1)};
  const std::string page = CheckPage(content);
  EXPECT_THAT(page, HasSubstr("<h2>Findings: nothing</h2>"));
  EXPECT_THAT(page, HasSubstr("Found: nothing.</span> <span class=\"quiet\">Not counted: 2 notes.</span>"));
  EXPECT_LT(page.find("<h2>Timeline"), page.find("<h2>Findings that do not count"));
  EXPECT_EQ(CountOf(page, "pkl-asset-hash"), 1U);
  content.Profile = Assay::Profile::All;
  EXPECT_THAT(CheckPage(content), HasSubstr("<h2>Findings: 2 notes</h2>"));
  EXPECT_THAT(CheckPage(content), Not(HasSubstr("Findings that do not count")));
}

TEST(PageFindings, CausesThatLeadNowhereHideNothing) {
  Assay::FindingList findings;
  for (const std::optional<size_t> cause :
       {std::optional<size_t>(1), std::optional<size_t>(0), std::optional<size_t>(99)})
    findings.push_back(FindingAt(ID::AmMissing, "a.xml", cause));
  EXPECT_THAT(RootsOf(findings), ElementsAre(0, 1, 2));
}

TEST(PageFindings, MorePlacesThanAnyoneReadsAreCounted) {
  Assay::CheckReport report;
  for (size_t number = 0; number < MaxPagePlaces; ++number)
    report.Findings.push_back(FindingAt(ID::PklAssetSize, "a.mxf"));
  EXPECT_THAT(PageFindings(report, Assay::Profile::Plays, true), Not(HasSubstr("more, which")));
  report.Findings.push_back(report.Findings[0]);
  const std::string html = PageFindings(report, Assay::Profile::Plays, true);
  EXPECT_EQ(CountOf(html, "<li>"), MaxPagePlaces);
  EXPECT_THAT(html, HasSubstr("And 1 more, which the report as JSON lists."));
}

TEST(PageFindings, PlacesAreInWords) {
  Assay::FindingPlace place;
  place.Package = "/x/Package";
  EXPECT_EQ(PagePlaceText(place, false), "Package");
  place.Document = "sub/sound.mxf";
  place.Line = 7;
  EXPECT_EQ(PagePlaceText(place, false), "sub/sound.mxf, line 7");
  EXPECT_EQ(PagePlaceText(place, true), "Package: sub/sound.mxf, line 7");
  place.Line = 0;
  place.CompositionTitle = "Feature";
  place.Reel = 2;
  place.Channel = 3;
  place.EditUnit = 48;
  EXPECT_EQ(PagePlaceText(place, false), "Feature, reel 2, channel 3, edit unit 48: sub/sound.mxf");
  place.EditRate = QUIRE::EditRate_24;
  EXPECT_EQ(PagePlaceText(place, false), "Feature, reel 2, channel 3, edit unit 48 (0:02): sub/sound.mxf");
}

TEST(PageFigures, WhatPlaysOfAFileIsWhereItPlays) {
  ModelBuilder builder;
  builder.Add("One", 1, 48);
  builder.Add("Two", 1, 72);
  builder.Model.Lanes[0].Tracks[1].Asset.EntryPoint = 120;  // 5 s into the file
  const std::vector<Assay::FileFigures> files = {Figures()};
  const RateCurve curve = RateCurveOf(builder.Model, ByAsset(files));
  ASSERT_EQ(curve.Seconds(), 5);
  EXPECT_EQ(curve.Steps()[0].Rate, 100);
  EXPECT_EQ(curve.Steps()[399].Rate, 110);
  EXPECT_EQ(curve.Steps()[400].Rate, 150) << "second 5 of the file";
  EXPECT_EQ(curve.Steps()[999].Rate, 170);
  EXPECT_EQ(curve.Steps()[999].Limit, 250);
}

TEST(PageFigures, FiguresShorterThanTheFileEndEarly) {
  ModelBuilder builder;
  builder.Add("One", 1, 240);
  std::vector<Assay::FileFigures> files = {Figures()};
  files[0].Picture->Spans.resize(5);
  const RateCurve curve = RateCurveOf(builder.Model, ByAsset(files));
  EXPECT_EQ(curve.Steps()[499].Rate, 140);
  EXPECT_LT(curve.Steps()[500].Rate, 0);
}

TEST(PageFigures, LevelsAreTheHighestOfAllReels) {
  ModelBuilder builder;
  builder.Add("One", 2, 48);
  const Cairn::UUID other = Cairn::UUID::Random();
  builder.Model.Lanes[1].Tracks[1].Asset.AssetID = other;
  std::vector<Assay::FileFigures> files = {Figures(), Figures()};
  files[1].Asset = other;
  files[1].Channels = {{"L", -10}, {"R", -2}, {"C", -50}, {"HI", -20}};
  const std::vector<ChannelLevel> levels = LevelsOf(builder.Model, 0, ByAsset(files));
  EXPECT_EQ(LevelsText(levels), "L \u22123.2, 2 \u22122.0, C \u221250.0, HI \u221220.0");
  EXPECT_TRUE(LevelsOf(builder.Model, 1, ByAsset(files)).empty());
}

}  // namespace
