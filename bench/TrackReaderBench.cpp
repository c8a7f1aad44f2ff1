// SPDX-License-Identifier: BSD-3-Clause
// Frames per second through a ready track, each beside its physical limit measured in the same run: bare positioned
// reads of the same bytes into one buffer, everything in page cache.
//
//   Ahead     the next frame is requested before the current one is released; the limit is the reads alone
//   LockStep  a frame is requested when the one before was released; the limit is a read and one round trip between two
//             threads over a mutex and a condition each way
//
// Track and limit take turns within every repetition; what is reported is the median over the repetitions. A track
// needs two buffers, which fit the processor's caches less well than one: pair_of_one is what that alone costs, the
// speed of bare reads into two buffers by turns relative to one.
#include "EssenceMaker.h"
#include "FrameReads.h"
#include "TemporaryFolder.h"
#include "TimelineElements/JP2KTimelineElement.h"
#include "TimelineElements/PCMTimelineElement.h"
#include "TrackFileMaker.h"

#include <QUIRE/JP2KWriter.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using namespace bench;

constexpr int Repetitions = 21;

/// A track file, and where the bytes of its frames lie.
struct Essence {
  std::string Filename;
  std::vector<Extent> Frames;
  std::unique_ptr<Strata::ITimelineTrack> Track;
};

void MakeReady(Essence& essence, ui64_t smallest) {
  Require(essence.Track->InitWithFilename(essence.Filename, 0, 1));
  essence.Frames = FindFrames(essence.Filename, smallest);
  essence.Track->MakeReady();
}

/// 48 pictures of 1.3 MB and a little more or less, as at 250 Mbit/s and 24 per second.
Essence& Pictures() {
  static testsupport::TemporaryFolder folder;
  static Essence essence = [] {
    Essence made{folder.Path("picture.mxf"), {}, std::make_unique<Strata::JP2KTimelineElement>()};
    const testsupport::TrackFileSpec spec;
    QUIRE::JP2K::MXFWriter writer;
    Require(writer.OpenWrite(made.Filename, MakeWriterInfo(spec), MakePictureDescriptor(spec)));
    for (ui32_t number = 0; number < 48; ++number) {
      QUIRE::JP2K::FrameBuffer frame;
      testsupport::FillBuffer(testsupport::MakeNoise(1290000 + 977 * (number % 21), number), frame);
      Require(writer.WriteFrame(frame));
    }
    Require(writer.Finalize());
    MakeReady(made, 1000000);
    return made;
  }();
  return essence;
}

/// 500 edit units of sound of 86,400 bytes: 15 channels of 24 bits at 48 kHz and 25 per second.
Essence& Sound() {
  static testsupport::TemporaryFolder folder;
  static Essence essence = [] {
    Essence made{folder.Path("sound.mxf"), {}, std::make_unique<Strata::PCMTimelineElement>()};
    testsupport::TrackFileSpec spec;
    spec.EditRate = {25, 1};
    spec.ChannelCount = 15;
    spec.Duration = 500;
    spec.ChannelFormat = QUIRE::PCM::CF_CFG_4;
    Require(MakeTrackFile(testsupport::TrackKind::Sound, made.Filename, spec));
    MakeReady(made, 86400);
    return made;
  }();
  return essence;
}

void Show(Strata::ITimelineTrack& track, ui32_t position) {
  track.BufferLock();
  if (track.FrameBuffer().FrameNumber() != position) Require(Ferro::RESULT_FAIL);
  benchmark::DoNotOptimize(track.FrameBuffer().RoData());
  track.BufferUnlock();
}

double TimeAhead(Essence& essence, const std::vector<ui32_t>& positions) {
  const auto start = std::chrono::steady_clock::now();
  essence.Track->ReadyFrameAtLocation(positions.front());
  for (size_t i = 0; i < positions.size(); ++i) {
    if (i + 1 < positions.size()) essence.Track->ReadyFrameAtLocation(positions[i + 1]);
    Show(*essence.Track, positions[i]);
  }
  return SecondsSince(start);
}

