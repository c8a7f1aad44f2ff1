// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineLayout.h"

#include "terminal/TextForms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>

namespace Tool {

namespace {

// Seconds between ticks. Above a day there are multiples of a day.
constexpr std::array Steps = {0.05, 0.1,  0.25,  0.5,   1.0,   2.0,    5.0,    10.0,   15.0,   30.0,   60.0,
                              120., 300., 600.0, 900.0, 1800., 3600.0, 7200.0, 21600., 43200., 86400.0};

std::string TickLabel(double seconds, double step) {
  std::string text = DurationText(seconds + 1e-9);
  if (step >= 1) return text;
  std::array<char, 16> fraction{};
  std::snprintf(fraction.data(), fraction.size(), "%.2f", std::fmod(seconds + 1e-9, 1.0));
  return text + std::string(fraction.data()).substr(1);
}

}  // namespace

TimelineScale::TimelineScale(double seconds, double left, double width)
    : m_Seconds(seconds > 0 ? seconds : 1), m_Left(left), m_Width(width) {}

double TimelineScale::Place(double seconds) const {
  return m_Left + std::clamp(seconds / m_Seconds, 0.0, 1.0) * m_Width;
}

std::vector<TimelineTick> TimelineTicks(const TimelineScale& scale, double spacing) {
  const double least = spacing * scale.Seconds() / (scale.Right() - scale.Left());
  const auto* const found = std::lower_bound(Steps.begin(), Steps.end(), least);
  const double step = found != Steps.end() ? *found : std::ceil(least / Steps.back()) * Steps.back();
  std::vector<TimelineTick> ticks;
  for (unsigned number = 0; number * step <= scale.Seconds() + 1e-9; ++number)
    ticks.push_back({number * step, TickLabel(number * step, step)});
  return ticks;
}

std::vector<int> PlaceLabels(const std::vector<LabelRoom>& labels, unsigned rows, double gap) {
  std::vector<double> ends(rows, -1e9);
  std::vector<int> places;
  for (const LabelRoom& label : labels) {
    const auto row = std::find_if(ends.begin(), ends.end(), [&](double end) { return end + gap <= label.Left; });
    places.push_back(row == ends.end() ? -1 : static_cast<int>(row - ends.begin()));
    if (row != ends.end()) *row = label.Left + label.Width;
  }
  return places;
}

std::vector<TimelineItem> JoinNarrow(const std::vector<TimelineItem>& items, double narrowest) {
  std::vector<TimelineItem> joined;
  std::map<unsigned, size_t> open;  // per class, the last one, while others can join it
  for (const TimelineItem& item : items) {
    const bool narrow = item.Right - item.Left < narrowest;
    const auto last = open.find(item.Class);
    if (narrow && last != open.end() && item.Left - joined[last->second].Right < narrowest) {
      joined[last->second].Right = std::max(joined[last->second].Right, item.Right);
      joined[last->second].Count += item.Count;
      continue;
    }
    open.erase(item.Class);
    if (narrow) open[item.Class] = joined.size();
    joined.push_back(item);
  }
  return joined;
}

}  // namespace Tool
