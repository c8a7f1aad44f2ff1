// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

namespace Tool {

/// Tells of a folder: the packages in it and below, and every asset of theirs with what is wrong with it.
void DescribeFolder(const std::string& path, InfoItem& item);

}  // namespace Tool
