// SPDX-License-Identifier: BSD-3-Clause
#include "CommandLine.h"
#include "ExitCode.h"
#include "Interrupt.h"
#include "LogView.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>

namespace {

int run(int argc, char** argv) {
  LogView log;
  Ferro::SetDefaultLogSink(&log);
  Interrupt::Install();

  CLI::App app;
  int exit_code = Fine;
  bool verbose = false;
  DescribeCommandLine(app, verbose, exit_code);
  app.parse_complete_callback([&] { log.ShowAll(verbose); });

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
