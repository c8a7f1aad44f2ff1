// SPDX-License-Identifier: BSD-3-Clause
#include "FrameOpener.h"

#include <Sigil/KeyRing.h>

#include <algorithm>

namespace Assay {

Result_t FrameOpener::Init(const QUIRE::TrackEncryption& track, const Sigil::KeyRing* keys) {
  m_Track = track;
  if (!track.IsEncrypted) return Ferro::RESULT_OK;
  if (!track.Algorithms.KnowsCipher || !track.Algorithms.KnowsMIC) return QUIRE::RESULT_ALGORITHM;
  return keys == nullptr ? QUIRE::RESULT_DECRYPT_CTX : keys->FillContexts(track, m_Contexts);
}

Result_t FrameOpener::Open(const QUIRE::StoredFrame& stored, std::span<const ui8_t> bytes, ui32_t edit_unit,
                           QUIRE::Eye eye, std::span<const ui8_t>& clear) {
  const auto value = bytes.first(static_cast<size_t>(stored.Length));
  clear = value;
  if (!stored.IsEncrypted) return m_Track.UsesHMAC ? QUIRE::RESULT_HMACFAIL : Ferro::RESULT_OK;
  const auto length = static_cast<ui32_t>(value.size());
  if (m_Stored.Capacity() < length)
    if (const Result_t result = m_Stored.Capacity(length); result.Failure()) return result;
  m_Stored.Clear();
  std::ranges::copy(value, m_Stored.Data());
  m_Stored.Size(length);
  m_Stored.SourceLength(static_cast<ui32_t>(stored.SourceLength));
  m_Stored.PlaintextOffset(static_cast<ui32_t>(stored.PlaintextOffset));
  m_Stored.IntegrityPack(bytes.subspan(value.size()));
  if (m_Clear.size() < stored.SourceLength) m_Clear.resize(static_cast<size_t>(stored.SourceLength));
  const Result_t result =
      VerifyAndDecrypt(m_Track, m_Stored, m_Track.SequenceNumber(edit_unit, eye), &m_Contexts, m_Clear);
  clear = std::span<const ui8_t>(m_Clear).first(result.Success() ? static_cast<size_t>(stored.SourceLength) : 0);
  return result;
}

}  // namespace Assay
