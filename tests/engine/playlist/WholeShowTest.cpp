// SPDX-License-Identifier: BSD-3-Clause
#include "FakeTimeline.h"
#include "RecordingNotifier.h"
#include "TestSeed.h"
#include "WholeShow.h"
#include "tracks/TrackFixtures.h"

#include <QUIRE/FrameBuffer.h>

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <random>
#include <thread>

namespace {

using namespace testsupport;
using Strata::ITimelineTrack;
using Strata::TrackType_t;

/// The tracks that the rules of the ready span keep ready, counted in track files.
class ReadyModel {
 public:
  explicit ReadyModel(const WholeShow& show) : m_Show(show) {}

  void Request(TrackType_t type, size_t reel) {
    const size_t first = reel < 2 ? 0 : reel - 2;
    const size_t end = std::min(reel + 3, m_Show.Reels.size());
    for (size_t i = first; i > 0 && PutToRest(type, i - 1); --i) continue;
    for (size_t i = first; i < end; ++i) m_Ready[type].insert(i);
    for (size_t i = end; i < m_Show.Reels.size() && PutToRest(type, i); ++i) continue;
  }

  [[nodiscard]] int Files() const {
    size_t files = 0;
    for (const auto& [type, reels] : m_Ready)
      for (const size_t reel : reels) files += FilesOf(type, m_Show.Reels[reel]);
    return static_cast<int>(files);
  }

 private:
  static size_t FilesOf(TrackType_t type, const ShowReel& reel) {
    if (type == Strata::TRKT_IMAGE) return 1;
    return type == Strata::TRKT_SOUND ? (reel.Sound ? 1 : 0) : reel.Data.size();
  }

  /// True when the walk over the reels to put to rest goes on.
  bool PutToRest(TrackType_t type, size_t reel) {
    const bool was_ready = m_Ready[type].erase(reel) > 0;
    if (type == Strata::TRKT_AUX_DATA) return false;
    return was_ready || (type == Strata::TRKT_SOUND && !m_Show.Reels[reel].Sound);
  }

  const WholeShow& m_Show;
  std::map<TrackType_t, std::set<size_t>> m_Ready;
};

/// Looks at every channel of a playlist that was loaded from the show.
class ShowWatcher {
 public:
  ShowWatcher(const WholeShow& show, Strata::IPlaylist& playlist)
      : m_Show(show),
        m_Playlist(playlist),
        m_Model(show),
        m_OpenFilesBefore(CountOpenFiles()),
        m_ThreadsBefore(CountReaderThreads()) {}

  /// Compares all that plays at the current position with what was written.
  void Check() {
    const ui32_t position = m_Playlist.GetPosition();
    SCOPED_TRACE("edit unit " + std::to_string(position));
    const size_t number = m_Show.ReelAt(position);
    const ShowReel& reel = m_Show.Reels[number];
    m_FileNumber = position - reel.Offset + WholeShow::EntryPoint;

    CheckTrack(Request(Strata::TRKT_IMAGE, 0, number), *reel.Picture);
    ITimelineTrack* sound = Request(Strata::TRKT_SOUND, 0, number);
    reel.Sound ? CheckTrack(sound, *reel.Sound) : CheckSilence(sound);
    ASSERT_EQ(m_Playlist.GetChannelCountForType(Strata::TRKT_AUX_DATA, position), reel.Data.size());
    for (ui32_t i = 0; i < reel.Data.size(); ++i) CheckTrack(Request(Strata::TRKT_AUX_DATA, i, number), reel.Data[i]);
    if (reel.Data.empty()) {
      EXPECT_EQ(Request(Strata::TRKT_AUX_DATA, 0, number), nullptr);
    }

    CheckText(m_Playlist.GetReaderForChannel(Strata::TRKT_ON_SCREEN_TEXT, 0, position), reel.Subtitle);
    ASSERT_EQ(m_Playlist.GetChannelCountForType(Strata::TRKT_OFF_SCREEN_TEXT, position), reel.Captions.size());
    for (ui32_t i = 0; i < reel.Captions.size(); ++i)
      CheckText(m_Playlist.GetReaderForChannel(Strata::TRKT_OFF_SCREEN_TEXT, i, position), reel.Captions[i]);
    CheckResources();
  }

 private:
  ITimelineTrack* Request(TrackType_t type, ui32_t channel, size_t reel) {
    m_Model.Request(type, reel);
    return m_Playlist.GetReaderForChannel(type, channel, m_Playlist.GetPosition());
  }

