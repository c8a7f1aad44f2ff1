// SPDX-License-Identifier: BSD-3-Clause
// What the transport costs per edit unit, by length of the timeline, on tracks that cost nothing. Beside it the floor: a
// binary search over bare numbers, as many as there are reels.
#include "../tests/support/FakeTimeline.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

namespace {

using testsupport::FakeTimeline;
using testsupport::ui32_t;

constexpr ui32_t ReelLength = 24;
constexpr ui32_t ReelsPerComposition = 5;

void Fill(FakeTimeline& fake, benchmark::State& state) {
  const auto reels = static_cast<ui32_t>(state.range(0));
  for (ui32_t number = 0; number < reels / ReelsPerComposition; ++number)
    fake.Append(testsupport::Composition(1 + number), std::vector<ui32_t>(ReelsPerComposition, ReelLength));
  fake.Finish();
}

/// Edit units of a timeline in random order, the same in each run.
std::vector<ui32_t> RandomPositions(ui32_t duration) {
  std::mt19937 random(1);
  std::vector<ui32_t> positions(4096);
  for (ui32_t& position : positions) position = static_cast<ui32_t>(random() % duration);
  return positions;
}

/// One edit unit on, from the start again after the last.
void StepForward(Strata::IPlaylist& playlist) {
  if (playlist.MoveForward(1)) playlist.MoveToEditUnit(0);
}

void Move(benchmark::State& state) {
  FakeTimeline fake;
  Fill(fake, state);
  for (auto _ : state) StepForward(fake.Playlist);
}

void Reader(benchmark::State& state) {
  FakeTimeline fake;
  Fill(fake, state);
  const ui32_t middle = fake.Playlist.GetDuration() / 2;
  for (auto _ : state) benchmark::DoNotOptimize(fake.Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, middle));
}

void MoveAndReader(benchmark::State& state) {
  FakeTimeline fake;
  Fill(fake, state);
  for (auto _ : state) {
    StepForward(fake.Playlist);
    const ui32_t position = fake.Playlist.GetPosition();
    benchmark::DoNotOptimize(fake.Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, position));
  }
}

void RandomMove(benchmark::State& state) {
  FakeTimeline fake;
  Fill(fake, state);
  const std::vector<ui32_t> positions = RandomPositions(fake.Playlist.GetDuration());
  size_t i = 0;
  for (auto _ : state) fake.Playlist.MoveToEditUnit(positions[i++ % positions.size()]);
}

void RandomReader(benchmark::State& state) {
  FakeTimeline fake;
  Fill(fake, state);
  const std::vector<ui32_t> positions = RandomPositions(fake.Playlist.GetDuration());
  size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(
        fake.Playlist.GetReaderForChannel(Strata::TRKT_IMAGE, 0, positions[i++ % positions.size()]));
}

void RandomSearchOfNumbers(benchmark::State& state) {
  std::vector<ui32_t> offsets(static_cast<size_t>(state.range(0)));
  for (size_t i = 0; i < offsets.size(); ++i) offsets[i] = static_cast<ui32_t>(i) * ReelLength;
  const std::vector<ui32_t> positions = RandomPositions(offsets.back() + ReelLength);
  size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(std::upper_bound(offsets.begin(), offsets.end(), positions[i++ % positions.size()]));
}

void ByLength(benchmark::internal::Benchmark* bench) {
  bench->ArgName("reels")->RangeMultiplier(10)->Range(10, 10'000);
}

BENCHMARK(Move)->Apply(ByLength);
BENCHMARK(Reader)->Apply(ByLength);
BENCHMARK(MoveAndReader)->Apply(ByLength);
BENCHMARK(RandomMove)->Apply(ByLength);
BENCHMARK(RandomReader)->Apply(ByLength);
BENCHMARK(RandomSearchOfNumbers)->Apply(ByLength);

}  // namespace
