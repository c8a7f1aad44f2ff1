// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/MPEG2TimelineElement.h"

namespace Strata {

MPEG2TimelineElement::~MPEG2TimelineElement() = default;

}  // namespace Strata
