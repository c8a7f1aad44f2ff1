// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineModel.h"
#include "terminal/Report.h"

namespace Tool {

/// The model as a report of schema strata-timeline-1, documented in docs/schema.
[[nodiscard]] Json TimelineJson(const TimelineModel& model);

}  // namespace Tool
