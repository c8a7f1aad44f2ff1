// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/PCMTimelineElement.h"

namespace Strata {

PCMTimelineElement::~PCMTimelineElement() = default;

}  // namespace Strata
