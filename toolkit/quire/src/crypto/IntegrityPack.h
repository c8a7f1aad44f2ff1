// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Crypto.h>
#include <QUIRE/Result.h>

#include <Ferro/UUID.h>

#include <optional>
#include <span>

namespace QUIRE {

/// What a frame's integrity pack is held against.
struct IntegrityExpectation {
  Ferro::UUID AssetID;
  bool UsesHMAC = false;                 ///< the file promises a code
  std::optional<ui64_t> SequenceNumber;  ///< none: the file has no numbers
};

/// What came of it, and why in words: "%s at offset 1234".
struct IntegrityOutcome {
  Result_t Result;
  const char* Words;
};

/// Tests the integrity pack that follows an encrypted source value (ST 429-6, 9.8 to 9.11).
/// @param value  the pieces of that value, in order.
/// @param pack   all that the triplet holds after it.
/// @return RESULT_OK; RESULT_FORMAT, RESULT_HMACFAIL, RESULT_SEQUENCE; as HMACContext.
[[nodiscard]] IntegrityOutcome TestIntegrity(const IntegrityExpectation& expected,
                                             std::span<const std::span<const ui8_t>> value, std::span<const ui8_t> pack,
                                             HMACContext& integrity);

}  // namespace QUIRE
