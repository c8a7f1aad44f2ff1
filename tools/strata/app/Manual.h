// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/Command.h"

#include <string>

namespace Tool {

// What is installed beside the program to explain and complete its command line, made from the command line itself.

/// The manual page: `prose` with the line "@COMMANDS@" replaced by a section for each command, and "@VERSION@" by the
/// version.
[[nodiscard]] std::string ManualPage(const Command& program, const std::string& prose);

/// A completion script for bash: commands, options, and the values of options that have a choice; else file names.
[[nodiscard]] std::string BashCompletion(const Command& program);

}  // namespace Tool
