// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/TimelineSummary.h"

#include "Playlist/TextSpanContext.h"

#include "../../support/AssertionText.h"
#include "../../support/FakeTimeline.h"
#include "../../support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

using Strata::TextSpanContext;
using testsupport::Asserts;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::FakeTrack;
using testsupport::LogCapture;
using testsupport::NumberedID;
using testsupport::ui32_t;

constexpr ui32_t ChangedComposition = Strata::PlaylistInspector::ChangedComposition;
constexpr ui32_t ChangedPosition = Strata::PlaylistInspector::ChangedPosition;

FakeTrack Text(ui32_t asset, ui32_t entry_point, ui32_t duration) {
  FakeTrack::Facts facts;
  facts.AssetID = NumberedID(asset);
  facts.EntryPoint = entry_point;
  facts.Duration = duration;
  return FakeTrack(facts);
}

void ExpectNoSpan(const FakeTrack& track) {
  EXPECT_EQ(track.Calls.SetSpanDuration, 0u);
  EXPECT_EQ(track.GetSpanDuration(), 0u);
}

void ExpectOneEmptyEntry(const TextSpanContext& context) {
  ASSERT_EQ(context.member_reels.size(), 1u);
  EXPECT_EQ(context.member_reels.front().track, nullptr);
  EXPECT_FALSE(context.member_reels.front().id.HasValue());
  EXPECT_EQ(context.member_reels.front().offset, 0u);
  EXPECT_EQ(context.member_reels.front().duration, 0u);
}

TEST(TextSpanContext, StartsWithOneEmptyEntry) {
  const TextSpanContext context;
  ExpectOneEmptyEntry(context);
}

TEST(TextSpanContext, FirstTrackFillsTheEntry) {
  FakeTrack track = Text(7, 30, 40);
  TextSpanContext context;
  context.TestEntry(&track);
  ASSERT_EQ(context.member_reels.size(), 1u);
  EXPECT_EQ(context.member_reels.front().track, &track);
  EXPECT_EQ(context.member_reels.front().id, NumberedID(7));
  EXPECT_EQ(context.member_reels.front().offset, 30u);
  EXPECT_EQ(context.member_reels.front().duration, 40u);
}

TEST(TextSpanContext, ContinuationStandsInFront) {
  FakeTrack first = Text(7, 0, 100);
  FakeTrack second = Text(7, 100, 150);
  TextSpanContext context;
  context.TestEntry(&first);
  context.TestEntry(&second);
  ASSERT_EQ(context.member_reels.size(), 2u);
  EXPECT_EQ(context.member_reels.front().track, &second);
  EXPECT_EQ(context.member_reels.back().track, &first);
}

TEST(TextSpanContext, ThreeConsecutiveReelsLearnHowLongTheTextStillRuns) {
  FakeTrack first = Text(7, 0, 100);
  FakeTrack second = Text(7, 100, 150);
  FakeTrack third = Text(7, 250, 50);
  TextSpanContext context;
  for (FakeTrack* track : {&first, &second, &third}) context.TestEntry(track);
  context.Reset();
  EXPECT_EQ(first.GetSpanDuration(), 300u);
  EXPECT_EQ(second.GetSpanDuration(), 200u);
  EXPECT_EQ(third.GetSpanDuration(), 50u);
  for (const FakeTrack* track : {&first, &second, &third}) EXPECT_EQ(track->Calls.SetSpanDuration, 1u);
  ExpectOneEmptyEntry(context);
}

TEST(TextSpanContext, SingleReelGetsNoSpanDuration) {
  FakeTrack track = Text(7, 0, 100);
  TextSpanContext context;
  context.TestEntry(&track);
  context.Reset();
  ExpectNoSpan(track);
  ExpectOneEmptyEntry(context);
}

TEST(TextSpanContext, GapAndOverlapFormNoSpan) {
  for (const ui32_t start : {120U, 99U}) {
    FakeTrack first = Text(7, 0, 100);
    FakeTrack second = Text(7, start, 50);
    TextSpanContext context;
    context.TestEntry(&first);
    context.TestEntry(&second);
    context.Reset();
    ExpectNoSpan(first);
    ExpectNoSpan(second);
  }
}

