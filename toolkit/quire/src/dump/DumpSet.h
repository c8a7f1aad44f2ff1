// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DumpNode.h"

#include <QUIRE/MXF/InterchangeObject.h>
#include <QUIRE/MXF/Primer.h>

namespace QUIRE::MXF {

/// Adds the set's name, key and items to `group`. The primer names items that we have no field for; it may be null.
void DescribeSet(const InterchangeObject& set, const Primer* primer, DumpNode& group);
/// A label in four groups of digits, followed by its name where the dictionary knows it.
[[nodiscard]] std::string DescribeLabel(const UL& label);

}  // namespace QUIRE::MXF
