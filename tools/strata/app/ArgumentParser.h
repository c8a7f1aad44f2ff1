// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/Command.h"

namespace Tool {

/// Reads the program's arguments as `program` describes them, and puts values where the options want them. Help, the
/// version and what is wrong with the arguments are printed.
/// @param code  receives the exit code where there is nothing to run.
/// @return the command to run; null where there is none.
[[nodiscard]] const Command* ParseArguments(const Command& program, int argc, char** argv, ExitCode& code);

}  // namespace Tool
