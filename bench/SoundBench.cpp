// SPDX-License-Identifier: BSD-3-Clause
// What measuring sound costs, beside reading it: one thread, everything in page cache.
//
//   levels   peaks, runs at full scale and silence of every channel, frame by frame as they are read, beside bare
//            positioned reads of the same frames; noise, and noise that is clipped in every frame
//
// Contestants take turns; a ratio is the median of the repetitions' ratios.
#include "frames/SoundMeter.h"

#include "FrameReads.h"
#include "TemporaryFolder.h"

#include <cstdio>
#include <fstream>

namespace {

using namespace bench;

constexpr int Repetitions = 41;
constexpr ui32_t Samples = 2000;  // of a frame at 24 per second
constexpr size_t FrameCount = 480;

double TimeLevels(const std::string& filename, const std::vector<Extent>& frames,
                  const QUIRE::PCM::SampleLayout& layout, std::vector<ui8_t>& buffer) {
  const int file = open(filename.c_str(), O_RDONLY | O_CLOEXEC);
  const auto start = std::chrono::steady_clock::now();
  Assay::SoundMeter meter(layout);
  for (size_t i = 0; i < frames.size(); ++i) {
    const ssize_t count = pread(file, buffer.data(), frames[i].Length, static_cast<off_t>(frames[i].Offset));
    if (count != static_cast<ssize_t>(frames[i].Length)) Require(Ferro::RESULT_READFAIL);
    meter.Add(i, {buffer.data(), frames[i].Length});
  }
  benchmark::DoNotOptimize(meter.Levels().data());
  const double seconds = SecondsSince(start);
  close(file);
  return seconds;
}

void Compare(ui32_t channels, bool is_clipped) {
  const testsupport::TemporaryFolder folder;
  const std::string filename = folder.Path("samples");
  const size_t length = size_t{Samples} * channels * 3;
  std::vector<Extent> frames;
  std::vector<ui32_t> positions;
  std::ofstream file(filename, std::ios::binary);
  std::mt19937 random(1);
  for (size_t i = 0; i < FrameCount; ++i) {
    std::vector<ui8_t> bytes(length);
    for (size_t at = 0; at < length; ++at) bytes[at] = static_cast<ui8_t>(at % 3 == 2 ? random() % 32 : random());
    if (is_clipped)  // the first three samples of each channel
      for (size_t at = 0; at < size_t{9} * channels; ++at) bytes[at] = at % 3 == 2 ? 0x7f : 0xff;
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(length));
    frames.push_back({i * length, length});
    positions.push_back(static_cast<ui32_t>(i));
  }
  file.close();

  QUIRE::PCM::AudioDescriptor sound;
  sound.ChannelCount = channels;
  sound.QuantizationBits = 24;
  sound.BlockAlign = channels * 3;
  const auto layout = *QUIRE::PCM::SampleLayout::Of(sound);
  std::vector<std::vector<ui8_t>> buffers(1, std::vector<ui8_t>(length));
  std::vector<double> reads, ratios, seconds;
  for (int i = 0; i <= Repetitions; ++i) {
    const double read = TimeReads(filename, frames, positions, buffers);
    const double measured = TimeLevels(filename, frames, layout, buffers.front());
    if (i == 0) continue;  // warming up
    reads.push_back(read);
    seconds.push_back(measured);
    ratios.push_back(read / measured);
  }
  const double gigabytes = static_cast<double>(length * FrameCount) / 1e9;
  std::printf("levels, %2u channels, %-8s read %5.2f GB/s, read and measured %5.2f GB/s, of reading %.2f\n", channels,
              is_clipped ? "clipped:" : "noise:", gigabytes / Median(reads), gigabytes / Median(seconds),
              Median(ratios));
}

}  // namespace

int main() {
  for (const ui32_t channels : {2U, 6U, 8U, 16U}) Compare(channels, false);
  Compare(16, true);
}
