// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <array>
#include <chrono>

namespace Tool {

/// Counts durations in classes that grow by a twelfth of their size, from a microsecond to hours: constant memory
/// however many are counted, and percentiles to within 6 %.
class LatencyHistogram {
 public:
  void Add(std::chrono::duration<double> duration);
  /// Milliseconds that `share` of the durations, 0 to 1, kept within; 0 when there are none.
  [[nodiscard]] double Percentile(double share) const;
  /// Milliseconds.
  [[nodiscard]] double Longest() const { return m_Longest; }
  [[nodiscard]] Ferro::ui64_t Count() const { return m_Count; }

 private:
  static constexpr double ClassesPerDoubling = 12;

  std::array<Ferro::ui64_t, 512> m_Classes{};
  Ferro::ui64_t m_Count = 0;
  double m_Longest = 0;
};

}  // namespace Tool
