// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace CLI {
class App;
}

/// Adds `strata wrap`.
void AddWrapCommand(CLI::App& app, int& exit_code);