TEST(TextSpanContext, AnotherAssetClosesTheSpanAndBeginsItsOwn) {
  FakeTrack first = Text(7, 0, 100);
  FakeTrack second = Text(7, 100, 50);
  FakeTrack other = Text(8, 150, 30);
  FakeTrack more = Text(8, 180, 20);
  TextSpanContext context;
  for (FakeTrack* track : {&first, &second, &other}) context.TestEntry(track);
  EXPECT_EQ(first.GetSpanDuration(), 150u);
  EXPECT_EQ(second.GetSpanDuration(), 50u);
  ASSERT_EQ(context.member_reels.size(), 1u);
  EXPECT_EQ(context.member_reels.front().track, &other);
  context.TestEntry(&more);
  context.Reset();
  EXPECT_EQ(other.GetSpanDuration(), 50u);
  EXPECT_EQ(more.GetSpanDuration(), 20u);
}

TEST(TextSpanContext, GapAfterASpanClosesItAndBeginsTheNext) {
  FakeTrack first = Text(7, 0, 100);
  FakeTrack second = Text(7, 100, 50);
  FakeTrack third = Text(7, 0, 60);
  FakeTrack fourth = Text(7, 60, 40);
  TextSpanContext context;
  for (FakeTrack* track : {&first, &second, &third, &fourth}) context.TestEntry(track);
  context.Reset();
  EXPECT_EQ(first.GetSpanDuration(), 150u);
  EXPECT_EQ(second.GetSpanDuration(), 50u);
  EXPECT_EQ(third.GetSpanDuration(), 100u);
  EXPECT_EQ(fourth.GetSpanDuration(), 40u);
}

TEST(TextSpanContext, ResetBetweenSpansChangesNothing) {
  TextSpanContext context;
  context.Reset();
  context.Reset();
  ExpectOneEmptyEntry(context);
}

TEST(TextSpanContextDeathTest, NoEntryAtAllAsserts) {
  TextSpanContext context;
  context.member_reels.clear();
  EXPECT_DEATH(context.Reset(), Asserts("member_reels.size() == 1"));
  FakeTrack track = Text(7, 0, 100);
  EXPECT_DEATH(context.TestEntry(&track), Asserts("member_reels.size() > 0"));
}

// The whole pass.

/// Adds a track with a content key to a slot or a list of them.
template <class Slot>
FakeTrack& AddEncrypted(Slot& slot, ui32_t key) {
  FakeTrack& track = FakeTimeline::Add(slot);
  track.Is.KeyID = NumberedID(key);
  return track;
}

std::vector<std::string> Texts(const Ferro::UUIDList& ids) {
  std::vector<std::string> texts;
  for (const Ferro::UUID& id : ids) texts.push_back(id.EncodeString());
  return texts;
}
std::vector<std::string> Numbered(const std::vector<ui32_t>& numbers) {
  std::vector<std::string> texts;
  for (const ui32_t number : numbers) texts.push_back(NumberedID(number).EncodeString());
  return texts;
}
std::vector<std::string> KeyIDs(const Strata::IPlaylist& playlist) {
  Ferro::UUIDList ids;
  playlist.GetKeyIDList(ids);
  return Texts(ids);
}
std::vector<std::string> CPLIDs(const Strata::IPlaylist& playlist) {
  Ferro::UUIDList ids;
  playlist.GetCPLIDList(ids);
  return Texts(ids);
}
std::vector<std::string> CiphertextCPLIDs(const Strata::IPlaylist& playlist) {
  Ferro::UUIDList ids;
  playlist.GetCiphertextCPLIDList(ids);
  return Texts(ids);
}

TEST(FixupPlaylist, LogsReelsAndDurationAndComputesTheCounters) {
  FakeTimeline fake;
  fake.Append(Composition(1), {100, 200});
  const LogCapture log;
  EXPECT_EQ(fake.State.FixupPlaylist(), Ferro::RESULT_OK);
  ASSERT_EQ(log.Entries().size(), 1u);
  EXPECT_EQ(log.Entries()[0].Level, Ferro::LogLevel::Debug);
  EXPECT_EQ(log.Entries()[0].Message, "reels: 2, Duration: 300\n");
  EXPECT_EQ(fake.State.CurrentReel, &fake.Reel(0));
  EXPECT_EQ(fake.State.ReelPosition.Duration, 100u);
  EXPECT_EQ(fake.State.HasChanges, ChangedPosition | ChangedComposition);
}

