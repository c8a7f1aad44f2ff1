// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/FileReader.h>
#include <QUIRE/MXF/KLV.h>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <vector>

// What the benchmarks of frames share: where frames lie, bare reads of them, and times.
namespace bench {

using Ferro::ui32_t;
using Ferro::ui64_t;
using Ferro::ui8_t;

/// Ends the program with the result's label unless it is a success.
inline void Require(const Ferro::Result_t& result) {
  if (result.Success()) return;
  std::cerr << "benchmark: " << result.Label() << '\n';
  std::exit(1);
}

struct Extent {
  ui64_t Offset;
  ui64_t Length;
};

/// Finds the frames: the KLVs of at least `smallest` bytes.
inline std::vector<Extent> FindFrames(const std::string& filename, ui64_t smallest) {
  Ferro::FileReader file;
  Require(file.OpenRead(filename));
  std::vector<Extent> frames;
  QUIRE::MXF::KLVPacket packet;
  for (ui64_t offset = 0; offset < file.Size(); offset = packet.End()) {
    Require(QUIRE::MXF::ReadKLV(file, offset, file.Size(), packet));
    if (packet.ValueLength >= smallest) frames.push_back({packet.ValueOffset(), packet.ValueLength});
  }
  return frames;
}

inline double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

/// `count` positions of `frames` from `first` on, in the file's order or shuffled, no frame twice in a row.
inline std::vector<ui32_t> Positions(size_t frames, size_t count, bool random, size_t first = 0) {
  std::mt19937 generator(static_cast<std::mt19937::result_type>(1 + first));
  std::vector<ui32_t> positions;
  while (positions.size() < count) {
    const size_t next = random ? generator() % frames : (first + positions.size()) % frames;
    if (positions.empty() || positions.back() != next) positions.push_back(static_cast<ui32_t>(next));
  }
  return positions;
}

/// Seconds that bare positioned reads of the frames take, into the buffers by turns.
inline double TimeReads(const std::string& filename, const std::vector<Extent>& frames,
                        const std::vector<ui32_t>& positions, std::vector<std::vector<ui8_t>>& buffers) {
  const int file = open(filename.c_str(), O_RDONLY | O_CLOEXEC);
  const auto start = std::chrono::steady_clock::now();
  for (size_t i = 0; i < positions.size(); ++i) {
    const Extent& frame = frames[positions[i]];
    std::vector<ui8_t>& buffer = buffers[i % buffers.size()];
    const ssize_t count = pread(file, buffer.data(), frame.Length, static_cast<off_t>(frame.Offset));
    if (count != static_cast<ssize_t>(frame.Length)) Require(Ferro::RESULT_READFAIL);
    benchmark::DoNotOptimize(buffer.data());
  }
  const double seconds = SecondsSince(start);
  close(file);
  return seconds;
}

}  // namespace bench
