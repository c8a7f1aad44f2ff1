// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// Adds `strata frame`.
void AddFrameCommand(CLI::App& app, int& exit_code);
