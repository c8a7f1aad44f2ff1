// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/TimelineExport.h"

#include "../../support/AssertionText.h"
#include "../../support/FakeTimeline.h"
#include "../../support/SchemaCheck.h"
#include "../../support/TestSeed.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>

namespace {

using Strata::ShowPlaylist;
using testsupport::Asserts;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::FakeTrack;
using testsupport::NumberedID;
using testsupport::ui32_t;

/// A show playlist document with its identifier and date, which are new each time, in normal form.
std::string Normalised(const std::string& document) {
  const std::string hex = "[0-9a-f]";
  const std::regex id("\n  <Id>urn:uuid:" + hex + "{8}-" + hex + "{4}-4" + hex + "{3}-[89ab]" + hex + "{3}-" + hex +
                      "{12}</Id>\n");
  const std::regex date("<IssueDate>[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[+-][0-9]{2}:[0-9]{2}<");
  return std::regex_replace(std::regex_replace(document, id, "\n  <Id>ID</Id>\n"), date, "<IssueDate>DATE<");
}

std::string ShowPlaylistOf(const FakeTimeline& fake) {
  std::string document = "before";
  EXPECT_EQ(fake.Playlist.GetShowPlaylistForTimeline(document), Ferro::RESULT_OK);
  return document;
}

/// Composition 1 with reels of 100 and 200 edit units, then composition 2 with one of 150.
struct TimelineExport : testing::Test {
  TimelineExport() {
    Fake.Append(Composition(1), {100, 200});
    Fake.Append(Composition(2), {150});
    Fake.Finish();
  }
  FakeTimeline Fake;
  Strata::IPlaylist& Playlist = Fake.Playlist;

  void AddEvent(const std::string& label, ui32_t position, const std::string& scope = "urn:scope") {
    EXPECT_EQ(Playlist.AddEventToTimeline(label, scope, position), Ferro::RESULT_OK);
  }
};

TEST_F(TimelineExport, DocumentThatCannotBeWrittenLeavesNoOlderOne) {
  AddEvent(std::string("no text for XML: ") + '\x01', 0);
  EXPECT_EQ(ShowPlaylistOf(Fake), "");
}

TEST_F(TimelineExport, EventsBecomeMarkersInFrontOfAndInsideCompositions) {
  AddEvent("start", 0);
  AddEvent("inside", 50);
  AddEvent("between", 300);
  AddEvent("last", 449);
  EXPECT_EQ(Normalised(ShowPlaylistOf(Fake)), R"(<?xml version="1.0" encoding="UTF-8"?>
<ShowPlaylist xmlns="http://www.strata.example/ra/xsd/strata-spl-1">
  <Id>ID</Id>
  <Label>Untitled</Label>
  <ShowTitleText>Untitled</ShowTitleText>
  <AnnotationText>Runtime playlist</AnnotationText>
  <IssueDate>DATE</IssueDate>
  <EstimatedDuration>19</EstimatedDuration>
  <ShowSequence>
    <Marker>
      <Label scope="urn:scope">start</Label>
    </Marker>
    <CompositionPlaylist>
      <CompositionId>urn:uuid:00000000-0000-4000-8000-000000000001</CompositionId>
      <EditRate>24 1</EditRate>
      <Duration>300</Duration>
      <Marker>
        <Label scope="urn:scope">inside</Label>
        <Offset>50</Offset>
      </Marker>
    </CompositionPlaylist>
    <Marker>
      <Label scope="urn:scope">between</Label>
    </Marker>
    <CompositionPlaylist>
      <CompositionId>urn:uuid:00000000-0000-4000-8000-000000000002</CompositionId>
      <EditRate>24 1</EditRate>
      <Duration>150</Duration>
      <Marker>
        <Label scope="urn:scope">last</Label>
        <Offset>149</Offset>
      </Marker>
    </CompositionPlaylist>
  </ShowSequence>
</ShowPlaylist>
)");
}

TEST_F(TimelineExport, EventOnALaterReelsFirstEditUnitIsInsideItsComposition) {
  AddEvent("reel 2", 100);
  const std::string document = ShowPlaylistOf(Fake);
  EXPECT_NE(document.find("<Offset>100</Offset>"), std::string::npos) << document;
}

TEST_F(TimelineExport, EventsAtOnePositionStayInOrder) {
  for (const char* label : {"c", "a", "b"}) AddEvent(label, 300);
  for (const char* label : {"z", "y"}) AddEvent(label, 310);
  std::string labels;
  const std::string document = ShowPlaylistOf(Fake);
  const std::regex label("<Label scope=\"urn:scope\">(.)</Label>");
  for (std::sregex_iterator i(document.begin(), document.end(), label), end; i != end; ++i) labels += (*i)[1];
  EXPECT_EQ(labels, "cabzy");
}

TEST_F(TimelineExport, EventsBeyondTheTimelineAreLeftOut) {
  AddEvent("end", 449);
  Fake.State.Events.back().ShowPosition = 450;
  EXPECT_EQ(ShowPlaylistOf(Fake).find("end<"), std::string::npos);
}

TEST_F(TimelineExport, LabelsAndScopesAreEscaped) {
  AddEvent("<&>", 10, "urn:a&b");
  EXPECT_NE(ShowPlaylistOf(Fake).find("<Label scope=\"urn:a&amp;b\">&lt;&amp;&gt;</Label>"), std::string::npos);
}

TEST_F(TimelineExport, EachExportHasItsOwnIdentifier) {
  const std::string first = ShowPlaylistOf(Fake);
  const std::string second = ShowPlaylistOf(Fake);
  EXPECT_EQ(Normalised(first), Normalised(second));
  EXPECT_NE(first.substr(first.find("<Id>"), 60), second.substr(second.find("<Id>"), 60));
}

TEST_F(TimelineExport, ShowPlaylistIsValid) {
  std::vector<std::string> documents = {ShowPlaylistOf(FakeTimeline()), ShowPlaylistOf(Fake)};
  AddEvent("start", 0);
  AddEvent("<&>", 10, "");
  AddEvent("between", 300);
  documents.push_back(ShowPlaylistOf(Fake));
  EXPECT_EQ(testsupport::ValidateDocuments(SHOW_PLAYLIST_SCHEMA, documents), "");
}

TEST(TimelineExportTwice, CompositionPlayedTwiceIsTwoItems) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10, 20});
  fake.Append(Composition(1), {10, 20});
  fake.Finish();
  ShowPlaylist show;
  ASSERT_EQ(show.DecodeXML(ShowPlaylistOf(fake)), Ferro::RESULT_OK);
  ASSERT_EQ(show.ShowSequence.size(), 2u);
  for (const auto& item : show.ShowSequence)
    EXPECT_EQ(static_cast<const ShowPlaylist::CompositionItem&>(*item).Duration, 30u);
}

