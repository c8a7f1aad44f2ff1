// SPDX-License-Identifier: BSD-3-Clause
#include "base/BigEndian.h"
#include "base/FormatError.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/KLV.h>

#include <Ferro/Assert.h>
#include <Ferro/CheckedMath.h>

#include <algorithm>
#include <array>
#include <limits>

namespace QUIRE::MXF {
namespace {

constexpr ui64_t MaxLength = std::numeric_limits<i64_t>::max();
constexpr size_t MaxHeaderLength = KeyLength + 9;

}  // namespace

// One byte below 0x80 is the length itself. Otherwise its low seven bits say how many bytes of length follow, the most
// significant first (ST 377-1, 6.3).
std::optional<BERField> ReadBER(std::span<const ui8_t> bytes) {
  if (bytes.empty()) return std::nullopt;
  if (bytes[0] < 0x80) return BERField{bytes[0], 1};
  const ui32_t count = bytes[0] & 0x7fu;
  if (count == 0 || count > 8 || bytes.size() < 1 + count) return std::nullopt;
  ui64_t value = 0;
  for (ui32_t i = 1; i <= count; ++i) value = value << 8 | bytes[i];
  if (value > MaxLength) return std::nullopt;
  return BERField{value, 1 + count};
}

void AppendBER(std::vector<ui8_t>& out, ui64_t value, ui32_t size) {
  FERRO_ASSERT(size >= 1 && size <= 9);
  FERRO_ASSERT(size == 1 ? value < 0x80 : size == 9 || value >> (8 * (size - 1)) == 0);
  if (size == 1) return out.push_back(static_cast<ui8_t>(value));
  out.push_back(static_cast<ui8_t>(0x80 | (size - 1)));
  for (ui32_t i = size - 1; i-- > 0;) out.push_back(static_cast<ui8_t>(value >> (8 * i)));
}

void AppendKL(std::vector<ui8_t>& out, const UL& key, ui64_t value_length, ui32_t length_size) {
  AppendBytes(out, key.Bytes());
  AppendBER(out, value_length, length_size);
}

std::optional<KLVPacket> ParseKLV(std::span<const ui8_t> bytes, ui64_t offset, ui64_t limit) {
  if (bytes.size() < KeyLength) return std::nullopt;
  const auto length = ReadBER(bytes.subspan(KeyLength));
  if (!length) return std::nullopt;
  KLVPacket packet;
  packet.Key.Set(bytes.data());
  packet.Offset = offset;
  packet.HeaderLength = KeyLength + length->Size;
  packet.ValueLength = length->Value;
  // Both terms are below 2^63 + 32: the sum does not wrap.
  if (!Ferro::RangeFits<ui64_t>(offset, packet.HeaderLength + packet.ValueLength, limit)) return std::nullopt;
  return packet;
}

Result_t ReadKLV(const Ferro::FileReader& file, ui64_t offset, ui64_t limit, KLVPacket& packet) {
  limit = std::min<ui64_t>(limit, file.Size());
  std::array<ui8_t, MaxHeaderLength> bytes;
  size_t count = 0;
  if (offset < limit) {
    const std::span<ui8_t> wanted(bytes.data(), std::min<ui64_t>(bytes.size(), limit - offset));
    const Result_t result = file.ReadUpTo(offset, wanted, count);
    if (result.Failure()) return result;
  }
  const auto found = ParseKLV(std::span<const ui8_t>(bytes.data(), count), offset, limit);
  if (!found) return FormatError(offset, "no KLV that ends by byte %llu", static_cast<unsigned long long>(limit));
  packet = *found;
  return Ferro::RESULT_OK;
}

bool IsFillKey(const UL& key) {
  return DefaultSMPTEDict().Is(key, MDD_KLVFill);
}

// Byte 13 of a generic container key tells the item: 0x04 and 0x14 are system items (ST 379-1).
bool IsSystemItemKey(const UL& key) {
  constexpr ui8_t compatible_with_cp = 0x04, generic = 0x14;
  const UL element = DefaultSMPTEDict().ul(MDD_WAVEssence);
  const bool in_container = std::equal(key.Value() + 8, key.Value() + 12, element.Value() + 8);
  return in_container && (key.Value()[12] == compatible_with_cp || key.Value()[12] == generic);
}

// Short fill has a four-byte length too, so that it takes at least SmallestFill bytes.
void AppendFill(std::vector<ui8_t>& out, ui64_t size) {
  FERRO_ASSERT(size >= SmallestFill);
  const bool wide = size - KLHeaderLength > MaxBER4;
  const ui32_t length_size = wide ? BERLength8 : BERLength4;
  const ui64_t value_length = size - KeyLength - length_size;
  AppendKL(out, DefaultSMPTEDict().ul(MDD_KLVFill), value_length, length_size);
  out.resize(out.size() + value_length);
}

}  // namespace QUIRE::MXF
