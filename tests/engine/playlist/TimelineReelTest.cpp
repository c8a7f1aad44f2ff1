// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/TimelineReel.h"

#include "../../support/AssertionText.h"
#include "../../support/FakeTimeline.h"
#include "../../support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

using Strata::TimelineReel;
using Strata::TrackPtr;
using Strata::TrackType_t;
using testsupport::Asserts;
using testsupport::FakeTimeline;
using testsupport::FakeTrack;
using testsupport::NumberedID;
using testsupport::ui32_t;
using Names = std::vector<std::string>;

constexpr auto NoSuchType = static_cast<TrackType_t>(5);

/// Tracks that leave their names behind when they are deleted.
class Journal {
 public:
  Names Deleted;

  FakeTrack* NewTrack(const std::string& name) {
    auto* track = new FakeTrack;
    track->OnDelete = [this, name] { Deleted.push_back(name); };
    return track;
  }
  /// Gives a reel one track of each single kind and two of each other, named `prefix` and the kind.
  void Fill(TimelineReel& reel, const std::string& prefix) {
    reel.MainPicture.set(NewTrack(prefix + "picture"));
    reel.MainSound.set(NewTrack(prefix + "sound"));
    reel.OnScreenText.set(NewTrack(prefix + "text"));
    reel.AutomationEvent.set(NewTrack(prefix + "automation"));
    for (const char* name : {"closed 0", "closed 1"}) reel.OffScreenText.emplace_back(NewTrack(prefix + name));
    for (const char* name : {"aux 0", "aux 1"}) reel.AuxData.emplace_back(NewTrack(prefix + name));
  }
};

bool AllEmpty(const std::vector<TrackPtr>& tracks) {
  return std::all_of(tracks.begin(), tracks.end(), [](const TrackPtr& track) { return track.empty(); });
}

bool HasNoTrack(const TimelineReel& reel) {
  return reel.MainPicture.empty() && reel.MainSound.empty() && reel.OnScreenText.empty() &&
         reel.AutomationEvent.empty() && AllEmpty(reel.OffScreenText) && AllEmpty(reel.AuxData);
}

TEST(h__mem_ptr, CopyTakesTheTrackAndEmptiesTheSource) {
  Journal journal;
  FakeTrack* track = journal.NewTrack("track");
  {
    const TrackPtr source(track);
    const TrackPtr copy(source);
    EXPECT_TRUE(source.empty());
    EXPECT_EQ(source.get(), nullptr);
    EXPECT_EQ(copy.get(), track);
    EXPECT_EQ(journal.Deleted, Names());
  }
  EXPECT_EQ(journal.Deleted, Names({"track"}));
}

TEST(h__mem_ptr, AssignmentDeletesWhatWasHeldAndEmptiesTheSource) {
  Journal journal;
  const TrackPtr source(journal.NewTrack("new"));
  TrackPtr destination(journal.NewTrack("old"));
  destination = source;
  EXPECT_EQ(journal.Deleted, Names({"old"}));
  EXPECT_TRUE(source.empty());
  EXPECT_FALSE(destination.empty());

  destination = source;
  EXPECT_EQ(journal.Deleted, Names({"old", "new"})) << "an empty source empties the destination";
  EXPECT_TRUE(destination.empty());
}

TEST(h__mem_ptr, AssignmentToItselfKeepsTheTrack) {
  Journal journal;
  TrackPtr pointer(journal.NewTrack("track"));
  const TrackPtr& same = pointer;
  pointer = same;
  EXPECT_FALSE(pointer.empty());
  EXPECT_EQ(journal.Deleted, Names());
}

TEST(TimelineReel, NewReelHasZeroNumbersAndNoTracks) {
  const TimelineReel reel;
  EXPECT_FALSE(reel.m_ID.HasValue());
  EXPECT_FALSE(reel.m_CPL.HasValue());
  EXPECT_FALSE(reel.m_CPLReelID.HasValue());
  EXPECT_EQ(reel.m_CPLReelNumber, 0u);
  EXPECT_EQ(reel.m_PlaylistReelNumber, 0u);
  EXPECT_EQ(reel.m_Duration, 0u);
  EXPECT_EQ(reel.m_Offset, 0u);
  EXPECT_FALSE(reel.m_StartDistinctCoding);
  EXPECT_EQ(reel.m_EditRate, QUIRE::Rational(0, 0));
  EXPECT_TRUE(HasNoTrack(reel));
  EXPECT_TRUE(reel.OffScreenText.empty());
  EXPECT_TRUE(reel.AuxData.empty());
}

