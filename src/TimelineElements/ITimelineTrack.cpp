// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ITimelineTrack.h>

namespace Strata {

ITimelineTrack::~ITimelineTrack() = default;

}  // namespace Strata
