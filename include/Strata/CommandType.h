// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

namespace Strata {

/// What the transport is asked to do, or last did. The values travel in protocol records and never change.
enum CommandType_t : ui32_t {
  CMD_NONE = 0,     ///< nothing
  CMD_PLAY = 1,     ///< play at normal rate, in a direction
  CMD_LOCATE = 2,   ///< go to an edit unit
  CMD_SHUTTLE = 3,  ///< play at a multiple of the normal rate
  CMD_JOG = 4,      ///< go one edit unit in a direction
  CMD_PAUSE = 5,    ///< hold the current edit unit
  CMD_STOP = 6      ///< end playback
};

/// Which way the transport moves.
enum Direction_t : ui32_t { DIR_FORWARD = 0, DIR_REVERSE = 1 };

/// The command's name for display, "NONE" for CMD_NONE and "*UNKNOWN*" for a value that is no command. The text is
/// constant and never freed.
[[nodiscard]] STRATA_API const char* StringCommandType(CommandType_t type);

}  // namespace Strata
