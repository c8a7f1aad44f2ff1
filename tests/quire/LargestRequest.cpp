// SPDX-License-Identifier: BSD-3-Clause
// Apart from the tests: where the compiler sees both, it takes the pair of replaced operators for a mismatch.
#include "LargestRequest.h"

#include <cstdlib>
#include <new>

thread_local std::size_t LargestRequest = 0;

void* operator new(std::size_t size) {
  LargestRequest = size > LargestRequest ? size : LargestRequest;
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  LargestRequest = size > LargestRequest ? size : LargestRequest;
  return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return operator new(size, nothrow);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
