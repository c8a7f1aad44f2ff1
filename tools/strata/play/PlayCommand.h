// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata play`: plays a show, frame by frame.
void AddPlayCommand(Command& program);

}  // namespace Tool
