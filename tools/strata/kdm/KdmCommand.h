// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata kdm`: key messages, listed, checked and made.
void AddKdmCommand(Command& program);

}  // namespace Tool
