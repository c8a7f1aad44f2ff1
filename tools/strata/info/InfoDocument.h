// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

#include <Cairn/FileType.h>

namespace Tool {

/// Tells of a document: a playlist, packing list, asset map, volume index, resource presentation list or timed text.
void DescribeDocument(const std::string& path, Cairn::FileType_t type, InfoItem& item);

}  // namespace Tool
