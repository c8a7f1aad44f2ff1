// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata check`: will this show play?
void AddCheckCommand(Command& program);

}  // namespace Tool
