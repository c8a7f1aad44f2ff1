// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata kdm check`: whether key messages serve.
void AddKdmCheck(Command& kdm);

}  // namespace Tool
