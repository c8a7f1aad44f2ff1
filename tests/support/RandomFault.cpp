// SPDX-License-Identifier: BSD-3-Clause
#include "RandomFault.h"

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace {
std::atomic<bool> s_Fails = false;
}

// Stands before the system's for the libraries too.
extern "C" __attribute__((visibility("default"))) ssize_t getrandom(void* buffer, size_t length, unsigned flags) {
  if (!s_Fails) return syscall(SYS_getrandom, buffer, length, flags);
  errno = ENOSYS;
  return -1;
}

namespace testsupport {

NoRandomBytes::NoRandomBytes() {
  s_Fails = true;
}
NoRandomBytes::~NoRandomBytes() {
  s_Fails = false;
}

}  // namespace testsupport
