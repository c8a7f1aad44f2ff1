// SPDX-License-Identifier: BSD-3-Clause
#include "TripletItems.h"

#include <QUIRE/Crypto.h>
#include <QUIRE/MXF/KLV.h>

#include <algorithm>

namespace QUIRE {

namespace {

// Walks the items of a variable-length pack: each has a BER length, none a tag (ST 336).
class ItemCursor {
 public:
  explicit ItemCursor(std::span<const ui8_t> bytes) : m_Left(bytes) {}

  [[nodiscard]] bool AtEnd() const { return m_Left.empty(); }
  [[nodiscard]] size_t Left() const { return m_Left.size(); }

  std::optional<ui64_t> NextLength() {
    const auto length = MXF::ReadBER(m_Left);
    if (!length) return std::nullopt;
    m_Left = m_Left.subspan(length->Size);
    return length->Value;
  }
  std::optional<std::span<const ui8_t>> NextItem() {
    const auto length = NextLength();
    if (!length || *length > m_Left.size()) return std::nullopt;
    const auto item = m_Left.first(static_cast<size_t>(*length));
    m_Left = m_Left.subspan(item.size());
    return item;
  }

 private:
  std::span<const ui8_t> m_Left;
};

ui64_t BigEndian(std::span<const ui8_t> bytes) {
  ui64_t value = 0;
  for (ui8_t byte : bytes) value = value << 8 | byte;
  return value;
}

// Eight bytes, or, in files of early writers, a BER number of its own. No real length starts with 0x87.
std::optional<ui64_t> ParseSourceLength(std::span<const ui8_t> item) {
  if (item.size() == 8 && item[0] != 0x87) return BigEndian(item);
  const auto number = MXF::ReadBER(item);
  if (!number || number->Size != item.size()) return std::nullopt;
  return number->Value;
}

}  // namespace

std::optional<TripletHead> TripletHead::Parse(std::span<const ui8_t> bytes, ui64_t value_length) {
  bytes = bytes.first(static_cast<size_t>(std::min<ui64_t>(bytes.size(), value_length)));
  ItemCursor cursor(bytes);
  const auto context = cursor.NextItem();
  const auto offset = cursor.NextItem();
  const auto key = cursor.NextItem();
  const auto length_item = cursor.NextItem();
  if (!context || context->size() != 16 || !offset || offset->size() != 8 || !key || key->size() != 16 || !length_item)
    return std::nullopt;
  const auto source_length = ParseSourceLength(*length_item);
  const auto encrypted_length = cursor.NextLength();
  if (!source_length || !encrypted_length) return std::nullopt;

  TripletHead head;
  head.ContextID.Set(context->data());
  head.PlaintextOffset = BigEndian(*offset);
  std::copy(key->begin(), key->end(), head.SourceKey.begin());
  head.SourceLength = *source_length;
  head.EncryptedLength = *encrypted_length;
  head.Size = static_cast<ui32_t>(bytes.size() - cursor.Left());

  constexpr ui64_t longest = ui64_t{1} << 62;  // keeps the sums below from wrapping
  const bool consistent = head.SourceLength < longest && head.PlaintextOffset <= head.SourceLength &&
                          head.EncryptedLength <= value_length - head.Size &&
                          head.EncryptedLength == EncryptedSourceLength(head.SourceLength, head.PlaintextOffset);
  return consistent ? std::optional(head) : std::nullopt;
}

std::optional<TripletTail> TripletTail::Parse(std::span<const ui8_t> bytes) {
  TripletTail tail;
  ItemCursor cursor(bytes);
  if (cursor.AtEnd()) return tail;
  const auto id = cursor.NextItem();
  if (!id || (!id->empty() && id->size() != 16)) return std::nullopt;
  if (!id->empty()) tail.TrackFileID.Set(id->data());
  if (cursor.AtEnd()) return tail;
  const auto sequence = cursor.NextItem();
  if (!sequence || (!sequence->empty() && sequence->size() != 8)) return std::nullopt;
  if (!sequence->empty()) tail.SequenceNumber = BigEndian(*sequence);
  if (cursor.AtEnd()) return tail;
  const auto mic = cursor.NextItem();
  if (!mic || (!mic->empty() && mic->size() != 20)) return std::nullopt;
  if (mic->empty()) return tail;
  tail.MIC.emplace();
  std::copy(mic->begin(), mic->end(), tail.MIC->begin());
  tail.CoveredSize = static_cast<ui32_t>(bytes.size() - cursor.Left() - mic->size());
  return tail;
}

}  // namespace QUIRE