void ExpectNumbers(const TimelineReel& reel) {
  EXPECT_EQ(reel.m_ID, NumberedID(1));
  EXPECT_EQ(reel.m_CPL, NumberedID(2));
  EXPECT_EQ(reel.m_CPLReelID, NumberedID(3));
  EXPECT_EQ(reel.m_CPLReelNumber, 4u);
  EXPECT_EQ(reel.m_PlaylistReelNumber, 5u);
  EXPECT_EQ(reel.m_Duration, 6u);
  EXPECT_EQ(reel.m_Offset, 7u);
  EXPECT_TRUE(reel.m_StartDistinctCoding);
  EXPECT_EQ(reel.m_EditRate, QUIRE::Rational(48, 2));
}

TEST(TimelineReel, CopyLeavesTheSourceWithoutTracks) {
  Journal journal;
  TimelineReel source;
  source.m_ID = NumberedID(1);
  source.m_CPL = NumberedID(2);
  source.m_CPLReelID = NumberedID(3);
  source.m_CPLReelNumber = 4;
  source.m_PlaylistReelNumber = 5;
  source.m_Duration = 6;
  source.m_Offset = 7;
  source.m_StartDistinctCoding = true;
  source.m_EditRate = QUIRE::Rational(48, 2);
  journal.Fill(source, "");
  const std::array<Strata::ITimelineTrack*, 8> tracks = {source.MainPicture.get(),      source.MainSound.get(),
                                                         source.OnScreenText.get(),     source.AutomationEvent.get(),
                                                         source.OffScreenText[0].get(), source.OffScreenText[1].get(),
                                                         source.AuxData[0].get(),       source.AuxData[1].get()};

  const TimelineReel copy(source);
  EXPECT_TRUE(HasNoTrack(source));
  ExpectNumbers(source);
  ExpectNumbers(copy);
  ASSERT_EQ(copy.OffScreenText.size(), 2u);
  ASSERT_EQ(copy.AuxData.size(), 2u);
  const std::array<Strata::ITimelineTrack*, 8> copied = {
      copy.MainPicture.get(),      copy.MainSound.get(),        copy.OnScreenText.get(), copy.AutomationEvent.get(),
      copy.OffScreenText[0].get(), copy.OffScreenText[1].get(), copy.AuxData[0].get(),   copy.AuxData[1].get()};
  EXPECT_EQ(copied, tracks);
  EXPECT_EQ(journal.Deleted, Names());
}

TEST(TimelineReel, CopyDeletesTheTracksItReplaces) {
  Journal journal;
  {
    TimelineReel source;
    TimelineReel destination;
    journal.Fill(source, "new ");
    journal.Fill(destination, "old ");
    destination.OffScreenText.emplace_back(journal.NewTrack("old closed 2"));
    destination.Copy(source);
    EXPECT_EQ(journal.Deleted, Names({"old picture", "old sound", "old text", "old automation", "old closed 0",
                                      "old closed 1", "old closed 2", "old aux 0", "old aux 1"}));
    EXPECT_EQ(destination.OffScreenText.size(), 2u);
    EXPECT_EQ(destination.AuxData.size(), 2u);
    EXPECT_FALSE(AllEmpty(destination.OffScreenText));
  }
  EXPECT_EQ(journal.Deleted.size(), 17u) << "each track is deleted once";
}

TEST(TimelineReel, CopyOfAReelWithoutTracksDeletesAll) {
  Journal journal;
  TimelineReel destination;
  journal.Fill(destination, "");
  destination = TimelineReel();
  EXPECT_EQ(journal.Deleted.size(), 8u);
  EXPECT_TRUE(HasNoTrack(destination));
  EXPECT_TRUE(destination.OffScreenText.empty());
  EXPECT_TRUE(destination.AuxData.empty());
}

TEST(TimelineReel, CopyOfItselfKeepsTheTracks) {
  Journal journal;
  TimelineReel reel;
  journal.Fill(reel, "");
  const TimelineReel& same = reel;
  reel = same;
  EXPECT_EQ(journal.Deleted, Names());
  EXPECT_FALSE(reel.MainPicture.empty());
  EXPECT_EQ(reel.OffScreenText.size(), 2u);
  EXPECT_FALSE(AllEmpty(reel.OffScreenText));
  EXPECT_FALSE(AllEmpty(reel.AuxData));
}

