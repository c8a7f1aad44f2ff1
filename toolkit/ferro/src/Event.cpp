// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/Event.h>

#include <algorithm>
#include <utility>

namespace Ferro {
namespace {

// Beyond this the sum of now and the limit could leave the clock's range.
constexpr std::chrono::hours s_LongestLimit{24 * 365 * 100};

}  // namespace

Event::Event(std::string name, ui32_t ceiling) : m_Name(std::move(name)), m_Ceiling(ceiling) {
  FERRO_ASSERT(ceiling >= 1);
}

void Event::Post() {
  const std::lock_guard lock(m_Mutex);
  if (m_Count == m_Ceiling) return;
  ++m_Count;
  // Notified under the lock: the thread that this wakes may destroy the event as soon as it gets the lock.
  m_Posted.notify_one();
}

void Event::Pend() {
  std::unique_lock lock(m_Mutex);
  m_Posted.wait(lock, [this] { return m_Count > 0; });
  --m_Count;
}

bool Event::Pend(std::chrono::milliseconds limit) {
  if (limit > s_LongestLimit) {
    Pend();
    return true;
  }
  std::unique_lock lock(m_Mutex);
  const auto wait =
      std::max(limit, std::chrono::milliseconds(0));  // the longest negative limit overflows in nanoseconds
  if (!m_Posted.wait_for(lock, wait, [this] { return m_Count > 0; })) return false;
  --m_Count;
  return true;
}

}  // namespace Ferro
