// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

#include <string>

// What is installed beside the program to explain and complete its command line, made from the command line itself.

/// The manual page: `prose` with the line "@COMMANDS@" replaced by a section for each command, and "@VERSION@" by the
/// version.
[[nodiscard]] std::string ManualPage(const CLI::App& app, const std::string& prose);

/// A completion script for bash: commands, options, and the values of options that have a choice; else file names.
[[nodiscard]] std::string BashCompletion(const CLI::App& app);
