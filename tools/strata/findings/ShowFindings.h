// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "show/ShowOutline.h"

#include <vector>

namespace Tool {

/// What the documents, the store and the files show to be wrong, in playing order. Opens every file; stops
/// early, with less than all, when the user interrupts it.
[[nodiscard]] std::vector<Finding> FindingsOf(const ShowOutline& outline);

}  // namespace Tool
