// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace Tool {

/// So much picture in a stretch of time: its largest edit unit.
struct RateSpan {
  double Start = 0;    ///< seconds
  double Seconds = 0;  ///< how long it is
  double Rate = 0;     ///< Mbit/s
  double Limit = 0;    ///< Mbit/s that no edit unit may exceed; 0 where there is no limit
};

/// Bit rate over time, in so many equal steps, each with the largest rate in it: its size is bounded whatever is added.
class RateCurve {
 public:
  static constexpr size_t StepCount = 1000;

  struct Step {
    double Rate = -1;  ///< Mbit/s; negative where nothing is known
    double Limit = 0;  ///< Mbit/s; the least one, 0 for none
  };

  /// @param seconds  its whole length, more than 0.
  explicit RateCurve(double seconds) : m_Seconds(seconds), m_Steps(StepCount) {}

  /// What lies beyond the ends is left out.
  void Add(const RateSpan& span);
  /// A stretch with that rate on average.
  void AddMean(double seconds, double rate);

  [[nodiscard]] double Seconds() const { return m_Seconds; }
  [[nodiscard]] const std::vector<Step>& Steps() const { return m_Steps; }
  [[nodiscard]] bool IsEmpty() const { return m_Peak < 0; }
  /// Mbit/s; 0 where nothing is known.
  [[nodiscard]] double Mean() const { return m_MeanSeconds > 0 ? m_MeanSum / m_MeanSeconds : 0; }
  [[nodiscard]] double Peak() const { return m_Peak; }                ///< Mbit/s; negative where nothing is known
  [[nodiscard]] double PeakSeconds() const { return m_PeakSeconds; }  ///< where it is first
  [[nodiscard]] double LeastLimit() const;                            ///< Mbit/s; 0 where there is none
  /// Seconds in whose steps the rate exceeds the limit.
  [[nodiscard]] double SecondsOver() const;

 private:
  double m_Seconds;
  std::vector<Step> m_Steps;
  double m_MeanSum = 0;
  double m_MeanSeconds = 0;
  double m_Peak = -1;
  double m_PeakSeconds = 0;
};

/// "12.3", "0.123": Mbit/s with three digits.
[[nodiscard]] std::string MegabitText(double rate);
/// "78.2 Mbit/s on average, 231 Mbit/s at most, at 12:03. The limit is 250 Mbit/s."
[[nodiscard]] std::string RateCurveText(const RateCurve& curve);
/// The curve above the axis of time that TimelineLanes has at the same width, with its limit: an SVG document for pages.
[[nodiscard]] std::string RateChart(const RateCurve& curve, double width);

}  // namespace Tool
