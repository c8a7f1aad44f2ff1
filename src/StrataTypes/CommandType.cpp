// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/CommandType.h>

namespace Strata {

const char* StringCommandType(CommandType_t type) {
  switch (type) {
    case CMD_NONE:
      return "NONE";  // the only one in capitals: operators' tools look for it
    case CMD_PLAY:
      return "Play";
    case CMD_LOCATE:
      return "Locate";
    case CMD_SHUTTLE:
      return "Shuttle";
    case CMD_JOG:
      return "Jog";
    case CMD_PAUSE:
      return "Pause";
    case CMD_STOP:
      return "Stop";
  }
  return "*UNKNOWN*";
}

}  // namespace Strata
