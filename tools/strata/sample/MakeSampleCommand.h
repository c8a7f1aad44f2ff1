// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// Adds `strata make-sample`.
void AddMakeSampleCommand(Command& program);

}  // namespace Tool
