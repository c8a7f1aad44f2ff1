// SPDX-License-Identifier: BSD-3-Clause
#include "LevelChart.h"

#include "SvgDrawing.h"
#include "terminal/DisplayText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace Tool {

namespace {

constexpr double Left = 46;         // of the bars: names stand before them
constexpr double Right = 286;       // full scale: levels stand behind it
constexpr double Row = 20;          // of a channel
constexpr double Top = 20;          // the scale stands above
constexpr double LeastLevel = -60;  // dBFS at the left end

double PlaceOf(double level) {
  return Left + (Right - Left) * (1 - std::clamp(level / LeastLevel, 0.0, 1.0));
}

}  // namespace

std::string LevelText(double peak) {
  if (std::isinf(peak)) return "silent";
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.1f", std::fabs(peak));
  const std::string number = text.data();
  return (peak < 0 && number != "0.0" ? "\u2212" : "") + number;
}

std::string LevelsText(const std::vector<ChannelLevel>& levels) {
  std::string text;
  for (const ChannelLevel& level : levels)
    text += (text.empty() ? "" : ", ") + level.Name + ' ' + LevelText(level.Peak);
  return text;
}

std::string LevelChart(const std::vector<ChannelLevel>& levels) {
  SvgDocument document("Highest levels by channel, in dBFS", LevelsText(levels));
  SvgDrawing out(document.Root());
  const double bottom = Top + Row * static_cast<double>(levels.size());
  for (double level = LeastLevel; level <= 0; level += 20) {
    out.Line(PlaceOf(level), Top - 4, PlaceOf(level), bottom, level == 0 ? "axis" : "grid");
    out.Text(PlaceOf(level), Top - 8, LevelText(level).substr(0, LevelText(level).find('.')), "number", "middle");
  }
  out.Text(LevelChartWidth, Top - 8, "dBFS", "lane", "end");
  double y = Top;
  for (const ChannelLevel& level : levels) {
    const bool is_silent = std::isinf(level.Peak);
    out.Text(Left - 8, y + 14, FitPixels(level.Name, 12, Left - 8), "lane", "end");
    if (!is_silent) out.Rectangle({Left, y + 3, std::max(PlaceOf(level.Peak) - Left, 1.0), Row - 6}, "sound");
    out.Text(LevelChartWidth, y + 14, LevelText(level.Peak), is_silent ? "faint" : "number", "end");
    y += Row;
  }
  return document.Render(LevelChartWidth, bottom + 2);
}

}  // namespace Tool
