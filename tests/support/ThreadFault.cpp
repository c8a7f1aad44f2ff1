// SPDX-License-Identifier: BSD-3-Clause
#include "ThreadFault.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <new>

#include <dlfcn.h>
#include <pthread.h>

namespace {

std::atomic<bool> s_NoThreads = false;
thread_local bool s_NoMemory = false;
thread_local unsigned s_PiecesLeft = 0;
thread_local bool s_WasMissed = false;

void* Allocate(std::size_t size) {
  if (s_NoMemory && s_PiecesLeft == 0) {
    s_WasMissed = true;
    return nullptr;
  }
  if (s_NoMemory) --s_PiecesLeft;
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* data) {
  if (s_NoThreads) return EAGAIN;
  using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  return reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"))(thread, attributes, body, data);
}

void* operator new(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace testsupport {

NoThreads::NoThreads() {
  s_NoThreads = true;
}
NoThreads::~NoThreads() {
  s_NoThreads = false;
}

NoMemory::NoMemory(unsigned pieces) {
  s_PiecesLeft = pieces;
  s_WasMissed = false;
  s_NoMemory = true;
}
NoMemory::~NoMemory() {
  s_NoMemory = false;
}

bool NoMemory::WasMissed() {
  return s_WasMissed;
}

}  // namespace testsupport
