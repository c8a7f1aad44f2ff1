// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

#include <vector>

/// Gives `app` the program's name, description, options and all of its commands. A command that ran leaves its exit code
/// in `exit_code`. The help, the manual page and the completion are made from the same tree.
void DescribeCommandLine(CLI::App& app, bool& is_verbose, int& exit_code);

/// The subcommands of a command, in order.
[[nodiscard]] std::vector<const CLI::App*> SubcommandsOf(const CLI::App& command);