  void CheckTrack(ITimelineTrack* track, const ShowTrack& written) {
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->AssetID(), written.Spec.AssetID);
    track->ReadyFrameAtLocation(track->EntryPoint() + m_Playlist.TranslateReelPosition(m_Playlist.GetPosition()));
    track->BufferLock();
    EXPECT_EQ(track->FrameBuffer().FrameNumber(), m_FileNumber);
    EXPECT_TRUE(BytesOf(track->FrameBuffer()) == Written(written, false)) << track->AssetID().EncodeString();
    if (track->HasStereoImage()) {
      EXPECT_TRUE(BytesOf(track->REyeFrameBuffer()) == Written(written, true)) << track->AssetID().EncodeString();
    }
    track->BufferUnlock();
    EXPECT_EQ(track->HasStereoImage(), written.Kind == TrackKind::StereoscopicPicture);
  }

  /// Made once for each frame.
  const Bytes& Written(const ShowTrack& written, bool right_eye) {
    Bytes& bytes = m_Written[{written.Spec.AssetID, m_FileNumber, right_eye}];
    if (bytes.empty()) bytes = MakeFrame(written.Kind, written.Spec, m_FileNumber, right_eye);
    return bytes;
  }

  static void CheckSilence(ITimelineTrack* track) {
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->ChannelCount(), 2U);
    track->BufferLock();
    EXPECT_TRUE(BytesOf(track->FrameBuffer()) == Bytes(3 * 2 * 2000)) << "24 bits, 2 channels, 48000 / 24 samples";
    track->BufferUnlock();
  }

  static void CheckText(const ITimelineTrack* track, const std::optional<ShowTrack>& written) {
    ASSERT_EQ(track != nullptr, written.has_value());
    if (track == nullptr) return;
    QUIRE::TimedText::FrameBuffer text;
    ASSERT_TRUE(track->GetTimedTextData(text));
    EXPECT_EQ(std::string(text.RoData(), text.RoData() + text.Size()), MakeText(written->Spec));
  }

  /// One file and one thread for each track that is ready. A thread that was joined may still be listed for a moment.
  void CheckResources() {
    EXPECT_EQ(CountOpenFiles() - m_OpenFilesBefore, m_Model.Files());
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (CountReaderThreads() - m_ThreadsBefore != m_Model.Files() && std::chrono::steady_clock::now() < until)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(CountReaderThreads() - m_ThreadsBefore, m_Model.Files());
  }

  const WholeShow& m_Show;
  Strata::IPlaylist& m_Playlist;
  ReadyModel m_Model;
  int m_OpenFilesBefore;
  int m_ThreadsBefore;
  ui32_t m_FileNumber = 0;
  std::map<std::tuple<Ferro::UUID, ui32_t, bool>, Bytes> m_Written;
};

class WholeShowPlays : public testing::Test {
 protected:
  static void SetUpTestSuite() { s_Show = std::make_unique<WholeShow>(); }
  static void TearDownTestSuite() { s_Show.reset(); }
  static const WholeShow& Show() { return *s_Show; }

  static void Load(Strata::IPlaylist& playlist, const std::string& document) {
    const LogCapture log;
    ASSERT_EQ(playlist.InitWithPlaylist(document, Show().Store, {}), Ferro::RESULT_OK) << log.Text();
    EXPECT_EQ(log.Count(Ferro::LogLevel::Error), 0U) << log.Text();
    EXPECT_EQ(log.Count(Ferro::LogLevel::Warning), 0U) << log.Text();
    ASSERT_EQ(playlist.GetDuration(), Show().Duration());
  }

  void SetUp() override { ASSERT_NO_FATAL_FAILURE(Load(Playlist, Show().Document)); }
  void TearDown() override { EXPECT_EQ(Log.Count(Ferro::LogLevel::Error), 0U) << Log.Text(); }

  const LogCapture Log;
  Strata::h__Playlist Playlist;

 private:
  static std::unique_ptr<WholeShow> s_Show;
};

std::unique_ptr<WholeShow> WholeShowPlays::s_Show;

void ExpectEvents(const std::vector<Strata::PlaylistEvent>& wanted, const std::vector<Strata::PlaylistEvent>& found) {
  ASSERT_EQ(found.size(), wanted.size());
  for (size_t i = 0; i < found.size(); ++i) {
    EXPECT_EQ(found[i].Label, wanted[i].Label);
    EXPECT_EQ(found[i].LabelScope, wanted[i].LabelScope) << wanted[i].Label;
    EXPECT_EQ(found[i].ShowPosition, wanted[i].ShowPosition) << wanted[i].Label;
  }
}

