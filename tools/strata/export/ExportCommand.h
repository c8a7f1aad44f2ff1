// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata export`: a show's timeline as documents and lists.
void AddExportCommand(Command& program);

}  // namespace Tool
