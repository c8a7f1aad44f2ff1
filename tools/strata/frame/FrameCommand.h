// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// Adds `strata frame`.
void AddFrameCommand(Command& program);

}  // namespace Tool
