// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata kdm make`: a key message for a recipient.
void AddKdmMake(Command& kdm);

}  // namespace Tool
