// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Crypto.h>

#include <algorithm>

namespace QUIRE {

// The front of an encrypted source value (ST 429-6, 9.7): initialization vector 16, encrypted check value 16.

/// "CHUK" four times, in front of the essence in every chain.
inline constexpr CipherBlock CheckValue = {0x43, 0x48, 0x55, 0x4b, 0x43, 0x48, 0x55, 0x4b,
                                           0x43, 0x48, 0x55, 0x4b, 0x43, 0x48, 0x55, 0x4b};
inline constexpr ui64_t CheckedStart = 2 * CBC_BLOCK_SIZE;
/// With the padded last block: what a value has beyond the frame's own whole blocks.
inline constexpr ui64_t ValueOverhead = CheckedStart + CBC_BLOCK_SIZE;

/// Begins a value's chain and tests the key. The chain then goes on with the essence.
/// @return RESULT_OK; RESULT_CHECKFAIL for a wrong key; as AESDecContext.
[[nodiscard]] inline Result_t TestKey(std::span<const ui8_t, CheckedStart> start, AESDecContext& decryption) {
  CipherBlock check;
  Result_t result = decryption.SetIVec(start.first<CBC_BLOCK_SIZE>());
  if (result.Success()) result = decryption.DecryptBlock(start.last<CBC_BLOCK_SIZE>(), check);
  if (result.Failure()) return result;
  return check == CheckValue ? Ferro::RESULT_OK : RESULT_CHECKFAIL;
}

}  // namespace QUIRE
