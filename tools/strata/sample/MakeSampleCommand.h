// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace CLI {
class App;
}

/// Adds `strata make-sample`.
void AddMakeSampleCommand(CLI::App& app, int& exit_code);
