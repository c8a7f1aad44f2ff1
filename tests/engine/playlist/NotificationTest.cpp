// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ITransportNotify.h>

#include "../../support/AssertionText.h"
#include "../../support/FakeTimeline.h"
#include "../../support/RecordingNotifier.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using testsupport::Asserts;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::NumberedID;
using testsupport::RecordingNotifier;
using testsupport::ui32_t;
using Labels = std::vector<std::string>;

constexpr ui32_t ChangedAll = Strata::PlaylistInspector::ChangedAll;
constexpr ui32_t ChangedComposition = Strata::PlaylistInspector::ChangedComposition;
constexpr ui32_t ChangedEssenceCoding = Strata::PlaylistInspector::ChangedEssenceCoding;
constexpr ui32_t ChangedPosition = Strata::PlaylistInspector::ChangedPosition;

/// Composition 1 with reels of 1000 and 2000 edit units, then composition 2 with one of 3000: 6000 in all.
struct Notification : testing::Test {
  Notification() {
    Fake.Append(Composition(1), {1000, 2000});
    Fake.Append(Composition(2), {3000});
    Fake.Finish();
  }
  FakeTimeline Fake;
  Strata::IPlaylist& Playlist = Fake.Playlist;
  RecordingNotifier Notifier;
  Strata::DeviceStatus Status;

  void AddEvent(const std::string& label, ui32_t position) {
    EXPECT_EQ(Playlist.AddEventToTimeline(label, "urn:scope", position), Ferro::RESULT_OK);
  }
  /// The labels of each report made so far.
  [[nodiscard]] std::vector<Labels> Reported() const {
    std::vector<Labels> reports;
    for (const auto& report : Notifier.Events) {
      reports.emplace_back();
      for (const auto& event : report) reports.back().push_back(event.Label);
    }
    return reports;
  }
};

// Adding events.

TEST_F(Notification, AddedEventIsKeptAsGiven) {
  EXPECT_EQ(Playlist.AddEventToTimeline("FFOC", "http://scope.example/", 123), Ferro::RESULT_OK);
  ASSERT_EQ(Fake.State.Events.size(), 1u);
  EXPECT_EQ(Fake.State.Events.front().Label, "FFOC");
  EXPECT_EQ(Fake.State.Events.front().LabelScope, "http://scope.example/");
  EXPECT_EQ(Fake.State.Events.front().ShowPosition, 123u);
}

TEST_F(Notification, EventAddedBeyondTheEndStandsOnTheLastEditUnit) {
  for (const ui32_t position : {10000u, 6000u, 5999u, 0xffffffffu}) AddEvent("event", position);
  ASSERT_EQ(Fake.State.Events.size(), 4u);
  for (const auto& event : Fake.State.Events) EXPECT_EQ(event.ShowPosition, 5999u);
}

TEST_F(Notification, AddedEventsAreSortedAndThoseAtOnePositionStayInOrder) {
  AddEvent("b", 100);
  AddEvent("z", 5000);
  AddEvent("a", 100);
  AddEvent("first", 0);
  AddEvent("b", 100);
  Labels labels;
  for (const auto& event : Fake.State.Events) labels.push_back(event.Label);
  EXPECT_EQ(labels, Labels({"first", "b", "a", "b", "z"})) << "doubles are kept";
}

// Events.

TEST_F(Notification, EventsAtOnePositionAreReportedAtOnceInOrderOfAdding) {
  AddEvent("first", 100);
  AddEvent("second", 100);
  AddEvent("elsewhere", 200);
  AddEvent("third", 100);
  Playlist.MoveToEditUnit(100);
  Playlist.PlaylistEventNotify(&Notifier);
  ASSERT_EQ(Reported(), std::vector<Labels>({{"first", "second", "third"}}));
  EXPECT_EQ(Notifier.Events[0].front().LabelScope, "urn:scope");
  EXPECT_EQ(Notifier.Events[0].front().ShowPosition, 100u);
}

