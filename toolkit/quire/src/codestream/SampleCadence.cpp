// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/SampleCadence.h>

#include <Ferro/CheckedMath.h>

#include <numeric>
#include <utility>

namespace QUIRE::PCM {

std::optional<SampleCadence> SampleCadence::Make(const Rational& sampling_rate, const Rational& edit_rate) {
  for (const i32_t term :
       {sampling_rate.Numerator, sampling_rate.Denominator, edit_rate.Numerator, edit_rate.Denominator}) {
    if (term <= 0) return std::nullopt;
  }
  const i64_t samples = i64_t{sampling_rate.Numerator} * edit_rate.Denominator;
  const i64_t edit_units = i64_t{sampling_rate.Denominator} * edit_rate.Numerator;
  const i64_t divisor = std::gcd(samples, edit_units);
  if (samples < edit_units || !std::in_range<i32_t>(samples / divisor)) return std::nullopt;
  return SampleCadence(static_cast<ui64_t>(samples / divisor), static_cast<ui64_t>(edit_units / divisor));
}

ui32_t SampleCadence::SampleCount(ui32_t edit_unit) const {
  return static_cast<ui32_t>((ui64_t{edit_unit} + 1) * m_Samples / m_EditUnits - FirstSample(edit_unit));
}

ui32_t SampleCadence::MaxSampleCount() const {
  return static_cast<ui32_t>((m_Samples + m_EditUnits - 1) / m_EditUnits);
}

std::optional<ui32_t> SampleCadence::EditUnitsFor(ui64_t samples) const {
  const auto scaled = Ferro::CheckedMul(samples, m_EditUnits);
  if (!scaled) return std::nullopt;
  return Ferro::CheckedCast<ui32_t>(*scaled / m_Samples + (*scaled % m_Samples != 0 ? 1 : 0));
}

}  // namespace QUIRE::PCM
