// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/ExitCode.h"
#include "terminal/Report.h"

namespace Tool {

class Command;

/// `strata play`: plays a show, frame by frame.
void AddPlayCommand(Command& program);

/// What a summary of play comes to: Interrupted, NotPlayable where frames differ from their files, else Fine.
[[nodiscard]] ExitCode PlayExitCode(const Json& summary);

}  // namespace Tool
