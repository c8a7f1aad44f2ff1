// SPDX-License-Identifier: BSD-3-Clause
#include "ElementReader.h"

#include "crypto/CheckValue.h"
#include "crypto/IntegrityPack.h"
#include "essence/EssenceKind.h"

#include <QUIRE/Crypto.h>
#include <QUIRE/Dictionary.h>

#include <Ferro/ILogSink.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace QUIRE {

using Ferro::RESULT_OK;

namespace {

// Key and length of an element, or of a triplet with the items before the encrypted source value.
constexpr size_t WindowSize = 25 + TripletHead::MaxSize;
// Fill and system items before an element, as broadcast writers put them there, are read along up to this many bytes.
constexpr size_t MaxPrefix = 1024;
// More KLVs than this are not passed over in search of an element.
constexpr size_t MaxPassed = 1024;

enum class Outcome { Found, PassedOver, Wrong, Malformed };

bool IsWanted(const ui8_t* key, EssenceType_t type, ElementKeys keys) {
  if (keys == ElementKeys::Essence) return KindOf(type).IsElementKey(key);
  return DefaultSMPTEDict().Is(UL(std::span<const ui8_t, 16>(key, 16)), MDD_GenericStream_DataElement);
}

// Reads what stands at the front of `bytes`, which lie at `position`. After PassedOver, place.End is where to go on.
Outcome ParsePlace(std::span<const ui8_t> bytes, ui64_t position, ui64_t limit, EssenceType_t type, ElementKeys keys,
                   ElementPlace& place) {
  const auto klv = MXF::ParseKLV(bytes, position, limit);
  if (!klv) return Outcome::Malformed;
  place = {position, klv->ValueOffset(), klv->ValueLength, klv->End(), std::nullopt};
  if (IsWanted(klv->Key.Value(), type, keys)) return Outcome::Found;
  if (MXF::IsFillKey(klv->Key) || MXF::IsSystemItemKey(klv->Key)) return Outcome::PassedOver;
  if (!DefaultSMPTEDict().Is(klv->Key, MDD_CryptEssence)) return Outcome::Wrong;
  place.Triplet = TripletHead::Parse(bytes.subspan(klv->HeaderLength), klv->ValueLength);
  if (!place.Triplet) return Outcome::Malformed;
  if (!IsWanted(place.Triplet->SourceKey.data(), type, keys)) return Outcome::Wrong;
  place.ValueAt += place.Triplet->Size;
  place.ValueLength = place.Triplet->EncryptedLength;
  return Outcome::Found;
}

}  // namespace

// What is read beside the bytes that belong into the frame buffer.
struct ElementReader::ScatterRead {
  std::array<ui8_t, MaxPrefix> Prefix;
  std::array<ui8_t, CheckedStart> Start;
  CipherBlock LastBlock;
  std::array<ui8_t, TripletTail::MaxSize> Tail;

  std::array<std::span<ui8_t>, 5> Parts;
  size_t PartCount = 0;

  void Add(std::span<ui8_t> part) { Parts[PartCount++] = part; }

  // The value's own parts. One to be decrypted goes to its place in the frame, all but its padded last block, which the
  // frame may have no room for.
  void AddValue(FrameBuffer& frame, ui64_t length, bool decrypt) {
    if (!decrypt) return Add({frame.Data(), static_cast<size_t>(length)});
    Add(Start);
    Add({frame.Data(), static_cast<size_t>(length - ValueOverhead)});
    Add(LastBlock);
  }
  void AddTail(ui64_t length) {
    Add(std::span(Tail).first(static_cast<size_t>(std::min<ui64_t>(length, Tail.size()))));
  }
  [[nodiscard]] std::span<const ui8_t> TailOf(const ElementPlace& place) const {
    return std::span(Tail).first(static_cast<size_t>(std::min<ui64_t>(place.TailLength(), Tail.size())));
  }
};

ElementReader::ElementReader(const Ferro::FileReader& file, EssenceType_t type, const Ferro::UUID& asset_id,
                             bool uses_hmac)
    : m_File(file), m_Type(type), m_AssetID(asset_id), m_UsesHMAC(uses_hmac) {}

Result_t ElementReader::Fail(Result_t result, const char* what, ui64_t position) const {
  Ferro::DefaultLogSink().Error("%s: %s at offset %llu\n", m_File.Filename().c_str(), what,
                                static_cast<unsigned long long>(position));
  return result;
}

