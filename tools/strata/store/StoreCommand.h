// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace CLI {
class App;
}

/// `strata store`: keeps an index of the folders that hold assets.
void AddStoreCommand(CLI::App& app, int& exit_code);
