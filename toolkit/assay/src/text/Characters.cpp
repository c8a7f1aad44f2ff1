// SPDX-License-Identifier: BSD-3-Clause
#include "Characters.h"

#include <array>
#include <cstdio>

namespace Assay {
namespace {

constexpr char32_t Replacement = 0xFFFD;

struct Range {
  char32_t First, Last;
};

// Default_Ignorable_Code_Point of Unicode, as far as texts have them, and controls.
constexpr std::array<Range, 12> Shapeless = {{{0x0000, 0x001F},
                                              {0x007F, 0x009F},
                                              {0x00AD, 0x00AD},
                                              {0x034F, 0x034F},
                                              {0x061C, 0x061C},
                                              {0x180B, 0x180F},
                                              {0x200B, 0x200F},
                                              {0x2028, 0x202E},
                                              {0x2060, 0x206F},
                                              {0xFE00, 0xFE0F},
                                              {0xFEFF, 0xFEFF},
                                              {0xE0000, 0xE0FFF}}};

/// How many bytes a character has that begins so; 0 for a byte that begins none.
size_t LengthOf(unsigned char first) {
  if (first < 0x80) return 1;
  if (first < 0xC2) return 0;
  if (first < 0xE0) return 2;
  return first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
}

}  // namespace

char32_t TakeCharacter(std::string_view& text) {
  const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
  const size_t length = LengthOf(byte(0));
  char32_t character = length < 2 ? byte(0) : byte(0) & (0x7FU >> length);
  bool is_whole = length != 0 && length <= text.size();
  for (size_t i = 1; is_whole && i < length; ++i) {
    is_whole = (byte(i) & 0xC0U) == 0x80U;
    character = character << 6U | (byte(i) & 0x3FU);
  }
  text.remove_prefix(is_whole ? length : 1);
  return is_whole ? character : Replacement;
}

size_t CountCharacters(std::string_view text) {
  size_t count = 0;
  for (; !text.empty(); ++count) static_cast<void>(TakeCharacter(text));
  return count;
}

bool IsShapeless(char32_t character) {
  for (const Range& range : Shapeless)
    if (range.First <= character && character <= range.Last) return true;
  return false;
}

std::string DescribeCharacter(char32_t character) {
  std::array<char, 16> code{};
  std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(character));
  std::string text = code.data();
  if (character <= 0x20 || IsShapeless(character)) return text;
  text += ' ';
  const auto add = [&](char32_t bits) { text += static_cast<char>(bits); };
  if (character < 0x80) {
    add(character);
  } else if (character < 0x800) {
    add(0xC0U | character >> 6U);
    add(0x80U | (character & 0x3FU));
  } else if (character < 0x10000) {
    add(0xE0U | character >> 12U);
    add(0x80U | (character >> 6U & 0x3FU));
    add(0x80U | (character & 0x3FU));
  } else {
    add(0xF0U | character >> 18U);
    add(0x80U | (character >> 12U & 0x3FU));
    add(0x80U | (character >> 6U & 0x3FU));
    add(0x80U | (character & 0x3FU));
  }
  return text;
}

}  // namespace Assay