Result_t ElementReader::Locate(ui64_t position, ui64_t limit, ElementKeys keys, ElementPlace& place) const {
  limit = std::min<ui64_t>(limit, m_File.Size());
  if (position == limit) return Ferro::RESULT_NOT_FOUND;
  std::array<ui8_t, WindowSize> window;
  for (size_t passed = 0; position < limit && passed < MaxPassed; ++passed) {
    size_t count = 0;
    const size_t wanted = static_cast<size_t>(std::min<ui64_t>(window.size(), limit - position));
    const Result_t result = m_File.ReadUpTo(position, std::span(window).first(wanted), count);
    if (result.Failure()) return result;
    switch (ParsePlace(std::span(window).first(count), position, limit, m_Type, keys, place)) {
      case Outcome::Found:
        return RESULT_OK;
      case Outcome::PassedOver:
        position = place.End;
        break;
      case Outcome::Wrong:
        return Fail(RESULT_FORMAT, "no essence element of the file's kind", position);
      case Outcome::Malformed:
        return Fail(RESULT_FORMAT, "malformed or cut essence element", position);
    }
  }
  return Fail(RESULT_FORMAT, "no essence element", position);
}

Result_t ElementReader::Read(const ElementPlace& place, Sequence sequence, const CryptoContexts& contexts,
                             FrameBuffer& frame) const {
  const bool decrypt = contexts.Decryption != nullptr && place.Triplet;
  if (place.DeliveredLength(decrypt) > frame.Capacity()) return Ferro::RESULT_SMALLBUF;
  ScatterRead scatter;
  scatter.AddValue(frame, place.ValueLength, decrypt);
  if (place.Triplet && (contexts.Integrity != nullptr || !decrypt)) scatter.AddTail(place.TailLength());
  const Result_t result = m_File.ReadPartsAt(place.ValueAt, std::span(scatter.Parts).first(scatter.PartCount));
  if (result.Failure()) {
    frame.Clear();
    return result;
  }
  return Deliver(place, sequence, contexts, scatter, frame);
}

// Reads the range as if it were laid out like the element before. False when it is not, or might not fit the buffer.
bool ElementReader::ReadPredicted(ui64_t position, ui64_t limit, const CryptoContexts& contexts, FrameBuffer& frame,
                                  ScatterRead& scatter, ElementPlace& place) const {
  const ui64_t surroundings = m_Prefix + m_Suffix;
  if (m_Prefix == 0 || m_Prefix > MaxPrefix || limit - position < surroundings) return false;
  const bool decrypt = contexts.Decryption != nullptr && m_Encrypted;
  const ui64_t length = limit - position - surroundings;
  if (decrypt && length < ValueOverhead) return false;
  if ((decrypt ? length - CheckedStart : length) > frame.Capacity()) return false;

  const auto prefix = std::span(scatter.Prefix).first(static_cast<size_t>(m_Prefix));
  scatter.Add(prefix);
  scatter.AddValue(frame, length, decrypt);
  if (m_Encrypted && (contexts.Integrity != nullptr || !decrypt)) scatter.AddTail(m_Suffix);
  if (m_File.ReadPartsAt(position, std::span(scatter.Parts).first(scatter.PartCount)).Failure()) return false;

  place.End = position;
  Outcome outcome = Outcome::PassedOver;
  while (outcome == Outcome::PassedOver && place.End - position < m_Prefix)
    outcome = ParsePlace(prefix.subspan(static_cast<size_t>(place.End - position)), place.End, limit, m_Type,
                         ElementKeys::Essence, place);
  if (outcome != Outcome::Found || place.ValueAt != position + m_Prefix) return false;
  return m_Encrypted ? place.Triplet && place.ValueLength == length : !place.Triplet && place.ValueLength <= length;
}

Result_t ElementReader::ReadWhole(ui64_t position, ui64_t limit, Sequence sequence, const CryptoContexts& contexts,
                                  FrameBuffer& frame) {
  ElementPlace place;
  {
    ScatterRead scatter;
    if (ReadPredicted(position, limit, contexts, frame, scatter, place))
      return Deliver(place, sequence, contexts, scatter, frame);
    if (scatter.PartCount > 0) frame.Clear();
  }
  Result_t result = Locate(position, limit, ElementKeys::Essence, place);
  if (result.Success()) result = Read(place, sequence, contexts, frame);
  if (result.Success()) {
    m_Prefix = place.ValueAt - position;
    m_Encrypted = place.Triplet.has_value();
    m_Suffix = m_Encrypted ? limit - place.ValueAt - place.ValueLength : 0;
  }
  return result;
}

