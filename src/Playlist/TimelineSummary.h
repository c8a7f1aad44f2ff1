// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/TimelineReel.h"

#include <Strata/PlaylistEvent.h>

#include <Ferro/UUID.h>

namespace Strata {

using EventList = Ferro::ArchivableList<PlaylistEvent>;

/// Totals and properties of a whole timeline.
struct TimelineSummary {
  UUIDList CPLs;               ///< the compositions, once per appearance, in playing order
  UUIDList Keys;               ///< the content keys of encrypted tracks, each once, by first occurrence
  UUIDList CiphertextCPLs;     ///< the compositions with encrypted tracks, each once, by first occurrence
  ui32_t DurationSeconds = 0;  ///< of the pictures, rounded half up
};

/// Gathers the summary in one pass over the reels. It also sets the span durations of the on-screen text tracks.
[[nodiscard]] TimelineSummary SummariseTimeline(const Timeline_t& timeline);

/// Sorts events by position, those at one position staying in order.
void SortEvents(EventList& events);
/// Pulls those at the end of a sorted list that lie outside a timeline of `duration` edit units back to its last one.
void PullEventsInside(EventList& events, ui32_t duration);

}  // namespace Strata
