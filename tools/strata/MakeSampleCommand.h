// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// Adds `strata make-sample`.
void AddMakeSampleCommand(CLI::App& app, int& exit_code);