Result_t ElementReader::Verify(const ElementPlace& place, Sequence sequence, bool decrypted, HMACContext& integrity,
                               const ScatterRead& scatter, const FrameBuffer& frame) const {
  const ui64_t in_frame = decrypted ? place.ValueLength - ValueOverhead : place.ValueLength;
  std::array<std::span<const ui8_t>, 3> pieces{{{}, {frame.RoData(), static_cast<size_t>(in_frame)}, {}}};
  if (decrypted) {
    pieces.front() = scatter.Start;
    pieces.back() = scatter.LastBlock;
  }
  const IntegrityOutcome outcome =
      TestIntegrity({m_AssetID, m_UsesHMAC, sequence}, pieces, scatter.TailOf(place), integrity);
  return outcome.Result.Failure() ? Fail(outcome.Result, outcome.Words, place.Position) : RESULT_OK;
}

Result_t ElementReader::ReadSequence(const ElementPlace& place, Sequence& sequence) const {
  sequence.reset();
  if (!place.Triplet) return RESULT_OK;
  ScatterRead scatter;
  scatter.AddTail(place.TailLength());
  const Result_t result = m_File.ReadPartsAt(place.ValueAt + place.ValueLength, std::span(scatter.Parts).first(1));
  if (result.Failure()) return result;
  const auto tail = TripletTail::Parse(scatter.TailOf(place));
  if (!tail) return Fail(RESULT_FORMAT, "malformed integrity pack of the element", place.Position);
  sequence = tail->SequenceNumber;
  return RESULT_OK;
}

// The check value comes first, so that a wrong key touches nothing.
Result_t ElementReader::CheckKey(const ElementPlace& place, const ScatterRead& scatter,
                                 AESDecContext& decryption) const {
  const Result_t result = TestKey(scatter.Start, decryption);
  if (result == RESULT_CHECKFAIL) return Fail(result, "the key does not decrypt the element", place.Position);
  if (result == Ferro::RESULT_INIT) return Fail(result, "no key in the context to decrypt the element", place.Position);
  return result;
}

namespace {

// Goes on with the chain that the check value began.
Result_t Decrypt(const ElementPlace& place, AESDecContext& decryption, CipherBlock& last_block, FrameBuffer& frame) {
  const size_t in_place = static_cast<size_t>(place.ValueLength - ValueOverhead);
  const auto body = std::span(frame.Data(), in_place).subspan(static_cast<size_t>(place.Triplet->PlaintextOffset));
  Result_t result = decryption.DecryptBlock(body, body);
  if (result.Success()) result = decryption.DecryptBlock(last_block, last_block);
  if (result.Failure()) return result;
  std::copy_n(last_block.begin(), place.Triplet->SourceLength - in_place, frame.Data() + in_place);
  return RESULT_OK;
}

}  // namespace

Result_t ElementReader::Deliver(const ElementPlace& place, Sequence sequence, const CryptoContexts& contexts,
                                ScatterRead& scatter, FrameBuffer& frame) const {
  const bool decrypt = contexts.Decryption != nullptr && place.Triplet;
  Result_t result = RESULT_OK;
  // An element in clear among encrypted ones was put there by somebody without the key.
  if (contexts.Integrity != nullptr && m_UsesHMAC && !place.Triplet)
    result = Fail(RESULT_HMACFAIL, "element in clear in an encrypted file", place.Position);
  if (decrypt) result = CheckKey(place, scatter, *contexts.Decryption);
  if (result.Success() && contexts.Integrity != nullptr && place.Triplet)
    result = Verify(place, sequence, decrypt, *contexts.Integrity, scatter, frame);
  if (result.Success() && decrypt) result = Decrypt(place, *contexts.Decryption, scatter.LastBlock, frame);
  frame.Clear();
  if (result.Failure()) return result;
  frame.Size(static_cast<ui32_t>(place.DeliveredLength(decrypt)));
  if (place.Triplet && !decrypt) {
    frame.SourceLength(static_cast<ui32_t>(place.Triplet->SourceLength));
    frame.PlaintextOffset(static_cast<ui32_t>(place.Triplet->PlaintextOffset));
    frame.IntegrityPack(scatter.TailOf(place));
  }
  return RESULT_OK;
}

}  // namespace QUIRE
