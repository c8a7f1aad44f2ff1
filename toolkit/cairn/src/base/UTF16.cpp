// SPDX-License-Identifier: BSD-3-Clause
#include "UTF16.h"

#include <algorithm>

namespace Cairn {
namespace {

constexpr char32_t Replacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

void AppendUTF8(std::string& out, char32_t code_point) {
  const auto tail = [&](unsigned shift) { out += static_cast<char>(0x80 | ((code_point >> shift) & 0x3F)); };
  if (code_point < 0x80) {
    out += static_cast<char>(code_point);
  } else if (code_point < 0x800) {
    out += static_cast<char>(0xC0 | (code_point >> 6));
    tail(0);
  } else if (code_point < 0x10000) {
    out += static_cast<char>(0xE0 | (code_point >> 12));
    tail(6);
    tail(0);
  } else {
    out += static_cast<char>(0xF0 | (code_point >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

bool IsPaired(std::u16string_view text) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (IsLowSurrogate(text[i])) return false;
    if (IsHighSurrogate(text[i]) && (++i == text.size() || !IsLowSurrogate(text[i]))) return false;
  }
  return true;
}

void AppendUTF8(std::string& out, std::u16string_view text) {
  for (size_t i = 0; i < text.size(); ++i) {
    // Most text is ASCII, which is copied in one piece.
    const auto* ascii_end = std::find_if(text.begin() + i, text.end(), [](char16_t unit) { return unit >= 0x80; });
    const size_t at = out.size();
    out.resize(at + static_cast<size_t>(ascii_end - (text.begin() + i)));
    for (size_t k = at; k < out.size(); ++k) out[k] = static_cast<char>(text[i++]);
    if (i == text.size()) return;
    char32_t code_point = text[i];
    if (IsHighSurrogate(code_point) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      code_point = 0x10000 + ((code_point - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (IsHighSurrogate(code_point) || IsLowSurrogate(code_point)) {
      code_point = Replacement;
    }
    AppendUTF8(out, code_point);
  }
}

std::string UTF16ToUTF8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  AppendUTF8(out, text);
  return out;
}

}  // namespace Cairn
