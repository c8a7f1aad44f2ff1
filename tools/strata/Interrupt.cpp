// SPDX-License-Identifier: BSD-3-Clause
#include "Interrupt.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t s_Requested = 0;

extern "C" void handle_signal(int) {
  s_Requested = 1;
}

}  // namespace

void Interrupt::Install() {
  struct sigaction action = {};
  action.sa_handler = handle_signal;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

bool Interrupt::Requested() {
  return s_Requested != 0;
}
