// SPDX-License-Identifier: BSD-3-Clause
#include "SoundMeter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace Assay {
namespace {

using Ferro::i32_t;
using Ferro::i64_t;
using QUIRE::PCM::LoadSample;

constexpr double FullScale = 2147483648.0;  // 2^31

/// LoadSample for three bytes, by one load of four: the byte behind is there, and is shifted out.
i32_t Load24(const ui8_t* bytes) {
  static_assert(std::endian::native == std::endian::little);
  ui32_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  return static_cast<i32_t>(value << 8);
}

void Widen(i32_t sample, i32_t& most, i32_t& least) {
  most = std::max(most, sample);
  least = std::min(least, sample);
}

/// The peaks of neighbouring channels of 24 bits. Their number is fixed, so that they stay in registers.
template <size_t Count>
void FindPeaks24(const ui8_t* bytes, ui64_t rows, ui64_t stride, i32_t* most, i32_t* least) {
  i32_t highest[Count];
  i32_t lowest[Count];
  std::copy_n(most, Count, highest);
  std::copy_n(least, Count, lowest);
  for (ui64_t row = 0; row < rows; ++row, bytes += stride)
    for (size_t i = 0; i < Count; ++i) Widen(Load24(bytes + 3 * i), highest[i], lowest[i]);
  std::copy_n(highest, Count, most);
  std::copy_n(lowest, Count, least);
}

}  // namespace

double SoundMeter::Level::Decibels() const {
  return IsSilent() ? -std::numeric_limits<double>::infinity() : 20 * std::log10(static_cast<double>(Peak) / FullScale);
}

SoundMeter::SoundMeter(const QUIRE::PCM::SampleLayout& layout)
    : m_Layout(layout),
      m_Highest(static_cast<i32_t>((ui32_t{1} << 31) - (ui32_t{1} << (32 - layout.Bits)))),
      m_Lowest(static_cast<i32_t>((ui32_t{1} << 31) + (ui32_t{1} << (32 - layout.Bits)) - 1)),
      m_Levels(layout.Channels),
      m_Runs(layout.Channels),
      m_Most(layout.Channels),
      m_Least(layout.Channels) {}

void SoundMeter::Add(ui64_t frame, std::span<const ui8_t> bytes) {
  const bool is_next = m_Last && frame == *m_Last + 1;
  m_Last = frame;
  const ui64_t rows = m_Layout.RowsIn(bytes.size());
  std::ranges::fill(m_Most, 0);
  std::ranges::fill(m_Least, 0);
  FindPeaks(bytes.data(), rows);
  for (ui32_t channel = 0; channel < m_Layout.Channels; ++channel) {
    const i32_t most = m_Most[channel];
    const i32_t least = m_Least[channel];
    Level& level = m_Levels[channel];
    level.Peak = std::max({level.Peak, static_cast<ui64_t>(most), static_cast<ui64_t>(-i64_t{least})});
    if (!is_next) m_Runs[channel] = {};
    if (IsAtEnd(most) || IsAtEnd(least))
      FindRuns(channel, frame, bytes.data(), rows);
    else if (rows > 0)
      m_Runs[channel] = {};
  }
}

/// The last row by itself: behind it there may be nothing to load.
void SoundMeter::FindPeaks(const ui8_t* bytes, ui64_t rows) {
  if (rows == 0) return;
  ui64_t done = 0;
  if (m_Layout.Width == 3) {
    done = rows - 1;
    size_t channel = 0;
    const auto take = [&]<size_t Count>() {
      for (; channel + Count <= m_Layout.Channels; channel += Count)
        FindPeaks24<Count>(bytes + 3 * channel, done, m_Layout.Stride, &m_Most[channel], &m_Least[channel]);
    };
    take.operator()<4>();
    take.operator()<2>();
    take.operator()<1>();
  }
  for (; done < rows; ++done)
    for (ui32_t channel = 0; channel < m_Layout.Channels; ++channel)
      Widen(LoadSample(bytes + done * m_Layout.Stride + size_t{channel} * m_Layout.Width, m_Layout.Width),
            m_Most[channel], m_Least[channel]);
}

void SoundMeter::FindRuns(ui32_t channel, ui64_t frame, const ui8_t* bytes, ui64_t rows) {
  Run& run = m_Runs[channel];
  bytes += size_t{channel} * m_Layout.Width;
  for (ui64_t row = 0; row < rows; ++row, bytes += m_Layout.Stride) {
    const i32_t sample = LoadSample(bytes, m_Layout.Width);
    if (!IsAtEnd(sample)) {
      run = {};
      continue;
    }
    const bool is_positive = sample > 0;
    if (!run.IsOpen || run.IsPositive != is_positive) run = {0, frame, is_positive, true};
    ++run.Length;
    if (run.Length < ClippedSamples) continue;
    Level& level = m_Levels[channel];
    if (run.Length == ClippedSamples && level.ClippedRuns++ == 0) level.FirstClipped = run.Start;
    level.LongestRun = std::max(level.LongestRun, run.Length);
  }
}

}  // namespace Assay
