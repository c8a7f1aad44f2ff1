// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/TimelineReel.h"

namespace Strata {

/// Makes one track type ready around a reel and dormant elsewhere. The ready span is the reel with two on each
/// side; outside it reels are put to rest outwards from the span, each walk ending at the first reel that was at rest:
///
///     ... at rest <- put to rest |  r-2  r-1  r  r+1  r+2  | put to rest -> at rest ...
///
/// Since a position moves by few reels at a time, each call touches few reels, however long the timeline.
void MoveReadySpan(const Timeline_t& timeline, ui32_t reel_number, TrackType_t type);

}  // namespace Strata
