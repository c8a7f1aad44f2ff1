// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Types.h>

#include <Ferro/IArchive.h>

#include <string>
#include <string_view>

namespace QUIRE {

/// A rate or ratio as two signed 32-bit numbers, kept as they were written: equality compares numerator and denominator,
/// so 48/2 and 24/1 differ. A default-constructed rational is 0/0.
///
/// Archive form: numerator, then denominator, each signed 32-bit big-endian (8 bytes).
class QUIRE_API Rational : public Ferro::IArchive {
 public:
  constexpr Rational() = default;
  constexpr Rational(i32_t numerator, i32_t denominator) : Numerator(numerator), Denominator(denominator) {}

  i32_t Numerator = 0;
  i32_t Denominator = 0;

  /// Numerator divided by denominator; the division is not guarded.
  [[nodiscard]] double Quotient() const { return double(Numerator) / double(Denominator); }

  /// Numerator, one blank, denominator: "24 1".
  [[nodiscard]] std::string EncodeString() const;
  /// Reads two decimal numbers with white space between, and white space or nothing around. False leaves the value.
  [[nodiscard]] bool DecodeString(std::string_view text);

  /// True when the denominator is not 0.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;

  friend bool operator==(const Rational& lhs, const Rational& rhs) {
    return lhs.Numerator == rhs.Numerator && lhs.Denominator == rhs.Denominator;
  }
};

// Rates met in D-Cinema (ST 428-2, 428-3, 428-11).
inline constinit const Rational EditRate_24(24, 1);
inline constinit const Rational EditRate_25(25, 1);
inline constinit const Rational EditRate_30(30, 1);
inline constinit const Rational EditRate_48(48, 1);
inline constinit const Rational EditRate_50(50, 1);
inline constinit const Rational EditRate_60(60, 1);
inline constinit const Rational SampleRate_48k(48000, 1);
inline constinit const Rational SampleRate_96k(96000, 1);

}  // namespace QUIRE
