// SPDX-License-Identifier: BSD-3-Clause
#include "PictureMeter.h"

#include <algorithm>

namespace Assay {

PictureMeter::PictureMeter(const QUIRE::Rational& edit_rate, ui64_t duration) {
  if (edit_rate.Numerator > 0 && edit_rate.Denominator > 0) m_UnitsPerSecond = edit_rate.Quotient();
  m_UnitsOfSpan = std::max<ui64_t>(1, (duration + PictureFigures::MaxSpans - 1) / PictureFigures::MaxSpans);
}

void PictureMeter::Add(ui64_t edit_unit, ui64_t bytes) {
  ++m_Units;
  m_Bytes += bytes;
  if (bytes > m_PeakBytes) {
    m_PeakBytes = bytes;
    m_PeakUnit = edit_unit;
  }
  const auto span = static_cast<size_t>(std::min<ui64_t>(edit_unit / m_UnitsOfSpan, PictureFigures::MaxSpans - 1));
  if (m_Spans.size() <= span) m_Spans.resize(span + 1);
  m_Spans[span] = std::max(m_Spans[span], static_cast<float>(RateOf(static_cast<double>(bytes))));
}

PictureFigures PictureMeter::Figures(double limit) const {
  PictureFigures figures;
  if (m_Units > 0) figures.MeanRate = RateOf(static_cast<double>(m_Bytes) / static_cast<double>(m_Units));
  figures.PeakRate = RateOf(static_cast<double>(m_PeakBytes));
  figures.PeakEditUnit = m_PeakUnit;
  figures.LimitRate = limit;
  figures.UnitsOfSpan = m_UnitsOfSpan;
  figures.Spans = m_Spans;
  return figures;
}

}  // namespace Assay
