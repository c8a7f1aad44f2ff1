// SPDX-License-Identifier: BSD-3-Clause
#include "Interrupt.h"

#include <csignal>
#include <initializer_list>

namespace Tool {

namespace {

constexpr int Patience = 2;  // signals that only ask

volatile std::sig_atomic_t s_Count = 0;

// A system call that waits is interrupted by each signal.
extern "C" void handle_signal(int number) {
  s_Count = s_Count + 1;
  if (s_Count >= Patience) std::signal(number, SIG_DFL);
}

}  // namespace

void Interrupt::Install() {
  struct sigaction action = {};
  action.sa_handler = handle_signal;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  for (const int number : {SIGHUP, SIGQUIT}) {
    struct sigaction before = {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);  // under nohup the work goes on
  }
}

bool Interrupt::Requested() {
  return s_Count != 0;
}

}  // namespace Tool
