// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "terminal/JsonReport.h"

#include <vector>

namespace Tool {

/// The findings as reports have them; keys that do not apply are left out.
[[nodiscard]] Json FindingsJson(const std::vector<Finding>& findings);

}  // namespace Tool
