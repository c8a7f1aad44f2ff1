// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ReelSearch.h"

#include <Ferro/Assert.h>

#include <algorithm>

namespace Strata {

namespace {

const TimelineReel* FindReel(const Timeline_t& timeline, ui32_t position) {
  if (timeline.empty()) return nullptr;
  if (position == 0) return &timeline.front();

  FERRO_ASSERT_TEXT(timeline.front().m_Offset < position, "ri != m_Timeline.begin()");
  // The last reel that does not start later: a reel without edit units never hides the one behind it.
  const auto ri = std::upper_bound(timeline.begin(), timeline.end(), position,
                                   [](ui32_t sought, const TimelineReel& reel) { return sought < reel.m_Offset; });
  if (ri == timeline.end() && timeline.back().End() < position) return nullptr;
  return &*(ri - 1);
}

}  // namespace

const TimelineReel* FindReelHavingEditUnit(const Timeline_t& timeline, ui32_t position,
                                           const TimelineReel** first_of_composition) {
  const TimelineReel* reel = FindReel(timeline, position);
  if (reel != nullptr && first_of_composition != nullptr)
    *first_of_composition = &timeline[reel->m_PlaylistReelNumber - reel->m_CPLReelNumber];
  return reel;
}

}  // namespace Strata
