// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

#include <QUIRE/EssenceType.h>

namespace Tool {

/// Tells of a track file: what it holds, who made it, how it is encrypted, and whether its structure and index are sound.
void DescribeTrackFile(const std::string& path, QUIRE::EssenceType_t essence, InfoItem& item);

}  // namespace Tool