TEST(TimelineReel, DestructorDeletesTracksInReverseImportance) {
  Journal journal;
  {
    TimelineReel reel;
    journal.Fill(reel, "");
  }
  EXPECT_EQ(journal.Deleted,
            Names({"automation", "aux 0", "aux 1", "closed 0", "closed 1", "text", "sound", "picture"}));
}

TEST(TimelineReel, GrowingTimelineNeverDuplicatesOrLosesTracks) {
  Journal journal;
  {
    Strata::Timeline_t timeline;
    for (int i = 0; i < 100; ++i) {
      TimelineReel reel;
      journal.Fill(reel, "");
      timeline.push_back(reel);
    }
    EXPECT_EQ(journal.Deleted, Names());
    for (const TimelineReel& reel : timeline) EXPECT_FALSE(HasNoTrack(reel));
  }
  EXPECT_EQ(journal.Deleted.size(), 800u);
}

// The channel map.

TEST(TimelineReel, SingleTracksAnswerChannelZeroOnly) {
  Journal journal;
  TimelineReel reel;
  journal.Fill(reel, "");
  EXPECT_EQ(reel.GetReaderForChannel(Strata::TRKT_IMAGE, 0, 9), reel.MainPicture.get());
  EXPECT_EQ(reel.GetReaderForChannel(Strata::TRKT_SOUND, 0, 9), reel.MainSound.get());
  EXPECT_EQ(reel.GetReaderForChannel(Strata::TRKT_ON_SCREEN_TEXT, 0, 9), reel.OnScreenText.get());
  const testsupport::LogCapture log;
  for (const auto type : {Strata::TRKT_IMAGE, Strata::TRKT_SOUND, Strata::TRKT_ON_SCREEN_TEXT})
    for (const ui32_t channel : {1u, 2u, 0xffffffffu}) EXPECT_EQ(reel.GetReaderForChannel(type, channel, 9), nullptr);
  EXPECT_EQ(log.Text(), "") << "a channel that is not there is no news";
}

TEST(TimelineReel, ListedTracksAnswerChannelsBelowTheirNumber) {
  Journal journal;
  TimelineReel reel;
  journal.Fill(reel, "");
  const testsupport::LogCapture log;
  for (const ui32_t channel : {0u, 1u}) {
    EXPECT_EQ(reel.GetReaderForChannel(Strata::TRKT_OFF_SCREEN_TEXT, channel, 9), reel.OffScreenText[channel].get());
    EXPECT_EQ(reel.GetReaderForChannel(Strata::TRKT_AUX_DATA, channel, 9), reel.AuxData[channel].get());
  }
  for (const ui32_t channel : {2u, 0xffffffffu}) {
    EXPECT_EQ(reel.GetReaderForChannel(Strata::TRKT_OFF_SCREEN_TEXT, channel, 9), nullptr);
    EXPECT_EQ(reel.GetReaderForChannel(Strata::TRKT_AUX_DATA, channel, 9), nullptr);
  }
  EXPECT_EQ(log.Text(), "");
}

TEST(TimelineReel, MissingTracksAnswerNull) {
  const TimelineReel reel;
  for (ui32_t type = 0; type < Strata::TRKT_MAX; ++type)
    EXPECT_EQ(reel.GetReaderForChannel(static_cast<TrackType_t>(type), 0, 0), nullptr);
}

TEST(TimelineReel, UnknownTypeAnswersNullAndIsLogged) {
  const TimelineReel reel;
  const testsupport::LogCapture log;
  EXPECT_EQ(reel.GetReaderForChannel(NoSuchType, 3, 77), nullptr);
  ASSERT_EQ(log.Entries().size(), 1u);
  EXPECT_EQ(log.Entries()[0].Level, Ferro::LogLevel::Debug);
  EXPECT_EQ(log.Entries()[0].Message, "Unknown track type 5 for channel 3, frame 77\n");
}

TEST(TimelineReel, ChannelCountIsOneButForListedTracks) {
  Journal journal;
  TimelineReel reel;
  for (ui32_t type = 0; type < 7; ++type)
    EXPECT_EQ(reel.GetChannelCountForType(static_cast<TrackType_t>(type), 0), type == 3 || type == 4 ? 0u : 1u);
  journal.Fill(reel, "");
  reel.AuxData.emplace_back(journal.NewTrack("aux 2"));
  EXPECT_EQ(reel.GetChannelCountForType(Strata::TRKT_OFF_SCREEN_TEXT, 0), 2u);
  EXPECT_EQ(reel.GetChannelCountForType(Strata::TRKT_AUX_DATA, 0), 3u);
}

