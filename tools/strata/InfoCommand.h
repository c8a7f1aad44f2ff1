// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// strata info: what files and folders are.
void AddInfoCommand(CLI::App& app, int& exit_code);
