// SPDX-License-Identifier: BSD-3-Clause
// The reader thread and a host that asks ahead, through every interleaving of their steps.
#include "../../support/FakeTrack.h"
#include "Interleaver.h"
#include "TimelineElements/EssenceReaderThread.h"

#include <Strata/FrameRequester.h>

#include <Ferro/LogSink.h>
#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/Result.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using Ferro::ui32_t;
using Ferro::ui64_t;
using testsupport::InterleavedHandOver;
using testsupport::Interleaver;

constexpr ui32_t FrameBytes = 4;

/// The positions that a host wants one after the other, and those that cannot be read.
struct Wanted {
  std::vector<ui32_t> Positions;
  std::vector<bool> Readable;  ///< by position
};

/// A file whose frame p is full of p. While one is read the buffer holds neither the old frame nor the new one.
class ModelFile {
 public:
  explicit ModelFile(const Wanted& wanted) : m_Wanted(wanted) {}

  Ferro::Result_t ReadFrame(ui32_t position, QUIRE::FrameBuffer& frame, std::nullptr_t, std::nullptr_t) {
    Fill(frame, Strata::NoFrame);
    Interleaver::Current().Point(100 + ui64_t{position});
    if (!m_Wanted.Readable[position]) return QUIRE::RESULT_RANGE;
    Fill(frame, position);
    return Ferro::RESULT_OK;
  }

 private:
  static void Fill(QUIRE::FrameBuffer& frame, ui32_t position) {
    for (ui32_t i = 0; i < FrameBytes; ++i) frame.Data()[i] = static_cast<Ferro::ui8_t>(position);
    frame.Size(FrameBytes);
    frame.FrameNumber(position);
  }

  const Wanted& m_Wanted;
};

using ModelThread = Strata::EssenceReaderThread<ModelFile, QUIRE::PCM::FrameBuffer, InterleavedHandOver>;

/// A track over the thread, as a track-file track passes its frame operations on.
class ModelTrack final : public testsupport::FakeTrack {
 public:
  explicit ModelTrack(ModelThread& thread) : m_Thread(thread) {}

  void ReadyFrameAtLocation(ui32_t position) override {
    m_Thread.RequestFrame(position);
    Interleaver::Current().Saw(position);
  }
  void BufferLock() override { m_Thread.BufferLock(); }
  void BufferUnlock() override { m_Thread.BufferUnlock(); }
  [[nodiscard]] const QUIRE::FrameBuffer& FrameBuffer() const override {
    Interleaver::Current().Saw(m_Thread.GetCurrentFrameBuffer().FrameNumber());
    return m_Thread.GetCurrentFrameBuffer();
  }

 private:
  ModelThread& m_Thread;
};

/// What went wrong in one run, in the order it happened.
using Faults = std::vector<std::string>;

/// Looks at the frame twice, with the thread's chance between.
void CheckFrame(const ModelTrack& track, ui32_t position, bool readable, bool is_there, Faults& faults) {
  const std::string which = "frame " + std::to_string(position);
  if (is_there != readable) faults.push_back(which + (is_there ? " shown though unreadable" : " not shown"));
  for (int look = 0; is_there && look < 2; ++look) {
    const QUIRE::FrameBuffer& frame = track.FrameBuffer();
    bool whole = frame.FrameNumber() == position && frame.Size() == FrameBytes;
    for (ui32_t i = 0; whole && i < FrameBytes; ++i) whole = frame.RoData()[i] == position;
    if (!whole) faults.push_back(which + " is not whole");
    Interleaver::Current().Point(99);
  }
}

void TakeAll(ModelTrack& track, const Wanted& wanted, Faults& faults) {
  Strata::FrameRequester requester(track);
  for (size_t i = 0; i < wanted.Positions.size(); ++i) {
    std::optional<ui32_t> next;
    if (i + 1 < wanted.Positions.size()) next = wanted.Positions[i + 1];
    const ui32_t position = wanted.Positions[i];
    const auto frame = requester.Take(position, next);
    CheckFrame(track, position, wanted.Readable[position], frame.IsThere(), faults);
  }
}

/// A host that always asks ahead.
void TakeAllWithoutResynchronising(ModelTrack& track, const Wanted& wanted, Faults& faults) {
  track.ReadyFrameAtLocation(wanted.Positions.front());
  for (size_t i = 0; i < wanted.Positions.size(); ++i) {
    if (i + 1 < wanted.Positions.size()) track.ReadyFrameAtLocation(wanted.Positions[i + 1]);
    const Strata::FrameLock lock(track);
    const ui32_t position = wanted.Positions[i];
    CheckFrame(track, position, wanted.Readable[position], track.FrameBuffer().FrameNumber() == position, faults);
  }
}

/// Each line of the log is expected: a frame that cannot be read.
class SilentSink final : public Ferro::ILogSink {
 public:
  SilentSink() : m_Before(Ferro::SetDefaultLogSink(this)) {}
  ~SilentSink() override { Ferro::SetDefaultLogSink(m_Before); }
  void WriteEntry(const Ferro::LogEntry&) override {}

 private:
  Ferro::ILogSink* m_Before;
};

