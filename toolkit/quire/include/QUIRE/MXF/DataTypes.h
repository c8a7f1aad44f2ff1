// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/Types.h>

#include <Ferro/Timestamp.h>
#include <Ferro/UUID.h>

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace QUIRE::MXF {

using Ferro::UMID;
using Ferro::UUID;

/// A date and time as header metadata store it, in UTC (ST 377-1, 4.3). Fields are kept as they were read, also where
/// they are out of range; all zero means unknown.
struct QUIRE_API Timestamp {
  i16_t Year = 0;
  ui8_t Month = 0;
  ui8_t Day = 0;
  ui8_t Hour = 0;
  ui8_t Minute = 0;
  ui8_t Second = 0;
  ui8_t Tick = 0;  ///< units of 4 milliseconds, 0 to 249

  Timestamp() = default;
  explicit Timestamp(const Ferro::Timestamp& moment);
  /// No value when unknown or out of range.
  [[nodiscard]] std::optional<Ferro::Timestamp> Moment() const;
  /// "2024-01-02 03:04:05.000", the fields as they are.
  [[nodiscard]] std::string EncodeString() const;
  friend bool operator==(const Timestamp&, const Timestamp&) = default;
};

/// Five numbers that say which edition of a product it was (ST 377-1, 4.3).
struct ProductVersion {
  ui16_t Major = 0;
  ui16_t Minor = 0;
  ui16_t Tertiary = 0;
  ui16_t Patch = 0;
  ui16_t Release = 0;  ///< 0 unknown, 1 released, 2 post-release development, 3 patched, 4 beta, 5 private
  friend bool operator==(const ProductVersion&, const ProductVersion&) = default;
};

/// Up to eight pairs of component code and depth in bits, ended by zeros (ST 377-1, G.2.40).
using RGBALayout = std::array<ui8_t, 16>;

/// X'Y'Z', 12 bits each (ST 429-4, 6.4.1).
inline constexpr RGBALayout RGBALayout_XYZ12 = {0xd8, 12, 0xd9, 12, 0xda, 12};

/// Header metadata store what the picture's descriptor says of a component.
using ImageComponent = JP2K::ComponentSizing;

/// The basic UMID of a package whose material number is `material` (ST 330; ST 429-3, 6.3).
[[nodiscard]] QUIRE_API UMID MakeUMID(const UUID& material);
/// The material number of a UMID, bytes 17 to 32; of a file package, the track file's asset identifier.
[[nodiscard]] QUIRE_API UUID MaterialNumber(const UMID& umid);

/// Text of a UTF-16 big-endian string item as UTF-8. Ends at the first U+0000; an odd last byte is dropped; read
/// little-endian when every code unit of it says so. Lone surrogates and control characters other than tab and line ends become U+FFFD.
[[nodiscard]] QUIRE_API std::string DecodeUTF16(std::span<const ui8_t> bytes);
/// UTF-8 text as UTF-16 big-endian, without terminator. Malformed parts become U+FFFD.
[[nodiscard]] QUIRE_API std::vector<ui8_t> EncodeUTF16(const std::string& text);

}  // namespace QUIRE::MXF
