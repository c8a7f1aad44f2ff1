// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// `strata store`: keeps an index of the folders that hold assets.
void AddStoreCommand(CLI::App& app, int& exit_code);
