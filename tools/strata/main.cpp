// SPDX-License-Identifier: BSD-3-Clause
#include "CommandLine.h"
#include "ExitCode.h"
#include "Interrupt.h"
#include "LogView.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
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

/// `exit_code`, or NotPlayable where what was printed has not arrived, as on a full disk.
int finish_printing(int exit_code) {
  const bool was_written = std::ferror(stdout) == 0;
  if (std::fflush(stdout) == 0 && was_written) return exit_code;
  std::fprintf(stderr, "strata: standard output cannot be written: %s\n", std::strerror(errno));
  return exit_code == Fine ? NotPlayable : exit_code;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return finish_printing(run(argc, argv));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "strata: %s\n", error.what());
    return NotPlayable;
  }
}
