// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

namespace Tool {

/// Tells of a document that no model of the libraries holds, by its elements: a timed-text document (ST 428-7) or a
/// resource presentation list (ST 430-11).
void DescribeByElements(const std::string& path, InfoItem& item);

}  // namespace Tool
