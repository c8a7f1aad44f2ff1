// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/TimelineReel.h"
#include "Playlist/TimelineSummary.h"

#include <Strata/ResourcePresentationList.h>
#include <Strata/ShowPlaylist.h>

#include <string>

namespace Strata {

/// Describes a timeline as a show playlist that replays it: one composition item per appearance of a composition, an
/// event on a composition's first edit unit as a marker in front of it, every other event as a marker inside. Loading
/// the result places the same events at the same positions.
/// @return RESULT_OK; RESULT_FAIL, logged, where the system has no random numbers to make an identifier of.
[[nodiscard]] Result_t FillShowPlaylist(const Timeline_t& timeline, const EventList& events, ui32_t duration_seconds,
                                        ShowPlaylist& out);

/// Announces the text tracks of each reel that has any (ST 430-11). `base_path` stands in front of each track's
/// identifier in its URL.
/// @return as FillShowPlaylist.
[[nodiscard]] Result_t FillPresentationList(const Timeline_t& timeline, const std::string& base_path,
                                            ResourcePresentationList& out);

}  // namespace Strata
