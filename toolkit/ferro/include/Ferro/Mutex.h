// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>

#include <pthread.h>

namespace Ferro {

/// A mutual-exclusion lock, not recursive. The thread that locked it unlocks it.
class FERRO_API Mutex {
 public:
  Mutex() noexcept = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void Lock();
  void Unlock();

 private:
  // Not std::mutex: its header is fifty times as long, and nearly every source sees this one.
  pthread_mutex_t m_Mutex = PTHREAD_MUTEX_INITIALIZER;
};

/// Holds a Mutex for the length of a scope.
class [[nodiscard]] AutoMutex {
 public:
  explicit AutoMutex(Mutex& mutex) : m_Mutex(mutex) { m_Mutex.Lock(); }
  ~AutoMutex() { m_Mutex.Unlock(); }
  AutoMutex(const AutoMutex&) = delete;
  AutoMutex& operator=(const AutoMutex&) = delete;

 private:
  Mutex& m_Mutex;
};

}  // namespace Ferro