TEST(TimelineExportEmpty, EmptyTimelineIsAnEmptyShow) {
  const FakeTimeline fake;
  EXPECT_EQ(Normalised(ShowPlaylistOf(fake)), R"(<?xml version="1.0" encoding="UTF-8"?>
<ShowPlaylist xmlns="http://www.strata.example/ra/xsd/strata-spl-1">
  <Id>ID</Id>
  <Label>Untitled</Label>
  <ShowTitleText>Untitled</ShowTitleText>
  <AnnotationText>Runtime playlist</AnnotationText>
  <IssueDate>DATE</IssueDate>
  <ShowSequence/>
</ShowPlaylist>
)");
}

// Reloading.

/// One line per appearance of a composition and per event, in timeline order.
using Lines = std::vector<std::string>;

std::string Line(const std::string& what, const std::string& name, ui32_t number) {
  return what + " " + name + " " + std::to_string(number);
}

/// What a timeline holds.
Lines Held(const FakeTimeline& fake) {
  Lines lines;
  for (const auto& reel : fake.State.Timeline)
    if (reel.m_CPLReelNumber == 0)
      lines.push_back(Line(reel.m_CPL.EncodeString(), reel.m_EditRate.EncodeString(),
                           fake.State.Compositions.at(reel.m_CPL).Duration));
  for (const auto& event : fake.State.Events) lines.push_back(Line(event.Label, event.LabelScope, event.ShowPosition));
  return lines;
}

/// What playing a show of compositions and markers holds.
Lines Held(const ShowPlaylist& show) {
  Lines compositions;
  Lines events;
  ui32_t end = 0;
  for (const auto& item : show.ShowSequence) {
    if (item->m_Type == ShowPlaylist::SIT_MARKER) {
      const auto& marker = static_cast<const ShowPlaylist::MarkerItem&>(*item);
      events.push_back(Line(marker.Label, marker.Scope, end));
      continue;
    }
    const auto& composition = static_cast<const ShowPlaylist::CompositionItem&>(*item);
    for (const auto& marker : composition.MarkerList)
      events.push_back(Line(marker.Label, marker.Scope, end + static_cast<ui32_t>(marker.Offset)));
    compositions.push_back(
        Line(composition.ID.EncodeString(), composition.EditRate.EncodeString(), composition.Duration));
    end += composition.Duration;
  }
  compositions.insert(compositions.end(), events.begin(), events.end());
  return compositions;
}

