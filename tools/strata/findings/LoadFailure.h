// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "show/Inputs.h"

namespace Tool {

/// Prints on standard error what keeps a show, which the engine refused to load, from playing.
/// @return AssetsMissing where that is all that is wrong with it, else NotPlayable.
[[nodiscard]] ExitCode ReportLoadFailure(const Inputs& inputs);

}  // namespace Tool
