// SPDX-License-Identifier: BSD-3-Clause
#include "Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace Assay {
namespace {

class Crew {
 public:
  Crew(size_t count, const std::function<void(size_t)>& work) : m_Count(count), m_Work(work) {}

  void Run(const std::function<bool()>& go_on) {
    try {
      for (;;) {
        if (go_on && !go_on()) m_IsEnded = true;
        const size_t number = m_IsEnded ? m_Count : m_Next++;
        if (number >= m_Count) return;
        m_Work(number);
        ++m_Done;
      }
    } catch (...) {
      const std::scoped_lock lock(m_Lock);
      m_Failure = std::current_exception();
      m_IsEnded = true;
    }
  }

  [[nodiscard]] bool IsDone() const {
    if (m_Failure) std::rethrow_exception(m_Failure);
    return m_Done == m_Count;
  }

 private:
  const size_t m_Count;
  const std::function<void(size_t)>& m_Work;
  std::atomic<size_t> m_Next{0}, m_Done{0};
  std::atomic<bool> m_IsEnded{false};
  std::mutex m_Lock;
  std::exception_ptr m_Failure;  // guarded by m_Lock while threads run
};

}  // namespace

bool ForEachInParallel(size_t count, unsigned threads, const std::function<void(size_t)>& work,
                       const std::function<bool()>& go_on) {
  Crew crew(count, work);
  {
    std::vector<std::jthread> others;
    const size_t wanted = std::min<size_t>(threads, count);
    others.reserve(wanted);
    try {
      while (others.size() + 1 < wanted) others.emplace_back([&crew] { crew.Run({}); });
    } catch (const std::system_error&) {  // where the system gives no more threads, fewer do it
    }
    crew.Run(go_on);
  }
  return crew.IsDone();
}

}  // namespace Assay
