// SPDX-License-Identifier: BSD-3-Clause
// The part of the readers that knows of two eyes: their frames, and the numbers of their triplets.
#include "base/ResultOf.h"
#include "crypto/EyeNumbers.h"
#include "h__Reader.h"

#include <Ferro/ILogSink.h>

#include <algorithm>

namespace QUIRE {

using Ferro::RESULT_OK;

Result_t h__Reader::ReadPair(ui32_t frame_number, const CryptoContexts& contexts, JP2K::SFrameBuffer& frame) {
  Range range;
  Result_t result = FindEditUnit(frame_number, range);
  if (result == RESULT_RANGE) return result;
  if (result.Success()) result = CheckAlgorithms(contexts);
  if (result.Success())
    result = ResultOf([&] {
      return m_Facts.IsStereoscopic() ? ReadEyes(frame_number, range, contexts, frame)
                                      : ReadSingle(frame_number, range, contexts, frame);
    });
  if (result == Ferro::RESULT_SMALLBUF) return result;
  if (result.Failure()) {
    frame.Left.Clear();
    frame.Right.Clear();
    return result;
  }
  frame.Left.FrameNumber(frame_number);
  frame.Right.FrameNumber(frame_number);
  return RESULT_OK;
}

// One codestream alone serves both eyes.
Result_t h__Reader::ReadSingle(ui32_t frame_number, const Range& range, const CryptoContexts& contexts,
                               JP2K::SFrameBuffer& frame) {
  const Sequence sequence = m_Encryption.SequenceNumber(frame_number);
  const Result_t result = m_Elements->ReadWhole(range.Position, range.Limit, sequence, contexts, frame.Left);
  if (result.Failure()) return result;
  if (frame.Left.Size() > frame.Right.Capacity()) {
    frame.Left.Clear();
    return Ferro::RESULT_SMALLBUF;
  }
  std::copy_n(frame.Left.RoData(), frame.Left.Size(), frame.Right.Data());
  frame.Right.Size(frame.Left.Size());
  frame.Right.SourceLength(frame.Left.SourceLength());
  frame.Right.PlaintextOffset(frame.Left.PlaintextOffset());
  frame.Right.IntegrityPack(frame.Left.IntegrityPack());
  return RESULT_OK;
}

Result_t h__Reader::ReadEyes(ui32_t frame_number, const Range& range, const CryptoContexts& contexts,
                             JP2K::SFrameBuffer& frame) {
  if (contexts.Integrity != nullptr)
    if (const Result_t result = FindSequenceRule(); result.Failure()) return result;
  ElementPlace left;
  ElementPlace right;
  Result_t result = m_Elements->Locate(range.Position, range.Limit, ElementKeys::Essence, left);
  if (result.Success()) result = m_Elements->Locate(left.End, range.Limit, ElementKeys::Essence, right);
  if (result == Ferro::RESULT_NOT_FOUND) {
    result = contexts.Integrity != nullptr ? CheckEyeIsNotMissing(frame_number) : RESULT_OK;
    return result.Success() ? ReadSingle(frame_number, range, contexts, frame) : result;
  }
  if (result.Failure()) return result;
  const bool decrypt = contexts.Decryption != nullptr;
  if (left.DeliveredLength(decrypt) > frame.Left.Capacity() || right.DeliveredLength(decrypt) > frame.Right.Capacity())
    return Ferro::RESULT_SMALLBUF;
  result = m_Elements->Read(left, m_Encryption.SequenceNumber(frame_number, Eye::Left), contexts, frame.Left);
  if (result.Failure()) return result;
  return m_Elements->Read(right, m_Encryption.SequenceNumber(frame_number, Eye::Right), contexts, frame.Right);
}

Result_t h__Reader::ReadLeftEye(ui32_t frame_number, const Range& range, const CryptoContexts& contexts,
                                FrameBuffer& frame) {
  ElementPlace left;
  Result_t result = RESULT_OK;
  if (contexts.Integrity != nullptr) result = FindSequenceRule();
  if (result.Success()) result = m_Elements->Locate(range.Position, range.Limit, ElementKeys::Essence, left);
  return result.Success() ? m_Elements->Read(left, m_Encryption.SequenceNumber(frame_number), contexts, frame) : result;
}

// One picture for both eyes bears the number of both. Where each eye has a number of its own, the other was taken out.
Result_t h__Reader::CheckEyeIsNotMissing(ui32_t frame_number) const {
  const bool one_number =
      m_Encryption.SequenceNumber(frame_number, Eye::Left) == m_Encryption.SequenceNumber(frame_number, Eye::Right);
  if (one_number || !m_Info.UsesHMAC) return RESULT_OK;
  Ferro::DefaultLogSink().Error("%s: one eye is missing in edit unit %u\n", m_File.Filename().c_str(), frame_number);
  return RESULT_SEQUENCE;
}

Result_t h__Reader::ReadNumbers(ui32_t frame_number, EyeNumbers& numbers) {
  Range range;
  ElementPlace place;
  Result_t result = FindEditUnit(frame_number, range);
  if (result.Success()) result = m_Elements->Locate(range.Position, range.Limit, ElementKeys::Essence, place);
  if (result.Success()) result = m_Elements->ReadSequence(place, numbers.Left);
  numbers.Right = numbers.Left;
  if (result.Success()) result = m_Elements->Locate(place.End, range.Limit, ElementKeys::Essence, place);
  if (result == Ferro::RESULT_NOT_FOUND) return RESULT_OK;
  return result.Success() ? m_Elements->ReadSequence(place, numbers.Right) : result;
}

// Looks at the first and the last edit unit; each that is read is then held against what they say. Where they cannot be
// read, the standard's rule stays.
Result_t h__Reader::FindSequenceRule() {
  if (m_KnowsSequenceRule) return RESULT_OK;
  const Result_t indexed = ReadIndex();
  if (indexed.Failure()) return indexed;
  const auto last_unit = static_cast<ui32_t>(m_EditUnits == 0 ? 0 : m_EditUnits - 1);
  EyeNumbers first;
  EyeNumbers last;
  Result_t result = ReadNumbers(0, first);
  if (result.Success()) result = ReadNumbers(last_unit, last);
  if (result == Ferro::RESULT_ALLOC) return result;
  m_KnowsSequenceRule = true;
  if (result.Success()) m_Encryption.Sequence = SequenceRuleOf(first, last, last_unit);
  if (!m_Encryption.HasStandardSequence())
    Ferro::DefaultLogSink().Warn("%s: stereoscopic, and numbers its pictures by another rule than 1, 2, 3 and so on\n",
                                 m_File.Filename().c_str());
  return RESULT_OK;
}

Result_t h__Reader::FillTrackEncryption(TrackEncryption& encryption) {
  const Result_t result = ResultOf([&] { return FindSequenceRule(); });
  if (result.Success()) encryption = m_Encryption;
  return result;
}

}  // namespace QUIRE
