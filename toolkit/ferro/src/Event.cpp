// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/Event.h>
#include <Ferro/Mutex.h>

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <ctime>
#include <utility>

// Count and sleepers share one word, so that a post learns in the one step that publishes it whether somebody has to be
// woken, and enters the kernel only then. After that step it touches the event no more: whoever it released may destroy
// it. (What is left is the wake-up call by address, which does not look at what is there.) A mutex and a condition
// would do as well, but a frame passes three events, each on lines that the frame's bytes have just driven from the
// cache, and the thread that is woken runs into the mutex of the one that wakes it.
namespace Ferro {
namespace {

constexpr ui64_t s_OneSleeper = ui64_t{1} << 32;

// Beyond this the sum of now and the limit could leave the clock's range.
constexpr std::chrono::hours s_LongestLimit{24 * 365 * 100};

ui32_t Count(ui64_t state) {
  return static_cast<ui32_t>(state);
}
bool HasSleepers(ui64_t state) {
  return state >= s_OneSleeper;
}

// The half of the word that the kernel compares.
ui32_t* CountAddress(std::atomic<ui64_t>& state) {
  static_assert(sizeof state == sizeof(ui64_t) && std::atomic<ui64_t>::is_always_lock_free);
  return reinterpret_cast<ui32_t*>(&state) + (std::endian::native == std::endian::big ? 1 : 0);
}

// Sleeps while the count is 0, until a wake-up, a signal or the end of `limit`; the caller looks again in any case.
void SleepAtZero(std::atomic<ui64_t>& state, const timespec* limit) {
  static_cast<void>(syscall(SYS_futex, CountAddress(state), FUTEX_WAIT_PRIVATE, 0, limit, nullptr, 0));
}

void WakeOne(std::atomic<ui64_t>& state) {
  static_cast<void>(syscall(SYS_futex, CountAddress(state), FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0));
}

timespec ToTimespec(std::chrono::nanoseconds time) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  return {static_cast<time_t>(seconds.count()), static_cast<long>((time - seconds).count())};
}

}  // namespace

Event::Event(std::string name, ui32_t ceiling) : m_Name(std::move(name)), m_Ceiling(ceiling) {
  FERRO_ASSERT(ceiling >= 1);
}

void Event::Post() {
  const ui32_t ceiling = m_Ceiling;
  ui64_t state = m_State.load(std::memory_order_relaxed);
  // A post that is lost is stored too: what its thread wrote before is to be seen by who consumes the one that is there.
  while (!m_State.compare_exchange_weak(state, Count(state) == ceiling ? state : state + 1, std::memory_order_acq_rel,
                                        std::memory_order_relaxed)) {
  }
  if (HasSleepers(state) && Count(state) < ceiling) WakeOne(m_State);
}

bool Event::PendUntil(const std::chrono::steady_clock::time_point* deadline) {
  ui64_t state = m_State.load(std::memory_order_relaxed);
  while (true) {
    while (Count(state) > 0) {
      if (m_State.compare_exchange_weak(state, state - 1, std::memory_order_acquire, std::memory_order_relaxed)) {
        return true;
      }
    }
    timespec rest{};
    if (deadline != nullptr) {
      const auto now = std::chrono::steady_clock::now();
      if (now >= *deadline) return false;
      rest = ToTimespec(*deadline - now);
    }
    // A post after this sees the sleeper and wakes it, or changes the count before it sleeps.
    m_State.fetch_add(s_OneSleeper, std::memory_order_relaxed);
    SleepAtZero(m_State, deadline != nullptr ? &rest : nullptr);
    state = m_State.fetch_sub(s_OneSleeper, std::memory_order_relaxed) - s_OneSleeper;
  }
}

void Event::Pend() {
  static_cast<void>(PendUntil(nullptr));
}

bool Event::Pend(std::chrono::milliseconds limit) {
  if (limit > s_LongestLimit) {
    Pend();
    return true;
  }
  // The longest negative limit overflows in nanoseconds.
  const auto deadline = std::chrono::steady_clock::now() + std::max(limit, std::chrono::milliseconds(0));
  return PendUntil(&deadline);
}

void Mutex::Lock() {
  FERRO_ASSERT(pthread_mutex_lock(&m_Mutex) == 0);
}

void Mutex::Unlock() {
  FERRO_ASSERT(pthread_mutex_unlock(&m_Mutex) == 0);
}

}  // namespace Ferro
