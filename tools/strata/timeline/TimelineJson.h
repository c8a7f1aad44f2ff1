// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "drawing/TimelineModel.h"

#include <string>

namespace Tool {

/// The model as a report of schema strata-timeline-1, documented in docs/schema: indented, or in one line.
[[nodiscard]] std::string TimelineJson(const TimelineModel& model, bool is_indented = true);

}  // namespace Tool