TEST(FixupPlaylist, EmptyTimelineIsRefused) {
  FakeTimeline fake;
  const LogCapture log;
  EXPECT_EQ(fake.State.FixupPlaylist(), Ferro::RESULT_PARAM);
  ASSERT_EQ(log.Entries().size(), 2u);
  EXPECT_EQ(log.Entries()[0].Message, "reels: 0, Duration: 0\n");
  EXPECT_EQ(log.Entries()[1].Level, Ferro::LogLevel::Debug);
  EXPECT_EQ(log.Entries()[1].Message, "Show playlist contains no reels\n");
  EXPECT_EQ(fake.State.CurrentReel, nullptr);
  EXPECT_EQ(fake.State.HasChanges, 0u);
  EXPECT_EQ(fake.Playlist.GetDurationSeconds(), 0u);
}

TEST(FixupPlaylist, EmptyTimelineEmptiesTheIdentifierLists) {
  FakeTimeline fake;
  fake.Append(Composition(1), {240});
  fake.Picture(0).Is.KeyID = NumberedID(9);
  fake.Finish();
  ASSERT_EQ(KeyIDs(fake.Playlist), Numbered({9}));
  ASSERT_EQ(CiphertextCPLIDs(fake.Playlist), Numbered({1}));
  fake.State.Timeline.clear();
  const LogCapture log;
  EXPECT_EQ(fake.State.FixupPlaylist(), Ferro::RESULT_PARAM);
  EXPECT_EQ(CPLIDs(fake.Playlist), Numbered({}));
  EXPECT_EQ(KeyIDs(fake.Playlist), Numbered({}));
  EXPECT_EQ(CiphertextCPLIDs(fake.Playlist), Numbered({}));
  EXPECT_EQ(fake.Playlist.GetDurationSeconds(), 0u);
}

TEST(FixupPlaylist, CompositionIsListedOncePerAppearance) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10, 10});
  fake.Append(Composition(1), {10, 10});
  fake.Append(Composition(2), {10});
  fake.Append(Composition(1), {10, 10});
  fake.Finish();
  EXPECT_EQ(CPLIDs(fake.Playlist), Numbered({1, 1, 2, 1}));
  fake.Finish();
  EXPECT_EQ(CPLIDs(fake.Playlist), Numbered({1, 1, 2, 1})) << "rebuilt, not added to";
}

TEST(FixupPlaylist, EncryptedCompositionAndKeyAreListedOnce) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10, 10});
  fake.Append(Composition(1), {10, 10});
  for (size_t reel = 0; reel < 4; ++reel) fake.Picture(reel).Is.KeyID = NumberedID(50);
  fake.Finish();
  EXPECT_EQ(KeyIDs(fake.Playlist), Numbered({50}));
  EXPECT_EQ(CiphertextCPLIDs(fake.Playlist), Numbered({1}));
}

TEST(FixupPlaylist, KeysOfEveryKindAreListedInOrderOfTheTracks) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10});
  fake.Append(Composition(2), {10});
  for (const size_t i : {0u, 1u}) {
    Strata::TimelineReel& reel = fake.Reel(i);
    const auto base = static_cast<ui32_t>(100 * (i + 1));
    AddEncrypted(reel.AuxData, base + 6);
    AddEncrypted(reel.AuxData, base + 7);
    AddEncrypted(reel.OffScreenText, base + 4);
    AddEncrypted(reel.OffScreenText, base + 5);
    AddEncrypted(reel.OnScreenText, base + 3);
    AddEncrypted(reel.MainSound, base + 2);
    fake.Picture(i).Is.KeyID = NumberedID(base + 1);
  }
  fake.Finish();
  EXPECT_EQ(KeyIDs(fake.Playlist), Numbered({101, 102, 103, 104, 105, 106, 107, 201, 202, 203, 204, 205, 206, 207}));
  EXPECT_EQ(CiphertextCPLIDs(fake.Playlist), Numbered({1, 2}));
}

TEST(FixupPlaylist, AnyEncryptedTrackMakesItsCompositionEncrypted) {
  FakeTimeline fake;
  for (ui32_t number = 1; number <= 7; ++number) fake.Append(Composition(number), {10});
  fake.Picture(1).Is.KeyID = NumberedID(50);
  AddEncrypted(fake.Reel(2).MainSound, 50);
  AddEncrypted(fake.Reel(3).OnScreenText, 50);
  AddEncrypted(fake.Reel(4).OffScreenText, 50);
  AddEncrypted(fake.Reel(5).AuxData, 50);
  AddEncrypted(fake.Reel(6).AutomationEvent, 51);  // is not a track that plays
  fake.Finish();
  EXPECT_EQ(CiphertextCPLIDs(fake.Playlist), Numbered({2, 3, 4, 5, 6}));
  EXPECT_EQ(KeyIDs(fake.Playlist), Numbered({50}));
}

