// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <vector>

namespace Tool {

/// The sound of a sample show: in each channel a tone of its own, and a tick at the start of each second.
class SampleSound {
 public:
  static constexpr Ferro::ui32_t Rate = 48000;        // samples per second
  static constexpr Ferro::ui32_t BytesPerSample = 3;  // little-endian
  static constexpr Ferro::ui32_t LowestTone = 200;    // hertz; channel n has n times as much
  static constexpr Ferro::ui32_t MostChannels = 16;

  explicit SampleSound(Ferro::ui32_t channels);

  /// Interleaved samples of all channels, `count` of each, from sample `first` on.
  [[nodiscard]] std::vector<Ferro::ui8_t> Samples(Ferro::ui64_t first, Ferro::ui32_t count) const;

 private:
  Ferro::ui32_t m_Channels;
  std::vector<double> m_Sine;  // one turn in Rate steps
};

}  // namespace Tool