TEST(TimelineExportReload, CompositionsAndEventPositionsComeBack) {
  std::mt19937 random(testsupport::TestSeed(std::random_device()()));
  const auto below = [&random](ui32_t limit) { return static_cast<ui32_t>(random() % limit); };
  for (int round = 0; round < 200; ++round) {
    FakeTimeline fake;
    for (ui32_t appearances = 1 + below(6); appearances > 0; --appearances) {
      const ui32_t number = 1 + below(3);  // each is the same wherever it appears
      fake.Append(Composition(number), std::vector<ui32_t>(number, 4 * number));
    }
    fake.Finish();
    for (ui32_t events = below(20); events > 0; --events)
      ASSERT_EQ(
          fake.Playlist.AddEventToTimeline("event " + std::to_string(events), "urn:scope:" + std::to_string(below(3)),
                                           below(fake.Playlist.GetDuration() + 2)),
          Ferro::RESULT_OK);
    ShowPlaylist show;
    ASSERT_EQ(show.DecodeXML(ShowPlaylistOf(fake)), Ferro::RESULT_OK);
    ASSERT_EQ(Held(show), Held(fake));
    EXPECT_EQ(show.EstimatedDuration, fake.Playlist.GetDurationSeconds());
  }
}

// The resource presentation list.

FakeTrack::Facts Text(ui32_t asset, const std::string& kind, const std::string& language) {
  FakeTrack::Facts facts;
  facts.AssetID = NumberedID(asset);
  facts.AssetName = kind;
  facts.Language = language;
  facts.EntryPoint = 5;
  facts.Duration = 100;
  facts.IntrinsicDuration = 120;
  return facts;
}

TEST_F(TimelineExport, TextTracksAreAnnouncedReelByReel) {
  FakeTimeline::Add(Fake.Reel(1).OnScreenText, Text(71, "MainSubtitle", "fr"));
  FakeTimeline::Add(Fake.Reel(1).OffScreenText, Text(72, "ClosedCaption", ""));
  FakeTimeline::Add(Fake.Reel(1).OffScreenText, Text(73, "ClosedSubtitle", "en-GB"));
  FakeTimeline::Add(Fake.Reel(2).OffScreenText, Text(74, "ClosedCaption", "de"));
  std::string document;
  ui32_t playout_id = 0;
  EXPECT_EQ(Playlist.GetPresentationListForTimeline("http://server/text", document, playout_id), Ferro::RESULT_OK);
  EXPECT_EQ(document, R"(<?xml version="1.0" encoding="UTF-8"?>
<ResourcePresentationList xmlns="http://www.smpte-ra.org/schemas/430-11/2010/RPL" PlayoutID=")" +
                          std::to_string(playout_id) + R"(">
  <ReelResources TimelineOffset="100" ReelID="urn:uuid:00000000-0000-4000-8000-0000000007d1" EditRate="24 1">
    <ReelResource Id="urn:uuid:00000000-0000-4000-8000-000000000047" ResourceType="MainSubtitle" Language="fr" EntryPoint="5" Duration="100" IntrinsicDuration="120">
      <ResourceFile>http://server/text/00000000-0000-4000-8000-000000000047</ResourceFile>
    </ReelResource>
    <ReelResource Id="urn:uuid:00000000-0000-4000-8000-000000000048" ResourceType="ClosedCaption" EntryPoint="5" Duration="100" IntrinsicDuration="120">
      <ResourceFile>http://server/text/00000000-0000-4000-8000-000000000048</ResourceFile>
    </ReelResource>
    <ReelResource Id="urn:uuid:00000000-0000-4000-8000-000000000049" ResourceType="ClosedSubtitle" Language="en-GB" EntryPoint="5" Duration="100" IntrinsicDuration="120">
      <ResourceFile>http://server/text/00000000-0000-4000-8000-000000000049</ResourceFile>
    </ReelResource>
  </ReelResources>
  <ReelResources TimelineOffset="300" ReelID="urn:uuid:00000000-0000-4000-8000-0000000007d2" EditRate="24 1">
    <ReelResource Id="urn:uuid:00000000-0000-4000-8000-00000000004a" ResourceType="ClosedCaption" Language="de" EntryPoint="5" Duration="100" IntrinsicDuration="120">
      <ResourceFile>http://server/text/00000000-0000-4000-8000-00000000004a</ResourceFile>
    </ReelResource>
  </ReelResources>
</ResourcePresentationList>
)");
}

