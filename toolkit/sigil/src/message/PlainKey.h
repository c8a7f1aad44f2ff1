// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/ContentKeys.h>

#include <span>

namespace Sigil {

/// What a key's plaintext must say, and what is encrypted (ST 430-1:2023, 6.1.2). Layout, in bytes:
///
///     0  structure identifier   16
///    16  signer's thumbprint    20
///    36  composition            16
///    52  key type                4   ASCII; not there in messages without key types, what follows then is 4 bytes earlier
///    56  key identifier         16
///    72  not valid before       25   ASCII
///    97  not valid after        25   ASCII
///   122  key                    16
struct PlainKey {
  static constexpr size_t TypedSize = 138;
  static constexpr size_t UntypedSize = 134;

  SHA1 Signer;
  UUID CompositionID;
  KeyEntry Entry;
  Timestamp NotBefore;
  Timestamp NotAfter;

  /// Writes all of it; `out` is of TypedSize, `key` of ContentKeys::KeySize bytes.
  void Write(std::span<const ui8_t> key, std::span<ui8_t> out) const;
  /// True when a plaintext of one of the sizes says all this but the key identifier, and its type where it has one. The time
  /// it takes does not depend on where they differ.
  [[nodiscard]] bool AgreesWith(std::span<const ui8_t> plain) const;

  [[nodiscard]] static UUID IDOf(std::span<const ui8_t> plain);
  [[nodiscard]] static std::span<const ui8_t> KeyOf(std::span<const ui8_t> plain);
};

}  // namespace Sigil
