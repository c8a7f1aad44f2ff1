// SPDX-License-Identifier: BSD-3-Clause
#include "LatencyHistogram.h"

#include <algorithm>
#include <cmath>

namespace Tool {

void LatencyHistogram::Add(std::chrono::duration<double> duration) {
  const double microseconds = std::max(0.0, duration.count() * 1e6);
  const auto at = static_cast<size_t>(std::log2(microseconds + 1) * ClassesPerDoubling);
  ++m_Classes[std::min(at, m_Classes.size() - 1)];
  ++m_Count;
  m_Longest = std::max(m_Longest, microseconds / 1000);
}

double LatencyHistogram::Percentile(double share) const {
  if (m_Count == 0) return 0;
  const double wanted = share * double(m_Count);
  Ferro::ui64_t counted = 0;
  for (size_t at = 0; at < m_Classes.size(); ++at) {
    counted += m_Classes[at];
    if (m_Classes[at] == 0 || double(counted) < wanted) continue;
    const double upper = (std::exp2(double(at + 1) / ClassesPerDoubling) - 1) / 1000;
    return std::min(upper, m_Longest);
  }
  return m_Longest;
}

}  // namespace Tool
