// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "drawing/TimelineModel.h"

#include <string>

namespace Tool {

/// The show as one page without references to anything outside: zooms, pans, and tells of what is pointed at. It holds
/// the model as TimelineJson has it; without scripting it shows the picture of TimelineSvg.
[[nodiscard]] std::string TimelineHtml(const TimelineModel& model);

}  // namespace Tool
