// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/FrameDecryption.h>

#include <optional>

namespace QUIRE {

/// The sequence numbers of one stereoscopic edit unit.
struct EyeNumbers {
  std::optional<ui64_t> Left;
  std::optional<ui64_t> Right;

  friend bool operator==(const EyeNumbers&, const EyeNumbers&) = default;
};

/// The rule that a stereoscopic file follows in its first edit unit and its last one, whose number is `last_unit`;
/// OnePerTriplet where it follows none. A file numbered as the standard has it cannot be rearranged to follow another rule
/// throughout, except by repeating triplets.
[[nodiscard]] SequenceRule SequenceRuleOf(const EyeNumbers& first, const EyeNumbers& last, ui32_t last_unit);

}  // namespace QUIRE