class FrameRequesterModel : public testing::Test {
 protected:
  using Host = void (*)(ModelTrack&, const Wanted&, Faults&);

  /// Answers the faults of the first run that has any.
  Faults Run(const Wanted& wanted, Host host) {
    Faults first;
    const bool lives = Scheduler.ForEachInterleaving([&] {
      Faults faults;
      ModelFile file(wanted);
      ModelThread thread(&file);
      if (!thread.SetupFrameBuffers(FrameBytes)) faults.emplace_back("no buffers");
      ModelTrack track(thread);
      Scheduler.Both([&] { static_cast<void>(thread.ThreadBody()); },
                     [&] {
                       host(track, wanted, faults);
                       static_cast<void>(thread.ThreadStop());
                     });
      if (first.empty()) first = faults;
    });
    if (!lives) first.emplace_back("locked up");
    return first;
  }

  /// What the host may do next: a new frame, a new one that cannot be read, or the one before once more.
  enum Kind { New, Unreadable, Repeated, KindCount };

  static Wanted WantedOf(unsigned pattern, unsigned length) {
    Wanted wanted;
    for (unsigned i = 0; i < length; ++i, pattern /= KindCount) {
      const auto kind = static_cast<Kind>(pattern % KindCount);
      if (kind != Repeated || i == 0) wanted.Readable.push_back(kind == New);
      wanted.Positions.push_back(static_cast<ui32_t>(wanted.Readable.size() - 1));
    }
    return wanted;
  }

  static std::string TextOf(const Wanted& wanted) {
    std::string text = "positions";
    for (const ui32_t position : wanted.Positions)
      text += ' ' + std::to_string(position) + (wanted.Readable[position] ? "" : " (unreadable)");
    return text;
  }

  SilentSink Sink;
  Interleaver Scheduler;
};

constexpr unsigned LongestPattern = 6;

TEST_F(FrameRequesterModel, EachReadableFrameIsShownAndEachOtherIsReportedOnce) {
  ui64_t patterns = 0;
  unsigned pattern_count = 1;
  for (unsigned length = 1; length <= LongestPattern; ++length) {
    pattern_count *= KindCount;
    for (unsigned pattern = 0; pattern < pattern_count; ++pattern) {
      if (pattern % KindCount == Repeated) continue;  // there is nothing to repeat yet
      const Wanted wanted = WantedOf(pattern, length);
      ASSERT_EQ(Run(wanted, TakeAll), Faults()) << TextOf(wanted);
      ++patterns;
    }
  }
  std::cout << patterns << " patterns, " << Scheduler.Runs() << " runs\n";
}

TEST_F(FrameRequesterModel, FrameAskedForAheadAndNotTakenIsDropped) {
  const auto take_elsewhere = [](ModelTrack& track, const Wanted& wanted, Faults& faults) {
    Strata::FrameRequester requester(track);
    for (const ui32_t position : wanted.Positions) {
      const auto frame = requester.Take(position, position + 1);
      CheckFrame(track, position, wanted.Readable[position], frame.IsThere(), faults);
    }
  };
  for (const std::vector<ui32_t>& positions : {std::vector<ui32_t>{0, 3, 1, 2}, {4, 2, 3, 3, 0}, {1, 1, 0, 2}})
    for (ui32_t unreadable = 0; unreadable < 5; ++unreadable) {
      Wanted wanted{positions, std::vector<bool>(6, true)};
      wanted.Readable[unreadable] = false;
      ASSERT_EQ(Run(wanted, take_elsewhere), Faults()) << TextOf(wanted);
    }
}

TEST_F(FrameRequesterModel, NewRequesterOnATrackThatWasUsedKeepsInStepToo) {
  const auto change_over = [](ModelTrack& track, const Wanted& wanted, Faults& faults) {
    const auto middle = wanted.Positions.begin() + static_cast<std::ptrdiff_t>(wanted.Positions.size() / 2);
    // The first asks ahead for a frame that only the second takes.
    TakeAll(track, {{wanted.Positions.begin(), middle + 1}, wanted.Readable}, faults);
    TakeAll(track, {{middle, wanted.Positions.end()}, wanted.Readable}, faults);
  };
  for (unsigned pattern = 0; pattern < 81; ++pattern) {
    if (pattern % KindCount == Repeated) continue;
    const Wanted wanted = WantedOf(pattern, 4);
    ASSERT_EQ(Run(wanted, change_over), Faults()) << TextOf(wanted);
  }
}

TEST_F(FrameRequesterModel, HostThatAlwaysAsksAheadIsShownFramesOfOthers) {
  const Wanted sound{{0, 1, 2, 3}, {true, true, true, true}};
  EXPECT_EQ(Run(sound, TakeAllWithoutResynchronising), Faults());
  const Wanted damaged{{0, 1, 2, 3}, {true, false, true, true}};
  EXPECT_NE(Run(damaged, TakeAllWithoutResynchronising), Faults()) << "the scheduler has found no shift";
  const Wanted repeated{{0, 0, 1, 2}, {true, true, true}};
  EXPECT_NE(Run(repeated, TakeAllWithoutResynchronising), Faults()) << "the scheduler has found no shift";
}

}  // namespace
