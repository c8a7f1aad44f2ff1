// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/JP2KTimelineElement.h"

namespace Strata {

JP2KTimelineElement::~JP2KTimelineElement() = default;

}  // namespace Strata
