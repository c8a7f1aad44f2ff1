// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Report.h"
#include "TimelineModel.h"

/// The model as a report of schema strata-timeline-1, documented in docs/schema.
[[nodiscard]] Json TimelineJson(const TimelineModel& model);
