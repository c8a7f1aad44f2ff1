// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/Command.h"

namespace Tool {

/// The program with its options and all of its commands. Help, manual page and completion are made from it.
/// @param is_verbose  receives whether the user wants every message; outlives what is returned.
[[nodiscard]] Command DescribeProgram(bool& is_verbose);

}  // namespace Tool
