// SPDX-License-Identifier: BSD-3-Clause
// strata_manual PROSE PAGE COMPLETION: writes the manual page and the bash completion of the strata command. Part of the
// build; not installed.
#include "CommandLine.h"
#include "Manual.h"

#include <Ferro/FileText.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
  if (argc != 4) return 1;
  bool is_verbose = false;
  const Tool::Command program = Tool::DescribeProgram(is_verbose);
  std::string prose;
  auto result = Ferro::ReadFileIntoString(argv[1], prose);
  if (result.Success()) result = Ferro::WriteStringIntoFile(argv[2], Tool::ManualPage(program, prose));
  if (result.Success()) result = Ferro::WriteStringIntoFile(argv[3], Tool::BashCompletion(program));
  if (result.Failure()) std::fprintf(stderr, "strata_manual: %s\n", result.Label());
  return result.Success() ? 0 : 1;
}
