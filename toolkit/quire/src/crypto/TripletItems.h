// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <Ferro/UUID.h>

#include <array>
#include <optional>
#include <span>

namespace QUIRE {

/// The items of an encrypted triplet's value before the encrypted source value (ST 429-6, 9).
struct TripletHead {
  Ferro::UUID ContextID;
  ui64_t PlaintextOffset = 0;
  std::array<ui8_t, 16> SourceKey{};
  ui64_t SourceLength = 0;
  ui64_t EncryptedLength = 0;  ///< of the encrypted source value
  ui32_t Size = 0;             ///< bytes of these items: where the encrypted source value starts in the triplet's value

  /// The longest form these items can take: five 9-byte lengths, two labels, an identifier and 8-byte or BER numbers.
  static constexpr size_t MaxSize = 5 * 9 + 2 * 16 + 8 + 9;

  /// Reads the items from the front of a triplet's value, of `value_length` bytes in all. Checks the lengths against each
  /// other, so that what follows may trust them. No value when they contradict each other or `bytes` ends too early.
  [[nodiscard]] static std::optional<TripletHead> Parse(std::span<const ui8_t> bytes, ui64_t value_length);
};

/// The items after the encrypted source value, each of which may be missing or empty.
struct TripletTail {
  Ferro::UUID TrackFileID;  ///< no value when missing
  std::optional<ui64_t> SequenceNumber;
  std::optional<std::array<ui8_t, 20>> MIC;
  /// How many bytes of the tail the integrity code covers: all up to its own bytes.
  ui32_t CoveredSize = 0;

  /// The longest form: three 9-byte lengths, 16, 8 and 20 bytes.
  static constexpr size_t MaxSize = 3 * 9 + 16 + 8 + 20;

  /// Reads what is left of a triplet's value. No value when an item has a wrong size.
  [[nodiscard]] static std::optional<TripletTail> Parse(std::span<const ui8_t> bytes);
};

}  // namespace QUIRE
