// SPDX-License-Identifier: BSD-3-Clause
// Apart from the tests: where the compiler sees both, it takes the pair of replaced operators for a mismatch.
#include "AllocationCount.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

thread_local std::size_t Allocations = 0;
thread_local std::size_t HeldBytes = 0;
thread_local std::size_t PeakBytes = 0;
thread_local std::size_t FailingRequest = 0;
thread_local bool HasRunOut = false;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (FailingRequest == 1) {
    HasRunOut = true;
    return nullptr;
  }
  if (FailingRequest > 1) --FailingRequest;
  void* memory = std::malloc(size == 0 ? 1 : size);
  ++Allocations;
  HeldBytes += malloc_usable_size(memory);
  PeakBytes = std::max(PeakBytes, HeldBytes);
  return memory;
}
void* operator new(std::size_t size) {
  void* memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return operator new(size, nothrow);
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void operator delete(void* memory) noexcept {
  HeldBytes -= malloc_usable_size(memory);
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}
void operator delete[](void* memory) noexcept {
  operator delete(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  operator delete(memory);
}
