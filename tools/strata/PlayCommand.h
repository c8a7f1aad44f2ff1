// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// `strata play`: plays a show, frame by frame.
void AddPlayCommand(CLI::App& app, int& exit_code);