TEST_F(TimelineExport, PresentationListIsValid) {
  const char* folder = std::getenv("STRATA_SCHEMAS");
  if (folder == nullptr || *folder == '\0')
    GTEST_SKIP() << "NOT RUN: STRATA_SCHEMAS does not name a folder with the schema of ST 430-11:2010";
  FakeTimeline::Add(Fake.Reel(1).OnScreenText, Text(71, "MainSubtitle", "fr"));
  FakeTimeline::Add(Fake.Reel(1).OffScreenText, Text(72, "ClosedCaption", ""));
  std::string document;
  ui32_t playout_id = 0;
  ASSERT_EQ(Playlist.GetPresentationListForTimeline("http://server/a b", document, playout_id), Ferro::RESULT_OK);
  EXPECT_EQ(testsupport::ValidateDocuments(std::string(folder) + "/reconstructed-430-11-2010-RPL.xsd", {document}), "");
}

TEST_F(TimelineExport, TimelineWithoutTextIsAListWithoutReels) {
  std::string document;
  ui32_t first = 0;
  ui32_t second = 0;
  EXPECT_EQ(Playlist.GetPresentationListForTimeline("base", document, first), Ferro::RESULT_FALSE);
  EXPECT_EQ(document, R"(<?xml version="1.0" encoding="UTF-8"?>
<ResourcePresentationList xmlns="http://www.smpte-ra.org/schemas/430-11/2010/RPL" PlayoutID=")" +
                          std::to_string(first) + "\"/>\n");
  EXPECT_EQ(Playlist.GetPresentationListForTimeline("base", document, second), Ferro::RESULT_FALSE);
  EXPECT_NE(first, second) << "drawn anew; equal once in four thousand million runs";
}

// Lists.

TEST_F(TimelineExport, LastCompositionContextReplacesWhatTheCallerHeld) {
  Fake.State.LastCPL = NumberedID(2);
  for (const char* name : {"/a.mxf", "/b.mxf"}) {
    Fake.State.LastCPLAssets.emplace_back();
    Fake.State.LastCPLAssets.back().RealFilename = name;
  }
  for (const size_t held : {0u, 1u, 5u}) {
    Ferro::UUID id = NumberedID(9);
    Cairn::AssetInfoList assets;
    assets.resize(held);
    Playlist.GetLastCPLContext(id, assets);
    EXPECT_EQ(id, NumberedID(2));
    ASSERT_EQ(assets.size(), 2u);
    EXPECT_EQ(assets.front().RealFilename, "/a.mxf");
    EXPECT_EQ(assets.back().RealFilename, "/b.mxf");
  }
}

TEST_F(TimelineExport, IdentifierListsReplaceWhatTheCallerHeld) {
  Fake.Picture(0).Is.KeyID = NumberedID(50);
  Fake.Finish();
  const auto expect = [this](void (Strata::IPlaylist::*get)(Ferro::UUIDList&) const, std::vector<ui32_t> expected) {
    Ferro::UUIDList ids;
    for (ui32_t held = 0; held < 5; ++held) ids.push_back(NumberedID(90 + held));
    (Playlist.*get)(ids);
    ASSERT_EQ(ids.size(), expected.size());
    size_t i = 0;
    for (const Ferro::UUID& id : ids) EXPECT_EQ(id, NumberedID(expected[i++]));
  };
  expect(&Strata::IPlaylist::GetKeyIDList, {50});
  expect(&Strata::IPlaylist::GetCPLIDList, {1, 2});
  expect(&Strata::IPlaylist::GetCiphertextCPLIDList, {1});
}

// Broken invariants.

using TimelineExportDeathTest = TimelineExport;

TEST_F(TimelineExportDeathTest, EventBeforeTheFirstCompositionAsserts) {
  AddEvent("event", 50);
  Fake.Reel(0).m_CPLReelNumber = 1;
  std::string document;
  EXPECT_DEATH((void)Playlist.GetShowPlaylistForTimeline(document), Asserts("current_cpl_item"));
}

TEST_F(TimelineExportDeathTest, EventWithoutAnyCompositionAsserts) {
  AddEvent("event", 50);
  for (size_t reel = 0; reel < 3; ++reel) Fake.Reel(reel).m_CPLReelNumber = 1;
  std::string document;
  EXPECT_DEATH((void)Playlist.GetShowPlaylistForTimeline(document), Asserts("current_cpl_item"));
}

TEST_F(TimelineExportDeathTest, EmptyOffScreenTextAsserts) {
  Fake.Reel(0).OffScreenText.resize(1);
  std::string document;
  ui32_t playout_id = 0;
  EXPECT_DEATH((void)Playlist.GetPresentationListForTimeline("base", document, playout_id), Asserts("!ost_i->empty()"));
}

}  // namespace
