// SPDX-License-Identifier: BSD-3-Clause
#include "ArgumentParser.h"
#include "CommandLine.h"
#include "LastCatch.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"
#include "terminal/Messages.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Tool {

namespace {

ExitCode Run(int argc, char** argv) {
  LogView log;
  Ferro::SetDefaultLogSink(&log);
  Interrupt::Install();

  bool is_verbose = false;
  const Command program = DescribeProgram(is_verbose);
  ExitCode code = ExitCode::Fine;
  const Command* const command = ParseArguments(program, argc, argv, code);
  log.ShowAll(is_verbose);
  return command == nullptr ? code : command->Run();
}

/// `code`, or NotPlayable where what was printed has not arrived, as on a full disk.
ExitCode FinishPrinting(ExitCode code) {
  const bool was_written = std::ferror(stdout) == 0;
  if (std::fflush(stdout) == 0 && was_written) return code;
  TellError(std::string("standard output cannot be written: ") + std::strerror(errno));
  return code == ExitCode::Fine ? ExitCode::NotPlayable : code;
}

}  // namespace

}  // namespace Tool

int main(int argc, char** argv) {
  return static_cast<int>(Tool::LastCatch([&] { return Tool::FinishPrinting(Tool::Run(argc, argv)); }));
}
