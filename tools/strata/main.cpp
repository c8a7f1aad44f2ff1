// SPDX-License-Identifier: BSD-3-Clause
#include "CheckCommand.h"
#include "ExitCode.h"
#include "ExportCommand.h"
#include "FrameCommand.h"
#include "InfoCommand.h"
#include "Interrupt.h"
#include "LogView.h"
#include "MakeSampleCommand.h"
#include "PlayCommand.h"
#include "StoreCommand.h"
#include "TimelineCommand.h"
#include "WrapCommand.h"

#include <Strata/Version.h>

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>

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

int run(int argc, char** argv) {
  LogView log;
  Ferro::SetDefaultLogSink(&log);
  Interrupt::Install();

  CLI::App app{"Checks, plays and explains digital-cinema shows.", "strata"};
  app.set_version_flag("--version", std::string("strata ") + Strata::Version());
  app.require_subcommand(1);
  bool verbose = false;
  app.add_flag("-v,--verbose", verbose, "Show every message of the libraries, not only warnings and errors");
  app.parse_complete_callback([&] { log.ShowAll(verbose); });
  int exit_code = Fine;
  for (const AddCommand add : Commands) add(app, exit_code);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? Fine : Usage;
  }
  return exit_code;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "strata: %s\n", error.what());
    return NotPlayable;
  }
}
