// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ReelSearch.h"

#include <Ferro/Assert.h>

#include <algorithm>

namespace Strata {

namespace {

const TimelineReel* find_reel(const Timeline_t& timeline, ui32_t position) {
  if (timeline.empty()) return nullptr;
  if (position == 0) return &timeline.front();

  const auto ri = std::lower_bound(timeline.begin(), timeline.end(), position,
                                   [](const TimelineReel& reel, ui32_t sought) { return reel.m_Offset < sought; });
  if (ri == timeline.end()) return timeline.back().End() < position ? nullptr : &timeline.back();
  FERRO_ASSERT_TEXT(ri != timeline.begin(), "ri != m_Timeline.begin()");
  return ri->m_Offset == position ? &*ri : &*(ri - 1);
}

}  // namespace

const TimelineReel* FindReelHavingEditUnit(const Timeline_t& timeline, ui32_t position,
                                           const TimelineReel** first_of_composition) {
  const TimelineReel* reel = find_reel(timeline, position);
  if (reel != nullptr && first_of_composition != nullptr)
    *first_of_composition = &timeline[reel->m_PlaylistReelNumber - reel->m_CPLReelNumber];
  return reel;
}

}  // namespace Strata
