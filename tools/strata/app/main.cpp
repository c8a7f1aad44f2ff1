// SPDX-License-Identifier: BSD-3-Clause
#include "CommandLine.h"
#include "terminal/ExitCode.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>

namespace {

/// The first option with nothing after its "=", whose value would be taken from the next argument; null: there is none.
const char* option_without_value(int argc, char** argv) {
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    const char* const sign = std::strchr(argv[i], '=');
    if (std::strncmp(argv[i], "--", 2) == 0 && sign != nullptr && sign[1] == '\0') return argv[i];
  }
  return nullptr;
}

int run(int argc, char** argv) {
  LogView log;
  Ferro::SetDefaultLogSink(&log);
  Interrupt::Install();

  CLI::App app;
  int exit_code = Fine;
  bool verbose = false;
  DescribeCommandLine(app, verbose, exit_code);
  app.parse_complete_callback([&] { log.ShowAll(verbose); });

  if (const char* option = option_without_value(argc, argv)) {
    std::fprintf(stderr, "strata: %s: there is no value behind the sign\n", option);
    return Usage;
  }
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
