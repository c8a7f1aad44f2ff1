// SPDX-License-Identifier: BSD-3-Clause
#include "KdmCommand.h"

#include "KdmCheck.h"
#include "KdmList.h"
#include "KdmMake.h"
#include "terminal/Command.h"

namespace Tool {

void AddKdmCommand(Command& program) {
  Command& command = program.AddCommand("kdm", "List, check and make key messages, which open encrypted compositions");
  AddKdmList(command);
  AddKdmCheck(command);
  AddKdmMake(command);
  command.SetFooter(
      "`strata kdm COMMAND --help` explains a command.\n"
      "Examples:\n"
      "  strata kdm list kdm.xml");
}

}  // namespace Tool
