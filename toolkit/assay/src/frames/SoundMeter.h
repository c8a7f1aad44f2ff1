// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <QUIRE/SampleLayout.h>

#include <optional>
#include <span>
#include <vector>

namespace Assay {

/// Measures the channels of a sound: their peaks, and samples at full scale in a row. Runs go on from frame to frame.
class SoundMeter {
 public:
  /// So many successive samples at the same end of the scale are clipping; fewer are a peak.
  static constexpr ui64_t ClippedSamples = 3;

  /// Of one channel.
  struct Level {
    ui64_t Peak = 0;          ///< the largest magnitude, of 2^31
    ui64_t ClippedRuns = 0;   ///< of ClippedSamples or more
    ui64_t LongestRun = 0;    ///< samples, of the longest of those
    ui64_t FirstClipped = 0;  ///< the frame where the first of those begins

    [[nodiscard]] bool IsSilent() const { return Peak == 0; }
    /// dB below full scale: 0 at most; minus infinity for silence.
    [[nodiscard]] double Decibels() const;
  };

  explicit SoundMeter(const QUIRE::PCM::SampleLayout& layout);

  /// Takes the samples of a frame; a last sample that is not whole is left out. Runs end at a gap in the numbers.
  void Add(ui64_t frame, std::span<const ui8_t> bytes);
  [[nodiscard]] const std::vector<Level>& Levels() const { return m_Levels; }

 private:
  /// Samples in a row at one end of the scale, up to the end of the last frame.
  struct Run {
    ui64_t Length = 0;
    ui64_t Start = 0;  // frame
    bool IsPositive = false;
    bool IsOpen = false;
  };

  void FindPeaks(const ui8_t* bytes, ui64_t rows);
  void FindRuns(ui32_t channel, ui64_t frame, const ui8_t* bytes, ui64_t rows);
  [[nodiscard]] bool IsAtEnd(Ferro::i32_t sample) const { return sample >= m_Highest || sample <= m_Lowest; }

  QUIRE::PCM::SampleLayout m_Layout;
  Ferro::i32_t m_Highest;  // full scale, at the top of 32 bits
  Ferro::i32_t m_Lowest;
  std::vector<Level> m_Levels;
  std::vector<Run> m_Runs;
  std::vector<Ferro::i32_t> m_Most, m_Least;  // of each channel within a frame
  std::optional<ui64_t> m_Last;               // frame
};

}  // namespace Assay
