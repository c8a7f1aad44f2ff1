// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/TextSpanContext.h"

#include <Strata/ITimelineTrack.h>

#include <Ferro/Assert.h>

namespace Strata {

void TextSpanContext::TestEntry(ITimelineTrack* track) {
  const SpanEntry entry{track, track->AssetID(), track->EntryPoint(), track->Duration()};
  FERRO_ASSERT(member_reels.size() > 0);
  const SpanEntry& newest = member_reels.front();

  const bool continues =
      newest.track != nullptr && entry.id == newest.id && entry.offset == newest.offset + newest.duration;
  if (continues) {
    member_reels.push_front(entry);
    return;
  }
  Reset();
  FERRO_ASSERT(member_reels.size() == 1);
  member_reels.front() = entry;
}

void TextSpanContext::Reset() {
  if (member_reels.size() > 1) {
    ui32_t remaining = 0;
    for (const SpanEntry& member : member_reels) {
      remaining += member.track->Duration();
      member.track->SetSpanDuration(remaining);
    }
    member_reels.resize(1);
  }
  FERRO_ASSERT(member_reels.size() == 1);
  member_reels.front() = SpanEntry{};
}

}  // namespace Strata
