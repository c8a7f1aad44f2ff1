// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace CLI {
class App;
}

/// `strata check`: will this show play?
void AddCheckCommand(CLI::App& app, int& exit_code);
