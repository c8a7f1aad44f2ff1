// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

/// What the program's exit code says. Documented in the manual page; scripts depend on it.
enum class ExitCode : int {
  Fine = 0,           ///< all is well
  Usage = 1,          ///< the command line, or what it names, cannot be understood
  NotPlayable = 2,    ///< the show, or some file, is broken
  AssetsMissing = 3,  ///< the show refers to assets that no store has
  Interrupted = 4,    ///< stopped by a signal
};

}  // namespace Tool
