// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/CommandType.h>
#include <Strata/TaskType.h>

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

const char* StringTaskType(TaskType_t type) {
  switch (type) {
    case TT_INIT:
      return "Initializing";
    case TT_INGEST:
      return "Ingest";
    case TT_TEST:
      return "Test";
    case TT_REGISTER:
      return "Register";
    case TT_DELETE:
      return "Delete";
  }
  return "*UNKNOWN*";
}

}  // namespace Strata

namespace Cairn {

const char* StringTaskState(TaskState_t state) {
  switch (state) {
    case TS_NEW:
      return "New";
    case TS_READY:
      return "Ready to run";
    case TS_RUNNING:
      return "Running";
    case TS_HALTED:
      return "Halted, will re-run";
    case TS_FAILURE:
      return "Finished: failed";
    case TS_SUCCESS:
      return "Finished: success";
  }
  return "*UNKNOWN*";
}

}  // namespace Cairn