TEST_F(Notification, EventJumpedOverIsNotReported) {
  AddEvent("event", 100);
  Playlist.MoveToEditUnit(99);
  Playlist.PlaylistEventNotify(&Notifier);
  Playlist.MoveForward(2);
  Playlist.PlaylistEventNotify(&Notifier);
  EXPECT_EQ(Reported(), std::vector<Labels>());
}

TEST_F(Notification, EventIsReportedOnEachCallAtItsPosition) {
  AddEvent("event", 100);
  Playlist.MoveToEditUnit(100);
  Playlist.PlaylistEventNotify(&Notifier);
  Playlist.PlaylistEventNotify(&Notifier);
  EXPECT_EQ(Reported(), std::vector<Labels>({{"event"}, {"event"}}));
}

TEST_F(Notification, EventsOnTheFirstAndLastEditUnitsAreReported) {
  AddEvent("first", 0);
  AddEvent("last", 5999);
  Playlist.PlaylistEventNotify(&Notifier);
  Playlist.MoveToEditUnit(5999);
  Playlist.PlaylistEventNotify(&Notifier);
  EXPECT_EQ(Reported(), std::vector<Labels>({{"first"}, {"last"}}));
}

TEST_F(Notification, WithoutEventsNobodyIsCalled) {
  Playlist.PlaylistEventNotify(&Notifier);
  EXPECT_EQ(Reported(), std::vector<Labels>());
  Playlist.PlaylistEventNotify(nullptr);
  AddEvent("elsewhere", 100);
  Playlist.PlaylistEventNotify(nullptr);
}

TEST_F(Notification, EventsTouchNoChangeBit) {
  AddEvent("event", 0);
  Fake.State.HasChanges = ChangedAll;
  Playlist.PlaylistEventNotify(&Notifier);
  EXPECT_EQ(Fake.State.HasChanges, ChangedAll);
}

// Transport status.

TEST_F(Notification, TransportStatusCarriesTheThreePositionsAndWhatItWasGiven) {
  Playlist.MoveToEditUnit(1500);
  Status.m_AudioChannelStatus[3] = 5;
  Status.ImageBPS = 250'000'000;
  Status.FrameSkipCount = 2;
  Status.FrameUnderrunCount = 1;
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_SHUTTLE, Status, false);
  ASSERT_EQ(Notifier.Transport.size(), 1u);
  const auto& report = Notifier.Transport[0];
  EXPECT_EQ(report.Show.Duration, 6000u);
  EXPECT_EQ(report.Show.Position, 1500u);
  EXPECT_FALSE(report.Show.AssetID.HasValue());
  EXPECT_EQ(report.CPL.Duration, 3000u);
  EXPECT_EQ(report.CPL.Position, 1500u);
  EXPECT_EQ(report.CPL.AssetID, NumberedID(1));
  EXPECT_EQ(report.Reel.Duration, 2000u);
  EXPECT_EQ(report.Reel.Position, 500u);
  EXPECT_EQ(report.Reel.AssetID, NumberedID(1001));
  EXPECT_EQ(report.Status.m_AudioChannelStatus, Status.m_AudioChannelStatus);
  EXPECT_EQ(report.Status.ImageBPS, 250'000'000u);
  EXPECT_EQ(report.Status.FrameSkipCount, 2u);
  EXPECT_EQ(report.Status.FrameUnderrunCount, 1u);
  EXPECT_EQ(report.Command, Strata::CMD_SHUTTLE);
}

TEST_F(Notification, TransportStatusIsReportedOncePerChange) {
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PLAY, Status, false);
  EXPECT_EQ(Notifier.Transport.size(), 1u) << "the first computation";
  EXPECT_EQ(Fake.State.HasChanges, ChangedComposition) << "only its own bit is cleared";
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PLAY, Status, false);
  EXPECT_EQ(Notifier.Transport.size(), 1u);
  Playlist.MoveForward(1);
  Playlist.MoveForward(1);
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PLAY, Status, false);
  ASSERT_EQ(Notifier.Transport.size(), 2u) << "two moves, one report";
  EXPECT_EQ(Notifier.Transport[1].Show.Position, 2u);
}

