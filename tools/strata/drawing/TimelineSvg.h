// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineModel.h"

#include <string>

namespace Tool {

/// The show as one picture, to scale: an SVG document without references to anything outside, 1400 pixels wide.
[[nodiscard]] std::string TimelineSvg(const TimelineModel& model);

/// What plays when and what the looks mean, for pages of that width in pixels, 320 at least: an SVG document that needs
/// TimelineStyle and TimelinePatterns beside it.
[[nodiscard]] std::string TimelineLanes(const TimelineModel& model, double width);
/// The patterns that drawings of a page refer to, as an SVG document that shows nothing.
[[nodiscard]] std::string TimelinePatterns();

}  // namespace Tool