TEST(FixupPlaylist, EmptySlotsOfTextAndAuxDataAreNoKeys) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10});
  fake.Reel(0).OffScreenText.resize(2);
  fake.Reel(0).AuxData.resize(1);
  fake.Finish();
  EXPECT_EQ(KeyIDs(fake.Playlist), Numbered({}));
}

TEST(FixupPlaylist, ReelsOfOneTextFileFormASpan) {
  FakeTimeline fake;
  fake.Append(Composition(1), {100, 150, 50});
  const std::vector<ui32_t> entry_points = {0, 100, 250};
  std::vector<FakeTrack*> tracks;
  for (size_t i = 0; i < 3; ++i) {
    tracks.push_back(&FakeTimeline::Add(fake.Reel(i).OnScreenText));
    tracks[i]->Is = Text(7, entry_points[i], fake.Reel(i).m_Duration).Is;
  }
  fake.Finish();
  EXPECT_EQ(tracks[0]->GetSpanDuration(), 300u);
  EXPECT_EQ(tracks[1]->GetSpanDuration(), 200u);
  EXPECT_EQ(tracks[2]->GetSpanDuration(), 50u);
}

TEST(FixupPlaylist, ReelWithoutTextEndsTheSpan) {
  FakeTimeline fake;
  fake.Append(Composition(1), {100, 40, 100});
  FakeTrack& before = FakeTimeline::Add(fake.Reel(0).OnScreenText);
  FakeTrack& after = FakeTimeline::Add(fake.Reel(2).OnScreenText);
  before.Is = Text(7, 0, 100).Is;
  after.Is = Text(7, 100, 100).Is;
  fake.Finish();
  ExpectNoSpan(before);
  ExpectNoSpan(after);
}

TEST(FixupPlaylist, OffScreenTextFormsNoSpan) {
  FakeTimeline fake;
  fake.Append(Composition(1), {100, 100});
  FakeTrack& first = FakeTimeline::Add(fake.Reel(0).OffScreenText);
  FakeTrack& second = FakeTimeline::Add(fake.Reel(1).OffScreenText);
  first.Is = Text(7, 0, 100).Is;
  second.Is = Text(7, 100, 100).Is;
  fake.Finish();
  ExpectNoSpan(first);
  ExpectNoSpan(second);
}

// Seconds.

/// The seconds of reels of these lengths at one rate.
ui32_t Seconds(const std::vector<ui32_t>& durations, QUIRE::Rational edit_rate) {
  FakeTimeline fake;
  Strata::CompositionInfo info = Composition(1);
  info.EditRate = edit_rate;
  fake.Append(info, durations);
  fake.Finish();
  return fake.Playlist.GetDurationSeconds();
}

TEST(FixupPlaylist, SecondsAreRoundedHalfUp) {
  EXPECT_EQ(Seconds({1440, 1441}, {24, 1}), 120u) << "120.04";
  EXPECT_EQ(Seconds({1452}, {24, 1}), 61u) << "60.5";
  EXPECT_EQ(Seconds({1451}, {24, 1}), 60u) << "60.46";
  EXPECT_EQ(Seconds({11}, {24, 1}), 0u);
  EXPECT_EQ(Seconds({12}, {24, 1}), 1u);
  EXPECT_EQ(Seconds({24000}, {24000, 1001}), 1001u);
}

TEST(FixupPlaylist, SecondsAreAddedBeforeRounding) {
  EXPECT_EQ(Seconds({8, 8, 8}, {24, 1}), 1u) << "three thirds";
}

TEST(FixupPlaylist, SecondsThatAreNoNumberCountAsNone) {
  EXPECT_EQ(Seconds({24}, {0, 0}), 0u);
  EXPECT_EQ(Seconds({0}, {0, 1}), 0u);
  EXPECT_EQ(Seconds({240, 0}, {0, 0}), 0u) << "nor does the rest count";
}

