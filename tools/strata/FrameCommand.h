// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// strata frame: takes one edit unit out of a show or a track file. `exit_code` must outlive `app`.
void AddFrameCommand(CLI::App& app, int& exit_code);
