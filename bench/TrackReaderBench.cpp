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
//
// A hand-over wakes a thread on a processor that may have gone to sleep, and how long that takes is the machine's affair;
// round_trip_us is the time of one round trip. So everything is measured twice: as the machine is, and with the
// processors held awake (awake:1), which needs the right to open /dev/cpu_dma_latency.
#include "EssenceMaker.h"
#include "FrameReads.h"
#include "LatencyRequest.h"
#include "TemporaryFolder.h"
#include "TimelineElements/TrackFileElements.h"
#include "TrackFileMaker.h"

#include <QUIRE/JP2KWriter.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
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

/// What was measured in each repetition.
struct Timings {
  std::vector<double> Track;
  std::vector<double> Limit;
  std::vector<double> Ratio;
  std::vector<double> PairRatio;
  std::vector<double> RoundTrip;
};

Timings Measure(benchmark::State& state, Essence& essence, const std::vector<ui32_t>& positions, Request request) {
  Timings timings;
  const size_t count = positions.size();
  const auto time_track = [&] {
    return request == Request::Ahead ? TimeAhead(essence, positions) : TimeLockStep(essence, positions);
  };
  const auto time_limit = [&] {
    const double reads = TimeReads(essence, positions, 1);
    timings.RoundTrip.push_back(TimeRoundTrips(count));
    return request == Request::LockStep ? reads + timings.RoundTrip.back() : reads;
  };
  time_track();
  time_limit();
  for (auto _ : state) {
    const bool track_first = timings.Track.size() % 2 == 0;
    const double first = track_first ? time_track() : time_limit();
    const double second = track_first ? time_limit() : time_track();
    timings.Track.push_back(track_first ? first : second);
    timings.Limit.push_back(track_first ? second : first);
    timings.Ratio.push_back(timings.Limit.back() / timings.Track.back());
    timings.PairRatio.push_back(TimeReads(essence, positions, 1) / TimeReads(essence, positions, 2));
    state.SetIterationTime(timings.Track.back());
  }
  return timings;
}

void Frames(benchmark::State& state, Essence& essence, size_t count, Request request) {
  const std::vector<ui32_t> positions = Positions(essence.Frames.size(), count, state.range(0) != 0);
  std::optional<LatencyRequest> awake;
  if (state.range(1) != 0 && !awake.emplace().Granted()) {
    state.SkipWithError("/dev/cpu_dma_latency cannot be written: not measured");
    return;
  }
  const Timings timings = Measure(state, essence, positions, request);
  const auto frames = static_cast<double>(count);
  const double ratio = Median(timings.Ratio);
  state.counters["track_fps"] = frames / Median(timings.Track);
  state.counters["limit_fps"] = frames / Median(timings.Limit);
  state.counters["of_limit"] = ratio;
  state.counters["time_ratio"] = 1.0 / ratio;
  state.counters["pair_of_one"] = Median(timings.PairRatio);
  state.counters["round_trip_us"] = Median(timings.RoundTrip) / frames * 1e6;
}

void PictureAhead(benchmark::State& state) {
  Frames(state, Pictures(), 480, Request::Ahead);
}
void PictureLockStep(benchmark::State& state) {
  Frames(state, Pictures(), 480, Request::LockStep);
}
void SoundAhead(benchmark::State& state) {
  Frames(state, Sound(), 5000, Request::Ahead);
}
void SoundLockStep(benchmark::State& state) {
  Frames(state, Sound(), 5000, Request::LockStep);
}

void Configure(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"random", "awake"})->ArgsProduct({{0, 1}, {1, 0}});
  bench->Iterations(Repetitions)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(PictureAhead)->Apply(Configure);
BENCHMARK(PictureLockStep)->Apply(Configure);
BENCHMARK(SoundAhead)->Apply(Configure);
BENCHMARK(SoundLockStep)->Apply(Configure);

}  // namespace
