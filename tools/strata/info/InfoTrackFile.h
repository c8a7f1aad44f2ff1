// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

namespace Tool {

/// Tells of an MXF file: what it holds, who made it, how it is encrypted,
/// whether its structure and index are sound, and whether it is a D-Cinema track file at all.
void DescribeTrackFile(const std::string& path, InfoItem& item);

}  // namespace Tool
