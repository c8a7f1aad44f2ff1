// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Result.h>
#include <Assay/Types.h>

#include <QUIRE/FrameDecryption.h>
#include <QUIRE/TrackFileReader.h>

#include <span>
#include <vector>

namespace Sigil {
class KeyRing;
}

namespace Assay {

/// Verifies and decrypts the frames of one file. One thread.
class FrameOpener {
 public:
  /// @param keys  may be null.
  /// @return RESULT_OK, also for a file in clear; QUIRE::RESULT_DECRYPT_CTX without its key; QUIRE::RESULT_ALGORITHM for an
  /// algorithm that is not known; as Sigil::KeyRing::FillContexts.
  [[nodiscard]] Result_t Init(const QUIRE::TrackEncryption& track, const Sigil::KeyRing* keys);

  /// @param stored  how the frame lies in its file
  /// @param bytes   its bytes, and behind them its integrity pack
  /// @param clear   receives what is in clear: `bytes`, or memory that is valid until the next call
  /// @return RESULT_OK; as QUIRE::VerifyAndDecrypt.
  [[nodiscard]] Result_t Open(const QUIRE::StoredFrame& stored, std::span<const ui8_t> bytes, ui32_t edit_unit,
                              QUIRE::Eye eye, std::span<const ui8_t>& clear);

  /// Whether sequence numbers show that an eye is missing.
  [[nodiscard]] bool NumbersEyes() const {
    return m_Track.UsesHMAC &&
           m_Track.SequenceNumber(0, QUIRE::Eye::Left) != m_Track.SequenceNumber(0, QUIRE::Eye::Right);
  }

 private:
  QUIRE::TrackEncryption m_Track;
  QUIRE::FrameContexts m_Contexts;
  QUIRE::FrameBuffer m_Stored;
  std::vector<ui8_t> m_Clear;
};

}  // namespace Assay
