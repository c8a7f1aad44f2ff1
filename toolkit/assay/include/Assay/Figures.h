// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <QUIRE/Rational.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace Assay {

/// How much picture there is in how much time. Of a stereoscopic file both eyes together.
struct PictureFigures {
  double MeanRate = 0;       ///< Mbit/s over the whole file
  double PeakRate = 0;       ///< Mbit/s of the largest edit unit
  ui64_t PeakEditUnit = 0;   ///< which it is
  double LimitRate = 0;      ///< Mbit/s that no edit unit may exceed; 0 where there is no limit
  ui64_t UnitsOfSpan = 1;    ///< edit units that one of Spans stands for
  std::vector<float> Spans;  ///< Mbit/s of the largest edit unit in each span of the file, in order; at most MaxSpans

  static constexpr size_t MaxSpans = 1000;
};

/// The level of one channel of sound.
struct ChannelFigures {
  std::string Label;  ///< "L", "LFE", "HI"; empty where it has none
  /// The highest sample, in dB below full scale; minus infinity for digital silence.
  double Peak = -std::numeric_limits<double>::infinity();

  [[nodiscard]] bool IsSilent() const { return Peak == -std::numeric_limits<double>::infinity(); }
};

/// What was measured in one track file: no findings, but figures of every report that read the frames.
struct FileFigures {
  UUID Asset;
  std::string Package;   ///< its folder; empty where the store has it
  std::string Document;  ///< path of the file, from the package's folder on
  QUIRE::Rational EditRate;
  ui64_t Duration = 0;  ///< edit units
  std::optional<PictureFigures> Picture;
  std::vector<ChannelFigures> Channels;  ///< of sound, in order
};

}  // namespace Assay
