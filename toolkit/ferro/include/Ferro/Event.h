// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Types.h>

#include <atomic>
#include <chrono>
#include <limits>
#include <string>

namespace Ferro {

/// A counted event between threads: each post releases one pend, the one waiting or the next to come.
///
/// Posts that nobody pends on are counted up to the ceiling; further ones are lost. A ceiling of 1 makes a yes-or-no
/// event. Any thread may call any operation; destruction only when no thread can be inside one.
class FERRO_API Event {
 public:
  static constexpr ui32_t NoCeiling = std::numeric_limits<ui32_t>::max();

  /// `name` shows in debuggers and logs; `ceiling` is at least 1.
  explicit Event(std::string name, ui32_t ceiling = NoCeiling);
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  [[nodiscard]] const std::string& Name() const { return m_Name; }
  void Post();
  /// Waits, asleep and without a time limit, for a post and consumes it.
  void Pend();
  /// Likewise for at most `limit`; false when the time ran out.
  [[nodiscard]] bool Pend(std::chrono::milliseconds limit);

 private:
  // False when the deadline passed without a post; no deadline, no end.
  bool PendUntil(const std::chrono::steady_clock::time_point* deadline);

  // Constant after construction.
  const std::string m_Name;
  const ui32_t m_Ceiling;

  // The count in the low half, the number of threads about to sleep or asleep in the high half.
  std::atomic<ui64_t> m_State = 0;
};

}  // namespace Ferro
