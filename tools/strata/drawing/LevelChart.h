// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <limits>
#include <string>
#include <vector>

namespace Tool {

/// The level of a channel of sound.
struct ChannelLevel {
  std::string Name;  ///< "L", "HI"; its number where it has none
  /// The highest sample, in dB below full scale; minus infinity for digital silence.
  double Peak = -std::numeric_limits<double>::infinity();
};

/// "−3.2", "0.0", "silent".
[[nodiscard]] std::string LevelText(double peak);
/// "L −3.2, R −3.1, C silent": dBFS, by channel.
[[nodiscard]] std::string LevelsText(const std::vector<ChannelLevel>& levels);
/// A bar for each channel from -60 dBFS up, with its level beside it: an SVG document for pages, LevelChartWidth wide.
[[nodiscard]] std::string LevelChart(const std::vector<ChannelLevel>& levels);

inline constexpr double LevelChartWidth = 340;

}  // namespace Tool
