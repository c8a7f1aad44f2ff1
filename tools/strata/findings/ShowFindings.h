// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "SecurityFindings.h"
#include "show/ShowOutline.h"

#include <functional>

namespace Tool {

/// Asked before each composition, with how many are done and how many there are; false ends the work.
using CheckProgress = std::function<bool(size_t done, size_t total)>;

/// What the documents, the store and the files show to be wrong, in playing order. Opens every file; less than all where
/// `progress` ended it.
/// @param security  what is known of signatures and keys; null: they are not looked at.
[[nodiscard]] FindingList FindingsOf(const ShowOutline& outline, const CheckProgress& progress = {},
                                     const ShowSecurity* security = nullptr);

}  // namespace Tool
