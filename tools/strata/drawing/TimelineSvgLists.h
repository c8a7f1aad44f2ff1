// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SvgDrawing.h"
#include "TimelineModel.h"

namespace Tool {

// What stands around the lanes of a drawn timeline.

/// The class that the boxes of a lane are drawn with: "picture", "data".
[[nodiscard]] const char* TimelineLaneStyle(AssetKind kind);

/// The patterns that the style's classes refer to: missing, broken, cipher.
void AddTimelinePatterns(Ferro::XMLElement& root);

/// Draws what the looks mean from `place` down, in as many rows as it takes. Returns where it ends.
double DrawTimelineLegend(const TimelineModel& model, SvgDrawing& out, const SvgBox& place);

/// Draws the legend, what is wrong, the compositions and the events from `place` down. Returns where it ends.
double DrawTimelineLists(const TimelineModel& model, SvgDrawing& out, const SvgBox& place);

}  // namespace Tool
