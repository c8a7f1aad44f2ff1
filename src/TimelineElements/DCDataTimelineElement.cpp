// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/DCDataTimelineElement.h"

namespace Strata {

DCDataTimelineElement::~DCDataTimelineElement() = default;

}  // namespace Strata
