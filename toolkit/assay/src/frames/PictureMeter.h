// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Figures.h>
#include <Assay/Types.h>

#include <QUIRE/Rational.h>

namespace Assay {

/// Adds up the bytes of pictures by edit units: mean, peak and course. Takes as much memory for hours as for seconds.
class PictureMeter {
 public:
  /// @param duration  edit units that are to come.
  PictureMeter(const QUIRE::Rational& edit_rate, ui64_t duration);

  /// The bytes of all pictures of an edit unit; those before it were added.
  void Add(ui64_t edit_unit, ui64_t bytes);
  /// @param limit  Mbit/s
  [[nodiscard]] PictureFigures Figures(double limit) const;

 private:
  [[nodiscard]] double RateOf(double bytes) const { return bytes * 8 * m_UnitsPerSecond / 1e6; }

  double m_UnitsPerSecond = 0;
  ui64_t m_UnitsOfSpan = 1;
  ui64_t m_Units = 0;
  ui64_t m_Bytes = 0;
  ui64_t m_PeakBytes = 0;
  ui64_t m_PeakUnit = 0;
  std::vector<float> m_Spans;
};

}  // namespace Assay
