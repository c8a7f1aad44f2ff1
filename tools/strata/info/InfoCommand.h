// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace CLI {
class App;
}

/// strata info: what files and folders are.
void AddInfoCommand(CLI::App& app, int& exit_code);
