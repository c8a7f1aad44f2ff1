// SPDX-License-Identifier: BSD-3-Clause
#include "SampleSound.h"

#include <cmath>
#include <numbers>

namespace Tool {

namespace {

constexpr double FullScale = 8'388'607;
constexpr double ToneLevel = 0.1;                              // -20 dBFS
constexpr double TickLevel = 0.5;                              // -6 dBFS
constexpr Ferro::ui64_t TickTone = 2000;                       // hertz
constexpr Ferro::ui64_t TickLength = SampleSound::Rate / 100;  // samples

}  // namespace

SampleSound::SampleSound(Ferro::ui32_t channels) : m_Channels(channels), m_Sine(Rate) {
  for (size_t i = 0; i < m_Sine.size(); ++i) m_Sine[i] = std::sin(2 * std::numbers::pi * double(i) / Rate);
}

std::vector<Ferro::ui8_t> SampleSound::Samples(Ferro::ui64_t first, Ferro::ui32_t count) const {
  std::vector<Ferro::ui8_t> bytes;
  bytes.reserve(size_t{count} * m_Channels * BytesPerSample);
  for (Ferro::ui64_t sample = first; sample < first + count; ++sample) {
    const bool ticks = sample % Rate < TickLength;
    const double tick = ticks ? TickLevel * m_Sine[sample * TickTone % Rate] : 0;
    for (Ferro::ui32_t channel = 1; channel <= m_Channels; ++channel) {
      const double tone = ToneLevel * m_Sine[sample * LowestTone * channel % Rate];
      const auto value = static_cast<Ferro::i32_t>(std::lround(FullScale * (tone + tick)));
      for (int shift = 0; shift < 24; shift += 8) bytes.push_back(static_cast<Ferro::ui8_t>(value >> shift));
    }
  }
  return bytes;
}

}  // namespace Tool
