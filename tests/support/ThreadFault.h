// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace testsupport {

/// While one exists, the system starts no thread. ThreadFault.cpp takes the place of the system's functions, for which a
/// test needs a program of its own.
class NoThreads {
 public:
  NoThreads();
  ~NoThreads();
  NoThreads(const NoThreads&) = delete;
  NoThreads& operator=(const NoThreads&) = delete;
};

/// While one exists, the calling thread has no memory to allocate, but for the first few pieces.
class NoMemory {
 public:
  explicit NoMemory(unsigned pieces = 0);
  ~NoMemory();
  NoMemory(const NoMemory&) = delete;
  NoMemory& operator=(const NoMemory&) = delete;

  /// Whether an allocation was refused.
  [[nodiscard]] static bool WasMissed();
};

}  // namespace testsupport
