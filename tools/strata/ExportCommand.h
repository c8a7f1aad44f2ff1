// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

/// `strata export`: a show's timeline as documents and lists.
void AddExportCommand(CLI::App& app, int& exit_code);
