// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "StoreSession.h"

namespace Tool {

/// `strata store verify`: are the files there, with the sizes listed, and with the digests listed?
[[nodiscard]] ExitCode VerifyStore(const StoreOptions& options);

}  // namespace Tool
