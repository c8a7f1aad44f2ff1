// SPDX-License-Identifier: BSD-3-Clause
#include "terminal/ExitCode.h"
#include "terminal/Interrupt.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace {

void SayThatItEnds() {
  static_cast<void>(!write(STDERR_FILENO, "tidied up", 9));
}

/// Waits for what never comes, whatever signals come.
[[noreturn]] void WaitForEver() {
  for (;;) pause();
}

TEST(InterruptEndDeathTest, ProgramThatHearsNothingOfASignalEndsAllTheSame) {
  EXPECT_EXIT(
      {
        Tool::Interrupt::Install();
        Tool::Interrupt::EndAfter(1, &SayThatItEnds);
        std::raise(SIGTERM);
        WaitForEver();
      },
      testing::ExitedWithCode(static_cast<int>(Tool::ExitCode::Interrupted)), "tidied up");
}

}  // namespace
