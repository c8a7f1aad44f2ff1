// SPDX-License-Identifier: BSD-3-Clause
#include "CommandLine.h"

#include "check/CheckCommand.h"
#include "export/ExportCommand.h"
#include "frame/FrameCommand.h"
#include "info/InfoCommand.h"
#include "kdm/KdmCommand.h"
#include "play/PlayCommand.h"
#include "sample/MakeSampleCommand.h"
#include "store/StoreCommand.h"
#include "timeline/TimelineCommand.h"
#include "wrap/WrapCommand.h"

namespace Tool {

namespace {

using AddCommand = void (*)(Command&);

// Every subcommand, in the order in which --help shows them.
constexpr AddCommand Commands[] = {
    AddCheckCommand,       //
    AddPlayCommand,        //
    AddInfoCommand,        //
    AddTimelineCommand,    //
    AddFrameCommand,       //
    AddWrapCommand,        //
    AddExportCommand,      //
    AddStoreCommand,       //
    AddKdmCommand,         //
    AddMakeSampleCommand,  //
};

}  // namespace

Command DescribeProgram(bool& is_verbose) {
  Command program("strata", "Checks, plays and explains digital-cinema shows.");
  program.Add("-v,--verbose", is_verbose, "Show every message of the libraries, not only warnings and errors");
  for (const AddCommand add : Commands) add(program);
  program.SetFooter(
      "`strata COMMAND --help` explains a command; `man strata` has it all.\n"
      "Examples:\n"
      "  strata check show\n"
      "  strata play show --speed max");
  return program;
}

}  // namespace Tool
