// SPDX-License-Identifier: BSD-3-Clause
#include "CommandLine.h"

#include "HelpFormat.h"
#include "check/CheckCommand.h"
#include "export/ExportCommand.h"
#include "frame/FrameCommand.h"
#include "info/InfoCommand.h"
#include "play/PlayCommand.h"
#include "sample/MakeSampleCommand.h"
#include "store/StoreCommand.h"
#include "timeline/TimelineCommand.h"
#include "wrap/WrapCommand.h"

#include <Strata/Version.h>

#include <memory>
#include <string>

namespace {

using AddCommand = void (*)(CLI::App&, int& exit_code);

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
    AddMakeSampleCommand,  //
};

}  // namespace

void DescribeCommandLine(CLI::App& app, bool& is_verbose, int& exit_code) {
  app.name("strata");
  app.description("Checks, plays and explains digital-cinema shows.");
  app.formatter(std::make_shared<HelpFormat>());
  app.set_version_flag("--version", std::string("strata ") + Strata::Version());
  app.add_flag("-v,--verbose", is_verbose, "Show every message of the libraries, not only warnings and errors");
  app.require_subcommand(1);
  for (const AddCommand add : Commands) add(app, exit_code);
  app.footer(
      "`strata COMMAND --help` explains a command; `man strata` has it all.\n"
      "Examples:\n"
      "  strata check show\n"
      "  strata play show --speed max");
}

std::vector<const CLI::App*> SubcommandsOf(const CLI::App& command) {
  return command.get_subcommands([](const CLI::App*) { return true; });
}