TEST_F(WholeShowPlays, EachFrameForwardWithItsEventsAndChanges) {
  ASSERT_EQ(Show().Reels.size(), 40U);
  ShowWatcher watcher(Show(), Playlist);
  RecordingNotifier notifier;
  std::vector<std::string> coding_changes;
  bool at_end = false;
  for (ui32_t position = 0; !at_end; ++position) {
    ASSERT_EQ(Playlist.GetPosition(), position);
    ASSERT_NO_FATAL_FAILURE(watcher.Check());
    Playlist.TransportStatusNotify(&notifier, Strata::CMD_PLAY, {}, false);
    Playlist.PlaylistStatusNotify(&notifier, false);
    Playlist.PlaylistEventNotify(&notifier);
    if (Playlist.EssenceCodingChanged())
      coding_changes.push_back(Playlist.GetCompositionInfoForCurrentPosition().Title);
    at_end = Playlist.MoveForward(1);
  }
  EXPECT_EQ(notifier.Transport.size(), Show().Duration());
  EXPECT_EQ(notifier.Compositions.size(), 40U);
  EXPECT_EQ(coding_changes, (std::vector<std::string>{"Flat4K", "Stereoscopic", "MPEG2", "Text"}));
  std::vector<Strata::PlaylistEvent> events;
  for (const Strata::PlaylistEventList& list : notifier.Events) events.insert(events.end(), list.begin(), list.end());
  ExpectEvents(Show().Events, events);
}

TEST_F(WholeShowPlays, EachFrameBackward) {
  EXPECT_TRUE(Playlist.MoveToEditUnit(Show().Duration()));
  ShowWatcher watcher(Show(), Playlist);
  for (ui32_t position = Show().Duration(); position-- > 0; Playlist.MoveBackward(1)) {
    ASSERT_EQ(Playlist.GetPosition(), position);
    ASSERT_NO_FATAL_FAILURE(watcher.Check());
  }
}

TEST_F(WholeShowPlays, EachFrameJumpedTo) {
  const ui32_t seed = testsupport::TestSeed(20260102);
  std::mt19937 random(seed);
  ShowWatcher watcher(Show(), Playlist);
  for (int jump = 0; jump < (Sanitized ? 60 : 200); ++jump) {
    Playlist.MoveToEditUnit(static_cast<ui32_t>(random() % Show().Duration()));
    ASSERT_NO_FATAL_FAILURE(watcher.Check()) << "seed " << seed << ", jump " << jump;
  }
}

Ferro::UUID AssetOf(const Strata::TrackPtr& track) {
  return track.empty() ? Ferro::UUID() : track->AssetID();
}

void ExpectSameReel(const Strata::TimelineReel& a, const Strata::TimelineReel& b) {
  EXPECT_EQ(a.m_CPL, b.m_CPL);
  EXPECT_EQ(a.m_CPLReelID, b.m_CPLReelID);
  EXPECT_EQ(a.m_CPLReelNumber, b.m_CPLReelNumber);
  EXPECT_EQ(a.m_PlaylistReelNumber, b.m_PlaylistReelNumber);
  EXPECT_EQ(a.m_Duration, b.m_Duration);
  EXPECT_EQ(a.m_Offset, b.m_Offset);
  EXPECT_EQ(a.m_EditRate, b.m_EditRate);
  EXPECT_EQ(a.m_StartDistinctCoding, b.m_StartDistinctCoding);
  EXPECT_EQ(AssetOf(a.MainPicture), AssetOf(b.MainPicture));
  EXPECT_EQ(AssetOf(a.MainSound), AssetOf(b.MainSound));
  EXPECT_EQ(AssetOf(a.OnScreenText), AssetOf(b.OnScreenText));
  ASSERT_EQ(a.OffScreenText.size(), b.OffScreenText.size());
  for (size_t i = 0; i < a.OffScreenText.size(); ++i)
    EXPECT_EQ(AssetOf(a.OffScreenText[i]), AssetOf(b.OffScreenText[i]));
  ASSERT_EQ(a.AuxData.size(), b.AuxData.size());
  for (size_t i = 0; i < a.AuxData.size(); ++i) EXPECT_EQ(AssetOf(a.AuxData[i]), AssetOf(b.AuxData[i]));
}

TEST_F(WholeShowPlays, TheSameWhenReloadedFromItsExport) {
  std::string document;
  ASSERT_EQ(Playlist.GetShowPlaylistForTimeline(document), Ferro::RESULT_OK);
  Strata::h__Playlist second;
  ASSERT_NO_FATAL_FAILURE(Load(second, document));

  const Strata::PlaylistInspector a(Playlist);
  const Strata::PlaylistInspector b(second);
  ASSERT_EQ(a.Timeline.size(), b.Timeline.size());
  for (size_t i = 0; i < a.Timeline.size(); ++i) {
    SCOPED_TRACE("reel " + std::to_string(i));
    ExpectSameReel(a.Timeline[i], b.Timeline[i]);
    EXPECT_EQ(b.Timeline[i].m_Offset, Show().Reels[i].Offset);
  }
  EXPECT_EQ(Playlist.GetDurationSeconds(), second.GetDurationSeconds());
  ExpectEvents(Show().Events, {a.Events.begin(), a.Events.end()});
  ExpectEvents(Show().Events, {b.Events.begin(), b.Events.end()});

  ShowWatcher watcher(Show(), second);
  do {
    ASSERT_NO_FATAL_FAILURE(watcher.Check());
  } while (!second.MoveForward(1));
}

}  // namespace
