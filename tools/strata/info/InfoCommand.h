// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// strata info: what files and folders are.
void AddInfoCommand(Command& program);

}  // namespace Tool
