// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineModel.h"

#include <string>

namespace Tool {

/// The show as one picture, to scale: an SVG document without references to anything outside, 1400 pixels wide.
[[nodiscard]] std::string TimelineSvg(const TimelineModel& model);

}  // namespace Tool
