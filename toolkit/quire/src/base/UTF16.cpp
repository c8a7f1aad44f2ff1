// SPDX-License-Identifier: BSD-3-Clause
#include "BigEndian.h"

#include <QUIRE/MXF/DataTypes.h>

#include <algorithm>

namespace QUIRE::MXF {
namespace {

constexpr ui32_t Replacement = 0xfffd;

void AppendUTF8(std::string& out, ui32_t point) {
  const auto put = [&out](ui32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (point < 0x80) return put(point);
  if (point < 0x800) {
    put(0xc0 | point >> 6);
  } else if (point < 0x10000) {
    put(0xe0 | point >> 12);
    put(0x80 | (point >> 6 & 0x3f));
  } else {
    put(0xf0 | point >> 18);
    put(0x80 | (point >> 12 & 0x3f));
    put(0x80 | (point >> 6 & 0x3f));
  }
  put(0x80 | (point & 0x3f));
}

// Two units stand for a code point from U+10000 on: ten bits in the high surrogate, then ten in the low one.
bool IsHighSurrogate(ui32_t unit) {
  return unit >= 0xd800 && unit < 0xdc00;
}
bool IsLowSurrogate(ui32_t unit) {
  return unit >= 0xdc00 && unit < 0xe000;
}

ui32_t Printable(ui32_t point) {
  const bool control = point < 0x20 || (point >= 0x7f && point < 0xa0);
  return control && point != '\t' && point != '\n' && point != '\r' ? Replacement : point;
}

// Every code unit of a text in a Latin script that was stored little-endian has a zero second byte and a first that is not.
bool IsLittleEndian(std::span<const ui8_t> bytes) {
  size_t i = 0;
  for (; i + 1 < bytes.size() && (bytes[i] != 0 || bytes[i + 1] != 0); i += 2)
    if (bytes[i] == 0 || bytes[i + 1] != 0) return false;
  return i > 0;
}

// Reads one code point at text[position] and moves past it; a malformed byte counts as one replacement.
ui32_t NextUTF8(const std::string& text, size_t& position) {
  const auto byte = [&text](size_t i) -> ui32_t { return i < text.size() ? static_cast<ui8_t>(text[i]) : 0u; };
  const ui32_t first = byte(position++);
  if (first < 0x80) return first;
  const ui32_t extra = first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
  if (first < 0xc2 || first > 0xf4) return Replacement;
  ui32_t point = first & (0x3fu >> extra);
  for (ui32_t i = 0; i < extra; ++i) {
    if ((byte(position + i) & 0xc0) != 0x80) return Replacement;
    point = point << 6 | (byte(position + i) & 0x3f);
  }
  constexpr ui32_t smallest[] = {0x80, 0x800, 0x10000};
  if (point < smallest[extra - 1] || point > 0x10ffff || (point >= 0xd800 && point < 0xe000)) return Replacement;
  position += extra;
  return point;
}

}  // namespace

std::string DecodeUTF16(std::span<const ui8_t> bytes) {
  const bool little = IsLittleEndian(bytes);
  const auto unit = [&](size_t i) -> ui32_t {
    return little ? ui32_t(bytes[i]) | ui32_t(bytes[i + 1]) << 8 : LoadBE<ui16_t>(bytes.data() + i);
  };
  std::string text;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    ui32_t point = unit(i);
    if (point == 0) break;
    if (IsHighSurrogate(point) && i + 3 < bytes.size() && IsLowSurrogate(unit(i + 2))) {
      point = 0x10000 + ((point - 0xd800) << 10) + (unit(i + 2) - 0xdc00);
      i += 2;
    } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
      point = Replacement;
    }
    AppendUTF8(text, Printable(point));
  }
  return text;
}

std::vector<ui8_t> EncodeUTF16(const std::string& text) {
  std::vector<ui8_t> bytes;
  for (size_t position = 0; position < text.size();) {
    const ui32_t point = NextUTF8(text, position);
    if (point < 0x10000) {
      AppendBE(bytes, static_cast<ui16_t>(point));
    } else {
      AppendBE(bytes, static_cast<ui16_t>(0xd800 + ((point - 0x10000) >> 10)));
      AppendBE(bytes, static_cast<ui16_t>(0xdc00 + ((point - 0x10000) & 0x3ff)));
    }
  }
  return bytes;
}

}  // namespace QUIRE::MXF
