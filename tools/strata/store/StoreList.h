// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "StoreSession.h"

namespace Tool {

/// `strata store list`: the folders and assets of an index.
[[nodiscard]] ExitCode ListStore(const StoreOptions& options);

}  // namespace Tool
