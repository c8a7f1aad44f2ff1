// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/AtmosTimelineElement.h"

namespace Strata {

AtmosTimelineElement::~AtmosTimelineElement() = default;

}  // namespace Strata
