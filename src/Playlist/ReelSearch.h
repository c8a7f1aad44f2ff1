// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/TimelineReel.h"

namespace Strata {

/// The reel that holds an edit unit of the timeline, found in logarithmic time; null beyond the end and in an empty
/// timeline. Edit unit 0 is always the first reel's; a reel without edit units holds no other. One past the end still
/// yields the last reel:
///
///     timeline      |  reel 0: 0..9  |  reel 1: 10..24  |
///     edit unit     0 ............ 9   10 ........... 24  25 -> reel 1   26 -> null
///
/// @param first_of_composition  when given, receives the first reel of the same composition.
[[nodiscard]] const TimelineReel* FindReelHavingEditUnit(const Timeline_t& timeline, ui32_t position,
                                                         const TimelineReel** first_of_composition = nullptr);

}  // namespace Strata
