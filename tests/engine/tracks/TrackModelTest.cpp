// SPDX-License-Identifier: BSD-3-Clause
// Random transports on two tracks of one file, side by side, against a plain model of what a bracket may show.
#include "../../support/TestSeed.h"
#include "TimelineElements/TrackFileElements.h"
#include "TrackFixtures.h"

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>

namespace {

using Ferro::ui32_t;
using Strata::NoFrame;
using testsupport::Bytes;
using testsupport::TrackFileSpec;
using testsupport::TrackKind;

constexpr ui32_t Duration = 40;
constexpr ui32_t OperationsPerTrack = testsupport::Sanitized ? 200000 : 500000;

/// What is known of a ready track: which position the front holds when request n is finished, and how many brackets
/// ended.
class Model {
 public:
  void Reset() { *this = Model(); }

  void Request(ui32_t position) {
    const bool exchanged = position < Duration && position != m_Front.back();
    m_Front.push_back(exchanged ? position : m_Front.back());
    if (AllBracketed()) m_Surprises = false;
    if (!exchanged) m_Surprises = true;
    ++m_Requests;
  }
  [[nodiscard]] bool AllBracketed() const { return m_Brackets == m_Requests; }
  [[nodiscard]] size_t Waiting() const { return m_Requests - m_Brackets; }

  /// Whether the next bracket may show `shown`. Request n is finished before bracket n begins, and so may those after
  /// be; where each request since the last rest brought a new frame, bracket and exchange take turns.
  [[nodiscard]] bool Allows(ui32_t shown) const {
    const auto next = m_Front.begin() + static_cast<std::ptrdiff_t>(m_Brackets) + 1;
    return m_Surprises ? std::find(next, m_Front.end(), shown) != m_Front.end() : *next == shown;
  }
  void EndBracket() { ++m_Brackets; }

 private:
  std::vector<ui32_t> m_Front{NoFrame};
  size_t m_Requests = 0;
  size_t m_Brackets = 0;
  bool m_Surprises = false;  // a request since the last rest failed or repeated the front's position
};

/// Counts failed reads, and whatever else is logged.
class CountingSink : public Ferro::ILogSink {
 public:
  void WriteEntry(const Ferro::LogEntry& entry) override {
    ++(entry.Message.starts_with("IMG (frame ") ? FailedReads : Others);
  }
  std::atomic<ui32_t> FailedReads = 0;
  std::atomic<ui32_t> Others = 0;
};

/// One track and its transport's thread.
class RandomTransport {
 public:
  RandomTransport(const std::string& filename, const std::vector<Bytes>& frames, ui32_t seed)
      : m_Frames(frames), m_Random(seed) {
    EXPECT_EQ(m_Track.InitWithFilename(filename, 0, Duration), Ferro::RESULT_OK);
  }

  void Run() {
    for (ui32_t i = 0; i < OperationsPerTrack && !testing::Test::HasFailure(); ++i) Step();
    m_Track.MakeDormant();
  }

  ui32_t Brackets = 0;
  ui32_t Failures = 0;  // failing requests made

 private:
  ui32_t Random(ui32_t below) { return std::uniform_int_distribution<ui32_t>(0, below - 1)(m_Random); }

  void Step() {
    const ui32_t dice = Random(1000);
    if (!m_Ready || dice == 0) {
      m_Track.MakeReady();  // of a ready track: nothing
      m_Ready = true;
    } else if (dice == 1) {
      EXPECT_TRUE(m_Track.MakeDormant());
      m_Ready = false;
      m_Model.Reset();
    } else if (dice < 500 && m_Model.Waiting() < m_Ahead) {
      Request();
    } else if (m_Model.Waiting() > 0) {
      Bracket();
    } else {
      m_Ahead = 1 + (Random(2) == 0 ? 0 : Random(100));  // how far requests run ahead until the next rest
      Request();
    }
  }

  void Request() {
    const ui32_t dice = Random(100);
    ui32_t position = m_Last;
    if (dice < 70) {
      position = (m_Last + 1) % Duration;
    } else if (dice < 90) {
      position = Random(Duration);
    } else if (dice < 95) {
      position = Duration + Random(5);
    } else if (dice < 96) {
      position = NoFrame;
    }
    if (position >= Duration) ++Failures;
    if (position < Duration) m_Last = position;
    m_Model.Request(position);
    m_Track.ReadyFrameAtLocation(position);
  }

  void Bracket() {
    m_Track.BufferLock();
    const ui32_t shown = m_Track.FrameBuffer().FrameNumber();
    EXPECT_TRUE(m_Model.Allows(shown)) << "shown: " << shown;
    CheckContents(shown);
    if (Random(4) == 0 && m_Model.Waiting() < m_Ahead) {
      Request();
      CheckContents(shown);
    }
    m_Track.BufferUnlock();
    m_Model.EndBracket();
    ++Brackets;
  }

  void CheckContents(ui32_t shown) const {
    const QUIRE::FrameBuffer& frame = m_Track.FrameBuffer();
    ASSERT_EQ(frame.FrameNumber(), shown);
    if (shown == NoFrame) {
      EXPECT_EQ(m_Track.FrameBufferSize(), 0u);
      return;
    }
    ASSERT_LT(shown, Duration);
    EXPECT_TRUE(
        std::equal(m_Frames[shown].begin(), m_Frames[shown].end(), frame.RoData(), frame.RoData() + frame.Size()))
        << "frame " << shown;
  }

  const std::vector<Bytes>& m_Frames;
  std::mt19937 m_Random;
  Strata::PCMTimelineElement m_Track;
  Model m_Model;
  bool m_Ready = false;
  ui32_t m_Ahead = 1;
  ui32_t m_Last = 0;
};

TEST(TrackModel, RandomTransportsOnOneFileSeeWhatTheRulesAllow) {
  testsupport::TemporaryFolder folder;
  const std::string filename = folder.Path("sound.mxf");
  TrackFileSpec spec;
  spec.Duration = Duration;
  spec.ChannelCount = 1;
  spec.QuantizationBits = 16;
  spec.EditRate = QUIRE::Rational(48, 1);
  spec.ChannelFormat = QUIRE::PCM::CF_NONE;
  ASSERT_EQ(MakeTrackFile(TrackKind::Sound, filename, spec), Ferro::RESULT_OK);
  std::vector<Bytes> frames;
  for (ui32_t position = 0; position < Duration; ++position)
    frames.push_back(MakeFrame(TrackKind::Sound, spec, position));

  const ui32_t seed = testsupport::TestSeed(std::random_device()());
  std::cout << 2 * OperationsPerTrack << " operations\n";
  CountingSink sink;
  Ferro::ILogSink* const previous = Ferro::SetDefaultLogSink(&sink);
  {
    RandomTransport one(filename, frames, seed);
    RandomTransport two(filename, frames, seed + 1);
    std::thread other([&two] { two.Run(); });
    one.Run();
    other.join();
    EXPECT_GT(one.Brackets, OperationsPerTrack / 4);
    EXPECT_GT(two.Brackets, OperationsPerTrack / 4);
    EXPECT_LE(sink.FailedReads, one.Failures + two.Failures);
    EXPECT_GT(sink.FailedReads, (one.Failures + two.Failures) / 2);  // the rest was dropped by MakeDormant
    EXPECT_EQ(sink.Others, 0u);
  }
  Ferro::SetDefaultLogSink(previous);
}

}  // namespace
