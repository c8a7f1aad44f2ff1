// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// Adds `strata wrap`.
void AddWrapCommand(Command& program);

}  // namespace Tool
