// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ITimelineTrack.h>

#include "TimelineElements/Readiness.h"

namespace Strata {

ITimelineTrack::~ITimelineTrack() = default;

bool IsReady(const ITimelineTrack& track) {
  const auto* readiness = dynamic_cast<const Readiness*>(&track);
  return readiness == nullptr || readiness->IsReady();
}

}  // namespace Strata
