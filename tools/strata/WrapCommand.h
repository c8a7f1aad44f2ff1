// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// Adds `strata wrap`.
void AddWrapCommand(CLI::App& app, int& exit_code);
