// SPDX-License-Identifier: BSD-3-Clause
#include "Interrupt.h"

#include "ExitCode.h"

#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace Tool {

namespace {

constexpr int GracefulSignals = 2;  // signals that only ask

volatile std::sig_atomic_t s_Count = 0;
// Set before any signal that they matter for.
unsigned s_Seconds = 0;
void (*s_TidyUp)() = nullptr;

// A system call that waits is interrupted by each signal.
extern "C" void HandleSignal(int number) {
  s_Count = s_Count + 1;
  if (s_Count == 1 && s_Seconds > 0) alarm(s_Seconds);
  if (s_Count >= GracefulSignals) std::signal(number, SIG_DFL);
}

extern "C" void EndNow(int) {
  if (s_TidyUp != nullptr) s_TidyUp();
  _exit(static_cast<int>(ExitCode::Interrupted));
}

}  // namespace

void Interrupt::Install() {
  struct sigaction action = {};
  action.sa_handler = HandleSignal;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  for (const int number : {SIGHUP, SIGQUIT}) {
    struct sigaction before = {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);  // under nohup the work goes on
  }
}

void Interrupt::EndAfter(unsigned seconds, void (*tidy_up)()) {
  s_Seconds = seconds;
  s_TidyUp = tidy_up;
  struct sigaction action = {};
  action.sa_handler = EndNow;
  sigaction(SIGALRM, &action, nullptr);
}

bool Interrupt::Requested() {
  return s_Count != 0;
}

}  // namespace Tool
