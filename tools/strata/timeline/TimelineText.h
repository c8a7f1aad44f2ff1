// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "drawing/TimelineModel.h"

#include <string>

namespace Tool {

/// How the text form is written.
struct TimelineTextForm {
  unsigned Columns = 80;  ///< no line is longer; 40 at least
  bool IsUtf8 = true;     ///< otherwise the drawing is made of ASCII characters
};

/// The show as lines of text: the lanes to scale, then what is wrong, the compositions and the events.
[[nodiscard]] std::string TimelineText(const TimelineModel& model, const TimelineTextForm& form);

}  // namespace Tool
