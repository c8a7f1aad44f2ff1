// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ReadySpan.h"

#include <Ferro/Assert.h>

#include <algorithm>

namespace Strata {

void MoveReadySpan(const Timeline_t& timeline, ui32_t reel_number, TrackType_t type) {
  const i64_t ListSize = static_cast<i64_t>(timeline.size());
  const i64_t first = std::max<i64_t>(0, i64_t{reel_number} - 2);
  const i64_t end = std::min<i64_t>(ListSize, i64_t{reel_number} + 3);
  const auto put_to_rest = [&](i64_t i1) {
    FERRO_ASSERT(i1 >= 0 && i1 < ListSize);
    return timeline[static_cast<size_t>(i1)].MakeDormant(type);
  };

  for (i64_t i1 = first - 1; i1 >= 0 && put_to_rest(i1); --i1) {
  }
  for (i64_t i2 = first; i2 < end; ++i2) {
    FERRO_ASSERT(i2 >= 0 && i2 < ListSize);
    timeline[static_cast<size_t>(i2)].MakeReady(type);
  }
  for (i64_t i1 = end; i1 < ListSize && put_to_rest(i1); ++i1) {
  }
}

}  // namespace Strata
