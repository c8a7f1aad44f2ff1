// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata timeline`: what plays when, drawn to scale.
void AddTimelineCommand(Command& program);

}  // namespace Tool