// Readiness.

struct ReelReadiness : testing::Test {
  TimelineReel Reel;
  FakeTrack& Picture = FakeTimeline::Add(Reel.MainPicture);
  FakeTrack& Sound = FakeTimeline::Add(Reel.MainSound);
  FakeTrack& Text = FakeTimeline::Add(Reel.OnScreenText);
  FakeTrack& Closed = FakeTimeline::Add(Reel.OffScreenText);
  FakeTrack& Aux0 = FakeTimeline::Add(Reel.AuxData);
  FakeTrack& Aux1 = FakeTimeline::Add(Reel.AuxData);

  std::vector<FakeTrack*> All() { return {&Picture, &Sound, &Text, &Closed, &Aux0, &Aux1}; }
  /// Which tracks, in the order of All, are ready.
  std::vector<bool> Ready() {
    std::vector<bool> ready;
    for (const FakeTrack* track : All()) ready.push_back(track->Ready);
    return ready;
  }
};

TEST_F(ReelReadiness, OnlyTracksOfTheTypeAreMadeReady) {
  Reel.MakeReady(Strata::TRKT_IMAGE);
  EXPECT_EQ(Ready(), std::vector<bool>({true, false, false, false, false, false}));
  Reel.MakeReady(Strata::TRKT_SOUND);
  EXPECT_EQ(Ready(), std::vector<bool>({true, true, false, false, false, false}));
  Reel.MakeReady(Strata::TRKT_AUX_DATA);
  EXPECT_EQ(Ready(), std::vector<bool>({true, true, false, false, true, true}));
}

TEST_F(ReelReadiness, TextTracksAreNeverTouched) {
  for (const auto type : {Strata::TRKT_ON_SCREEN_TEXT, Strata::TRKT_OFF_SCREEN_TEXT}) {
    Reel.MakeReady(type);
    EXPECT_FALSE(Reel.MakeDormant(type));
  }
  for (const FakeTrack* track : {&Text, &Closed}) {
    EXPECT_EQ(track->Calls.MakeReady, 0u);
    EXPECT_EQ(track->Calls.MakeDormant, 0u);
  }
}

TEST_F(ReelReadiness, PictureAndSoundSayWhetherTheyWerePutToRest) {
  for (const auto type : {Strata::TRKT_IMAGE, Strata::TRKT_SOUND}) {
    EXPECT_FALSE(Reel.MakeDormant(type));
    Reel.MakeReady(type);
    EXPECT_TRUE(Reel.MakeDormant(type));
    EXPECT_FALSE(Reel.MakeDormant(type));
  }
}

TEST_F(ReelReadiness, AuxDataIsPutToRestWholeButEndsTheWalk) {
  Reel.MakeReady(Strata::TRKT_AUX_DATA);
  EXPECT_FALSE(Reel.MakeDormant(Strata::TRKT_AUX_DATA));
  EXPECT_FALSE(Aux0.Ready);
  EXPECT_FALSE(Aux1.Ready);
  EXPECT_EQ(Aux0.Calls.MakeDormant, 1u);
  EXPECT_EQ(Aux1.Calls.MakeDormant, 1u);
}

TEST(TimelineReel, MissingTracksNeedNoReadiness) {
  TimelineReel reel;
  for (ui32_t type = 0; type < Strata::TRKT_MAX; ++type) reel.MakeReady(static_cast<TrackType_t>(type));
  EXPECT_FALSE(reel.MakeDormant(Strata::TRKT_SOUND));
  EXPECT_FALSE(reel.MakeDormant(Strata::TRKT_AUX_DATA));
  EXPECT_TRUE(HasNoTrack(reel));
}

TEST(TimelineReelDeathTest, PuttingAReelWithoutPictureToRestAsserts) {
  TimelineReel reel;
  EXPECT_DEATH(reel.MakeDormant(Strata::TRKT_IMAGE), Asserts("!MainPicture.empty()"));
}

TEST(TimelineReelDeathTest, ReadinessOfAnUnknownTypeAsserts) {
  TimelineReel reel;
  EXPECT_DEATH(reel.MakeReady(NoSuchType), Asserts("type!=type"));
  EXPECT_DEATH(reel.MakeDormant(NoSuchType), Asserts("type!=type"));
}

}  // namespace
