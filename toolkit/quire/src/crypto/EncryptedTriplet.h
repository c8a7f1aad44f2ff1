// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Crypto.h>
#include <QUIRE/Result.h>
#include <QUIRE/UL.h>

#include <Ferro/UUID.h>

#include <span>
#include <vector>

namespace QUIRE {

/// What an encrypted triplet says beside the encrypted bytes (ST 429-6, 9).
struct TripletFacts {
  UL Key;  // of the triplet itself
  Ferro::UUID ContextID;
  UL SourceKey;
  ui64_t PlaintextOffset = 0;
  CipherBlock IVec{};
  Ferro::UUID TrackFileID;
  ui64_t SequenceNumber = 0;  // from 1
};

/// Replaces `out` with the whole KLV of a triplet. With `integrity` the integrity pack follows the encrypted value.
/// @return RESULT_OK; what EncryptFrame and HMACContext return.
[[nodiscard]] Result_t MakeTriplet(const TripletFacts& facts, std::span<const ui8_t> source, AESEncContext& encryption,
                                   HMACContext* integrity, std::vector<ui8_t>& out);

}  // namespace QUIRE
