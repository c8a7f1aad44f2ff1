// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <utility>

namespace Ferro {

/// A single-owner pointer: deletes what it holds when it is destroyed or given something else. Moves, never copies.
template <class T>
class mem_ptr {
 public:
  mem_ptr() = default;
  explicit mem_ptr(T* object) noexcept : m_p(object) {}
  mem_ptr(const mem_ptr&) = delete;
  mem_ptr& operator=(const mem_ptr&) = delete;
  mem_ptr(mem_ptr&& other) noexcept : m_p(other.release()) {}
  mem_ptr& operator=(mem_ptr&& other) noexcept {
    if (this != &other) set(other.release());
    return *this;
  }
  ~mem_ptr() { delete m_p; }

  [[nodiscard]] T& operator*() const noexcept { return *m_p; }
  [[nodiscard]] T* operator->() const noexcept { return m_p; }
  [[nodiscard]] T* get() const noexcept { return m_p; }
  [[nodiscard]] bool empty() const noexcept { return m_p == nullptr; }
  explicit operator bool() const noexcept { return m_p != nullptr; }

  /// Deletes what is held and takes `object`, which may be null. Taking what is held already changes nothing.
  void set(T* object) noexcept {
    if (object != m_p) delete std::exchange(m_p, object);
  }
  /// Gives up ownership; the pointer is then empty.
  [[nodiscard]] T* release() noexcept { return std::exchange(m_p, nullptr); }

 private:
  T* m_p = nullptr;
};

}  // namespace Ferro