TEST_F(Notification, ForcedTransportStatusReportsUnchangedPositions) {
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PLAY, Status, false);
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PAUSE, Status, true);
  ASSERT_EQ(Notifier.Transport.size(), 2u);
  EXPECT_EQ(Notifier.Transport[1].Show.Position, 0u);
  EXPECT_EQ(Notifier.Transport[1].Command, Strata::CMD_PAUSE);
  Playlist.MoveForward(1);
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PLAY, Status, true);
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PLAY, Status, false);
  EXPECT_EQ(Notifier.Transport.size(), 3u) << "a forced report clears the bit, too";
}

// Playlist status.

TEST_F(Notification, PlaylistStatusIsReportedOncePerReelOrComposition) {
  Playlist.PlaylistStatusNotify(&Notifier, false);
  Playlist.PlaylistStatusNotify(&Notifier, false);
  ASSERT_EQ(Notifier.Compositions.size(), 1u) << "the first computation";
  EXPECT_EQ(Notifier.Compositions[0].ID, NumberedID(1));
  EXPECT_EQ(Notifier.Compositions[0].CurrentReel, 1u);
  EXPECT_EQ(Fake.State.HasChanges, ChangedPosition) << "only its own bit is cleared";

  Playlist.MoveToEditUnit(999);
  Playlist.PlaylistStatusNotify(&Notifier, false);
  EXPECT_EQ(Notifier.Compositions.size(), 1u);
  Playlist.MoveForward(1);
  Playlist.PlaylistStatusNotify(&Notifier, false);
  ASSERT_EQ(Notifier.Compositions.size(), 2u);
  EXPECT_EQ(Notifier.Compositions[1].ID, NumberedID(1));
  EXPECT_EQ(Notifier.Compositions[1].CurrentReel, 2u);
  Playlist.MoveToEditUnit(3000);
  Playlist.PlaylistStatusNotify(&Notifier, false);
  ASSERT_EQ(Notifier.Compositions.size(), 3u);
  EXPECT_EQ(Notifier.Compositions[2].ID, NumberedID(2));
  EXPECT_EQ(Notifier.Compositions[2].CurrentReel, 1u);
}

TEST_F(Notification, ForcedPlaylistStatusReportsTheUnchangedComposition) {
  Playlist.PlaylistStatusNotify(&Notifier, false);
  Playlist.PlaylistStatusNotify(&Notifier, true);
  EXPECT_EQ(Notifier.Compositions.size(), 2u);
  Fake.State.HasChanges = ChangedAll;
  Playlist.PlaylistStatusNotify(&Notifier, true);
  EXPECT_EQ(Fake.State.HasChanges, ChangedPosition | ChangedEssenceCoding);
}

// When a change counts as reported.

/// Looks at the change bits while it is told something, then throws if it is to.
class WatchingNotifier final : public Strata::ITransportNotify {
 public:
  WatchingNotifier(const ui32_t& bits, bool throws) : m_Bits(bits), m_Throws(throws) {}
  std::vector<ui32_t> Seen;

  void TransportStatusNotify(const Strata::TimelinePosition& /*show*/, const Strata::TimelinePosition& /*cpl*/,
                             const Strata::TimelinePosition& /*reel*/, const Strata::DeviceStatus& /*status*/,
                             const Strata::CommandType_t& /*command*/) override {
    Watch();
  }
  void TransportExceptionNotify(const Strata::TransportException& /*exception*/) override { Watch(); }
  void PlaylistStatusNotify(const Strata::CompositionInfo& /*composition*/) override { Watch(); }
  void PlaylistEventNotify(const Strata::PlaylistEventList& /*events*/) override { Watch(); }

 private:
  void Watch() {
    Seen.push_back(m_Bits);
    if (m_Throws) throw std::runtime_error("no report");
  }
  const ui32_t& m_Bits;
  const bool m_Throws;
};

