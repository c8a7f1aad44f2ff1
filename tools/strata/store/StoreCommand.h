// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

class Command;

/// `strata store`: keeps an index of the folders that hold assets.
void AddStoreCommand(Command& program);

}  // namespace Tool
