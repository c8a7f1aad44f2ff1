// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "StoreSession.h"

namespace Tool {

/// `strata store add`: takes folders, and single files, into the index.
[[nodiscard]] ExitCode StoreAdd(const StoreOptions& options);

/// `strata store forget`: takes folders and single files out of the index. The files themselves stay.
[[nodiscard]] ExitCode StoreForget(const StoreOptions& options);

}  // namespace Tool
