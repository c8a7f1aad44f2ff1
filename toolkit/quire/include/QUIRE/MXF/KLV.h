// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <Ferro/FileReader.h>

#include <optional>
#include <span>
#include <vector>

namespace QUIRE::MXF {

// Key, length, value (ST 336; ST 377-1, 6.3).

inline constexpr ui32_t KeyLength = 16;
/// Length fields of packs, sets and ordinary elements are written with four bytes, of large elements with eight.
inline constexpr ui32_t BERLength4 = 4;
inline constexpr ui32_t BERLength8 = 8;
/// Key and four-byte length: what precedes the value of an ordinary KLV.
inline constexpr ui32_t KLHeaderLength = KeyLength + BERLength4;
/// Largest value length that a four-byte length field holds.
inline constexpr ui64_t MaxBER4 = 0xffffff;

struct BERField {
  ui64_t Value = 0;
  ui32_t Size = 0;  ///< bytes the field takes, 1 to 9
};

/// Reads a BER length at the start of `bytes`: short form or up to eight length bytes, leading zeros allowed. No value for
/// the indefinite form, more than eight bytes, a value beyond 2^63 - 1, or too few bytes.
[[nodiscard]] QUIRE_API std::optional<BERField> ReadBER(std::span<const ui8_t> bytes);
/// Appends `value` as a length field of `size` bytes (1 to 9; 1 is the short form). The value must fit.
QUIRE_API void AppendBER(std::vector<ui8_t>& out, ui64_t value, ui32_t size = BERLength4);
/// Appends a key and the length of the value to follow.
QUIRE_API void AppendKL(std::vector<ui8_t>& out, const UL& key, ui64_t value_length, ui32_t length_size = BERLength4);

/// Where one KLV lies. Offsets are in bytes from the start of the file (or of the buffer).
struct KLVPacket {
  UL Key;
  ui64_t Offset = 0;        ///< of the key
  ui32_t HeaderLength = 0;  ///< key and length field, 17 to 25
  ui64_t ValueLength = 0;

  [[nodiscard]] ui64_t ValueOffset() const { return Offset + HeaderLength; }
  /// The first byte after the KLV.
  [[nodiscard]] ui64_t End() const { return ValueOffset() + ValueLength; }
};

/// Reads key and length at the start of `bytes`, which lie at `offset`. The KLV must end at or before `limit`.
/// No value when it does not, or the length field is malformed. Logs nothing.
[[nodiscard]] QUIRE_API std::optional<KLVPacket> ParseKLV(std::span<const ui8_t> bytes, ui64_t offset, ui64_t limit);
/// Reads key and length of the KLV at `offset` of a file; as ParseKLV, with a limit of at most the file's size.
/// @return RESULT_OK; RESULT_FORMAT, with one log line, where there is no proper KLV; what the reader returns.
[[nodiscard]] QUIRE_API Result_t ReadKLV(const Ferro::FileReader& file, ui64_t offset, ui64_t limit, KLVPacket& packet);

/// True for the key of a fill item, current or legacy (ST 377-1, 6.3.3).
[[nodiscard]] QUIRE_API bool IsFillKey(const UL& key);
/// True for the keys of system items, which broadcast files put before the elements of an edit unit (ST 379-1).
[[nodiscard]] QUIRE_API bool IsSystemItemKey(const UL& key);
/// Fewer bytes than this cannot be expressed as fill with a four-byte length.
inline constexpr ui64_t SmallestFill = KLHeaderLength;
/// Appends a fill item of `size` bytes altogether; at least SmallestFill.
QUIRE_API void AppendFill(std::vector<ui8_t>& out, ui64_t size);

}  // namespace QUIRE::MXF
