// SPDX-License-Identifier: BSD-3-Clause
#include "LastCatch.h"

#include <cstdio>
#include <exception>

namespace Tool {

// Plain output: memory may be what is lacking.
ExitCode LastCatch(const std::function<ExitCode()>& work) noexcept {
  try {
    return work();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "strata: %s\n", error.what());
  } catch (...) {
    std::fputs("strata: an unknown error ended the program\n", stderr);
  }
  return ExitCode::NotPlayable;
}

}  // namespace Tool
