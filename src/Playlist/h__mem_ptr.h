// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <utility>

namespace Strata {

/// An owning pointer whose copy hands ownership over: the destination deletes what it held and takes the source's
/// object, the source ends empty. That is what lets a reel be copied into and moved within the timeline without its
/// tracks, each with a thread and buffers, ever being duplicated. Sources are therefore taken by reference to const and
/// emptied all the same; nothing outside the timeline should use this type.
template <class T>
class h__mem_ptr {
 public:
  h__mem_ptr() = default;
  explicit h__mem_ptr(T* object) noexcept : m_p(object) {}
  h__mem_ptr(const h__mem_ptr& source) noexcept : m_p(std::exchange(source.m_p, nullptr)) {}
  h__mem_ptr& operator=(const h__mem_ptr& source) noexcept {
    if (this != &source) set(std::exchange(source.m_p, nullptr));
    return *this;
  }
  ~h__mem_ptr() { delete m_p; }

  [[nodiscard]] T& operator*() const noexcept { return *m_p; }
  [[nodiscard]] T* operator->() const noexcept { return m_p; }
  [[nodiscard]] T* get() const noexcept { return m_p; }
  [[nodiscard]] bool empty() const noexcept { return m_p == nullptr; }

  /// Deletes what is held and takes `object`, which may be null.
  void set(T* object) noexcept {
    if (object != m_p) delete std::exchange(m_p, object);
  }

 private:
  mutable T* m_p = nullptr;
};

}  // namespace Strata
