// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/FrameDecryption.h>

#include "CheckValue.h"
#include "IntegrityPack.h"

namespace QUIRE {

std::optional<ui64_t> TrackEncryption::SequenceNumber(ui32_t edit_unit, Eye eye) const {
  const ui64_t unit = edit_unit;
  const ui64_t right = eye == Eye::Right ? 1 : 0;
  switch (Sequence) {
    case SequenceRule::OnePerEditUnit:
      return unit + 1;
    case SequenceRule::OnePerTriplet:
      return 2 * unit + 1 + right;
    case SequenceRule::OnePerTripletFromZero:
      return 2 * unit + right;
    case SequenceRule::OnePerEditUnitFromZero:
      return unit;
    case SequenceRule::AlwaysOne:
      return 1;
    case SequenceRule::AlwaysZero:
      return 0;
    case SequenceRule::NoNumbers:
      break;
  }
  return std::nullopt;
}

bool TrackEncryption::HasStandardSequence() const {
  return Sequence == (IsStereoscopic ? SequenceRule::OnePerTriplet : SequenceRule::OnePerEditUnit);
}

Result_t FrameContexts::InitKey(std::span<const ui8_t, KeyLen> key, LabelSet_t label_set) {
  const Result_t result = Decryption.InitKey(key);
  return result.Success() ? Integrity.InitKey(key, label_set) : result;
}

namespace {

// By the frame itself: a header may say nothing of encryption. One without any bytes is told from one in clear by its pack.
bool IsEncrypted(const FrameBuffer& frame) {
  return frame.SourceLength() != 0 || !frame.IntegrityPack().empty();
}

// That there is something to decrypt, and something to do it with.
Result_t CheckRequest(const TrackEncryption& track, const FrameBuffer& frame, const FrameContexts* contexts) {
  if (!IsEncrypted(frame)) return track.UsesHMAC ? RESULT_HMACFAIL : RESULT_NOT_ENCRYPTED;
  if (contexts == nullptr) return RESULT_DECRYPT_CTX;
  if (!track.Algorithms.KnowsCipher || !track.Algorithms.KnowsMIC) return RESULT_ALGORITHM;
  if (frame.PlaintextOffset() > frame.SourceLength() ||
      frame.Size() != EncryptedSourceLength(frame.SourceLength(), frame.PlaintextOffset()))
    return RESULT_FORMAT;
  return Ferro::RESULT_OK;
}

std::span<const ui8_t> ValueOf(const FrameBuffer& frame) {
  return {frame.RoData(), frame.Size()};
}

}  // namespace

Result_t VerifyFrame(const TrackEncryption& track, const FrameBuffer& frame, std::optional<ui64_t> sequence_number,
                     FrameContexts* contexts) {
  Result_t result = CheckRequest(track, frame, contexts);
  if (result.Success()) result = TestKey(ValueOf(frame).first<CheckedStart>(), contexts->Decryption);
  if (result.Failure()) return result;
  const std::span<const ui8_t> pieces[] = {ValueOf(frame)};
  return TestIntegrity({track.AssetID, track.UsesHMAC, sequence_number}, pieces, frame.IntegrityPack(),
                       contexts->Integrity)
      .Result;
}

Result_t VerifyAndDecrypt(const TrackEncryption& track, const FrameBuffer& frame, std::optional<ui64_t> sequence_number,
                          FrameContexts* contexts, std::span<ui8_t> out) {
  Result_t result = CheckRequest(track, frame, contexts);
  if (result.Success() && out.size() < frame.SourceLength()) result = Ferro::RESULT_SMALLBUF;
  if (result.Success()) result = VerifyFrame(track, frame, sequence_number, contexts);
  if (result.Failure()) return result;
  return DecryptFrame(ValueOf(frame), frame.SourceLength(), frame.PlaintextOffset(), contexts->Decryption,
                      out.first(frame.SourceLength()));
}

}  // namespace QUIRE