TEST_F(Notification, ChangeBitsAreClearedAfterTheReport) {
  WatchingNotifier watcher(Fake.State.HasChanges, false);
  Fake.State.HasChanges = ChangedAll;
  Playlist.TransportStatusNotify(&watcher, Strata::CMD_PLAY, Status, false);
  EXPECT_EQ(watcher.Seen, std::vector<ui32_t>({7}));
  EXPECT_EQ(Fake.State.HasChanges, ChangedComposition | ChangedEssenceCoding);
  Playlist.PlaylistStatusNotify(&watcher, false);
  EXPECT_EQ(watcher.Seen, std::vector<ui32_t>({7, 6}));
  EXPECT_EQ(Fake.State.HasChanges, ChangedEssenceCoding);
}

TEST_F(Notification, ReportThatThrowsIsStillDue) {
  WatchingNotifier watcher(Fake.State.HasChanges, true);
  Fake.State.HasChanges = ChangedAll;
  EXPECT_THROW(Playlist.TransportStatusNotify(&watcher, Strata::CMD_PLAY, Status, false), std::runtime_error);
  EXPECT_THROW(Playlist.PlaylistStatusNotify(&watcher, false), std::runtime_error);
  EXPECT_EQ(Fake.State.HasChanges, ChangedAll);
  Playlist.TransportStatusNotify(&Notifier, Strata::CMD_PLAY, Status, false);
  Playlist.PlaylistStatusNotify(&Notifier, false);
  EXPECT_EQ(Notifier.Transport.size(), 1u);
  EXPECT_EQ(Notifier.Compositions.size(), 1u);
}

// Exceptions.

TEST_F(Notification, TransportExceptionTellsWhereTheShowStood) {
  Playlist.MoveToEditUnit(3100);
  Strata::TransportException exception;
  exception.Message = "before";
  Strata::SetTransportExceptionWithPlaylist(exception, Playlist, "It broke.");
  EXPECT_EQ(exception.Duration, 6000u);
  EXPECT_EQ(exception.Position, 3100u);
  EXPECT_EQ(exception.CompositionID, NumberedID(2));
  EXPECT_EQ(exception.Message, "It broke.");
}

TEST(NotificationEmpty, TransportExceptionOfAnEmptyPlaylistHasNoComposition) {
  const FakeTimeline fake;
  Strata::TransportException exception;
  exception.Duration = exception.Position = 9;
  exception.CompositionID = NumberedID(9);
  Strata::SetTransportExceptionWithPlaylist(exception, fake.Playlist, "");
  EXPECT_EQ(exception.Duration, 0u);
  EXPECT_EQ(exception.Position, 0u);
  EXPECT_FALSE(exception.CompositionID.HasValue());
  EXPECT_EQ(exception.Message, "");
}

using NotificationDeathTest = Notification;

TEST_F(NotificationDeathTest, MissingHandlerAsserts) {
  EXPECT_DEATH(Playlist.TransportStatusNotify(nullptr, Strata::CMD_PLAY, Status, false), Asserts("NotifyHandler"));
  EXPECT_DEATH(Playlist.PlaylistStatusNotify(nullptr, false), Asserts("NotifyHandler"));
  Fake.State.HasChanges = 0;
  EXPECT_DEATH(Playlist.TransportStatusNotify(nullptr, Strata::CMD_PLAY, Status, false), Asserts("NotifyHandler"));
  EXPECT_DEATH(Playlist.PlaylistStatusNotify(nullptr, false), Asserts("NotifyHandler"));
}

TEST_F(NotificationDeathTest, PositionWithoutReelOrCompositionAsserts) {
  Fake.State.ShowPosition.Position = 6001;
  EXPECT_DEATH(Playlist.PlaylistStatusNotify(&Notifier, true), Asserts("Reel"));
  Fake.State.ShowPosition.Position = 0;
  Fake.State.Compositions.clear();
  EXPECT_DEATH(Playlist.PlaylistStatusNotify(&Notifier, true), Asserts("cmi != m_CompositionInfo.end()"));
}

}  // namespace
