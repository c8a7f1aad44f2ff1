// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

#include <QUIRE/EssenceType.h>

namespace Tool {

/// Tells of an MXF file's partitions, and whether its index leads to every edit unit: reads the key and length of each.
/// `item` has the file's duration by then, where that is known.
/// @return true for an MXF file whose header can be read.
[[nodiscard]] bool DescribeStructure(const std::string& path, QUIRE::EssenceType_t essence, InfoItem& item);

}  // namespace Tool
