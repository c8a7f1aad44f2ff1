// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineModel.h"

#include <string>
#include <vector>

namespace Tool {

// Where things of a timeline lie on a line of some length: pixels, or columns of a terminal.

inline constexpr double TimelineLeft = 108;   ///< pixels of a drawing before time begins: names of lanes
inline constexpr double TimelineMargin = 24;  ///< pixels behind its end

/// Time to scale: seconds from the start of the show to places on a line.
class TimelineScale {
 public:
  /// A show of `seconds` from `left` on, `width` long. A show that takes no time is drawn as if it took one second.
  TimelineScale(double seconds, double left, double width);

  [[nodiscard]] double Place(double seconds) const;
  [[nodiscard]] double Left() const { return m_Left; }
  [[nodiscard]] double Right() const { return m_Left + m_Width; }
  [[nodiscard]] double Seconds() const { return m_Seconds; }

 private:
  double m_Seconds;
  double m_Left;
  double m_Width;
};

struct TimelineTick {
  double Seconds = 0;
  std::string Label;  ///< "0:05", "1:00:00", or "0:00.5" where ticks are closer than a second
};

/// Ticks at round times, at least `spacing` apart, from the start to the end of the show.
[[nodiscard]] std::vector<TimelineTick> TimelineTicks(const TimelineScale& scale, double spacing);

/// Room that a label wants.
struct LabelRoom {
  double Left = 0;
  double Width = 0;
};

/// Puts each label into the first row where it touches no other one; -1 for those that fit into none of `rows`. Labels
/// come by their left ends.
[[nodiscard]] std::vector<int> PlaceLabels(const std::vector<LabelRoom>& labels, unsigned rows, double gap);

/// Something to be drawn, and those that look like it share its class.
struct TimelineItem {
  double Left = 0;
  double Right = 0;
  unsigned Class = 0;
  size_t Index = 0;  ///< of the first one
  size_t Count = 1;  ///< how many are drawn as one
};

/// Joins items of equal class that are narrower than `narrowest` and closer than that to each other, so that what is
/// drawn is bounded by the line's length. Items come by their left ends; so do the results of each class.
[[nodiscard]] std::vector<TimelineItem> JoinNarrow(const std::vector<TimelineItem>& items, double narrowest);

}  // namespace Tool