TEST(FixupPlaylist, SecondsWithoutEndCountAsTheMostThereIs) {
  EXPECT_EQ(Seconds({24}, {0, 1}), 0xffffffffu);
  EXPECT_EQ(Seconds({0xffffffffu}, {1, 1}), 0xffffffffu);
  EXPECT_EQ(Seconds({0xfffffffeu}, {1, 1}), 0xfffffffeu);
  EXPECT_EQ(Seconds({0xfffffffeu}, {1, 2}), 0xffffffffu);
}

TEST(FixupPlaylist, SecondsAreNeverLessThanNone) {
  EXPECT_EQ(Seconds({24}, {-24, 1}), 0u);
}

TEST(FixupPlaylist, SecondsComeFromThePictureTracks) {
  FakeTimeline fake;
  fake.Append(Composition(1), {240, 240});
  fake.Picture(0).Is.Duration = 48;
  fake.Picture(0).Is.EditRate = QUIRE::Rational(48, 1);
  fake.Finish();
  EXPECT_EQ(fake.Playlist.GetDurationSeconds(), 11u);
  fake.Reel(0).MainPicture.set(nullptr);
  fake.Finish();
  EXPECT_EQ(fake.Playlist.GetDurationSeconds(), 10u) << "a reel without picture adds nothing";
}

// Events.

std::vector<std::pair<std::string, ui32_t>> Events(const Strata::EventList& events) {
  std::vector<std::pair<std::string, ui32_t>> list;
  for (const Strata::PlaylistEvent& event : events) list.emplace_back(event.Label, event.ShowPosition);
  return list;
}
using EventPairs = std::vector<std::pair<std::string, ui32_t>>;

void AddRaw(FakeTimeline& fake, const std::string& label, ui32_t position) {
  Strata::PlaylistEvent event;
  event.Label = label;
  event.ShowPosition = position;
  fake.State.Events.push_back(event);
}

TEST(FixupPlaylist, EventsAreSortedAndPulledOntoTheLastEditUnit) {
  FakeTimeline fake;
  fake.Append(Composition(1), {6000});
  AddRaw(fake, "late", 7000);
  AddRaw(fake, "early", 10);
  AddRaw(fake, "inside", 5000);
  AddRaw(fake, "end", 6000);
  fake.Finish();
  EXPECT_EQ(Events(fake.State.Events), EventPairs({{"early", 10}, {"inside", 5000}, {"end", 5999}, {"late", 5999}}));
}

TEST(FixupPlaylist, EventsBeyondTheEndKeepTheirOrder) {
  FakeTimeline fake;
  fake.Append(Composition(1), {4999});
  AddRaw(fake, "first", 10);
  AddRaw(fake, "second", 5000);
  AddRaw(fake, "third", 7000);
  fake.Finish();
  EXPECT_EQ(Events(fake.State.Events), EventPairs({{"first", 10}, {"second", 4998}, {"third", 4998}}));
}

TEST(FixupPlaylist, EventsAtOnePositionKeepTheOrderOfAdding) {
  FakeTimeline fake;
  fake.Append(Composition(1), {100});
  for (const char* label : {"c", "a", "b"}) AddRaw(fake, label, 50);
  AddRaw(fake, "before", 49);
  fake.Finish();
  EXPECT_EQ(Events(fake.State.Events), EventPairs({{"before", 49}, {"c", 50}, {"a", 50}, {"b", 50}}));
}

TEST(FixupPlaylist, EveryEventMayLieBeyondTheEnd) {
  FakeTimeline fake;
  fake.Append(Composition(1), {1});
  for (const char* label : {"a", "b"}) AddRaw(fake, label, 0xffffffff);
  fake.Finish();
  EXPECT_EQ(Events(fake.State.Events), EventPairs({{"a", 0}, {"b", 0}}));
}

TEST(FixupPlaylist, EventsOfAnEmptyTimelineAreSortedAndPulledInside) {
  FakeTimeline fake;
  fake.State.ShowPosition.Duration = 100;
  AddRaw(fake, "late", 700);
  AddRaw(fake, "inside", 50);
  AddRaw(fake, "early", 10);
  const LogCapture log;
  EXPECT_EQ(fake.State.FixupPlaylist(), Ferro::RESULT_PARAM);
  EXPECT_EQ(Events(fake.State.Events), EventPairs({{"early", 10}, {"inside", 50}, {"late", 99}}));
}

}  // namespace
