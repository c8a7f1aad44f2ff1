// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/ExitCode.h"
#include "terminal/Report.h"

namespace CLI {
class App;
}

/// `strata play`: plays a show, frame by frame.
void AddPlayCommand(CLI::App& app, int& exit_code);

/// What a summary of play comes to: Interrupted, NotPlayable where frames differ from their files, else Fine.
[[nodiscard]] ExitCode PlayExitCode(const Json& summary);