double TimeLockStep(Essence& essence, const std::vector<ui32_t>& positions) {
  const auto start = std::chrono::steady_clock::now();
  for (const ui32_t position : positions) {
    essence.Track->ReadyFrameAtLocation(position);
    Show(*essence.Track, position);
  }
  return SecondsSince(start);
}

/// Reads into one buffer, or into two by turns.
double TimeReads(const Essence& essence, const std::vector<ui32_t>& positions, size_t buffer_count) {
  static std::vector<std::vector<ui8_t>> one(1, std::vector<ui8_t>(4194304));
  static std::vector<std::vector<ui8_t>> two(2, std::vector<ui8_t>(4194304));
  return bench::TimeReads(essence.Filename, essence.Frames, positions, buffer_count == 1 ? one : two);
}

/// `count` times to another thread and back, each way by a mutex and a condition.
double TimeRoundTrips(size_t count) {
  std::mutex mutex;
  std::condition_variable changed;
  bool there = false;
  const auto travel = [&](bool to) {
    for (size_t i = 0; i < count; ++i) {
      std::unique_lock lock(mutex);
      changed.wait(lock, [&] { return there != to; });
      there = to;
      lock.unlock();
      changed.notify_one();
    }
  };
  std::thread other([&] { travel(false); });
  const auto start = std::chrono::steady_clock::now();
  travel(true);
  {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return !there; });
  }
  const double seconds = SecondsSince(start);
  other.join();
  return seconds;
}

enum class Request { Ahead, LockStep };

void Frames(benchmark::State& state, Essence& essence, size_t count, bool random, Request request) {
  const std::vector<ui32_t> positions = Positions(essence.Frames.size(), count, random);
  const auto time_track = [&] {
    return request == Request::Ahead ? TimeAhead(essence, positions) : TimeLockStep(essence, positions);
  };
  const auto time_limit = [&] {
    return TimeReads(essence, positions, 1) + (request == Request::LockStep ? TimeRoundTrips(count) : 0.0);
  };
  time_track();
  time_limit();
  std::vector<double> track;
  std::vector<double> limit;
  std::vector<double> ratio;
  std::vector<double> pair_ratio;
  for (auto _ : state) {
    const bool track_first = track.size() % 2 == 0;
    const double first = track_first ? time_track() : time_limit();
    const double second = track_first ? time_limit() : time_track();
    track.push_back(track_first ? first : second);
    limit.push_back(track_first ? second : first);
    ratio.push_back(limit.back() / track.back());
    pair_ratio.push_back(TimeReads(essence, positions, 1) / TimeReads(essence, positions, 2));
    state.SetIterationTime(track.back());
  }
  const auto frames = static_cast<double>(count);
  state.counters["track_fps"] = frames / Median(track);
  state.counters["limit_fps"] = frames / Median(limit);
  state.counters["of_limit"] = Median(ratio);
  state.counters["time_ratio"] = 1.0 / Median(ratio);
  state.counters["pair_of_one"] = Median(pair_ratio);
}

void PictureAhead(benchmark::State& state) {
  Frames(state, Pictures(), 480, state.range(0) != 0, Request::Ahead);
}
void PictureLockStep(benchmark::State& state) {
  Frames(state, Pictures(), 480, state.range(0) != 0, Request::LockStep);
}
void SoundAhead(benchmark::State& state) {
  Frames(state, Sound(), 5000, state.range(0) != 0, Request::Ahead);
}
void SoundLockStep(benchmark::State& state) {
  Frames(state, Sound(), 5000, state.range(0) != 0, Request::LockStep);
}

void Configure(benchmark::internal::Benchmark* bench) {
  bench->ArgName("random")->Arg(0)->Arg(1)->Iterations(Repetitions)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(PictureAhead)->Apply(Configure);
BENCHMARK(PictureLockStep)->Apply(Configure);
BENCHMARK(SoundAhead)->Apply(Configure);
BENCHMARK(SoundLockStep)->Apply(Configure);

}  // namespace
