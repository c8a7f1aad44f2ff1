// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>

#include <optional>

namespace QUIRE::PCM {

/// How the samples of a sound are dealt out to edit units (ST 382): edit unit n starts with sample floor(n * r), r being
/// sampling rate over edit rate. Where r is whole, every edit unit has r samples; elsewhere two neighbouring numbers take
/// turns (48000 Hz at 30000/1001: 1601 or 1602). A plain value.
class QUIRE_API SampleCadence {
 public:
  /// No value where a rate is not positive, edit units outnumber samples, or the ratio in lowest terms exceeds 31 bits.
  [[nodiscard]] static std::optional<SampleCadence> Make(const Rational& sampling_rate, const Rational& edit_rate);

  /// Samples before an edit unit.
  [[nodiscard]] ui64_t FirstSample(ui32_t edit_unit) const { return edit_unit * m_Samples / m_EditUnits; }
  [[nodiscard]] ui32_t SampleCount(ui32_t edit_unit) const;
  /// The most samples that an edit unit has.
  [[nodiscard]] ui32_t MaxSampleCount() const;
  /// True when all edit units have the same number.
  [[nodiscard]] bool IsConstant() const { return m_EditUnits == 1; }
  /// Edit units that hold this many samples, the last one perhaps not full; no value beyond 32 bits.
  [[nodiscard]] std::optional<ui32_t> EditUnitsFor(ui64_t samples) const;

 private:
  SampleCadence(ui64_t samples, ui64_t edit_units) : m_Samples(samples), m_EditUnits(edit_units) {}

  // m_Samples in every m_EditUnits, in lowest terms; both below 2^31.
  ui64_t m_Samples;
  ui64_t m_EditUnits;
};

}  // namespace QUIRE::PCM
