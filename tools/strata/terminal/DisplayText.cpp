// SPDX-License-Identifier: BSD-3-Clause
#include "DisplayText.h"

#include <algorithm>
#include <array>
#include <functional>

namespace Tool {

namespace {

constexpr char32_t Replacement = 0xfffd;
constexpr char32_t Ellipsis = 0x2026;

struct Range {
  char32_t First;
  char32_t Last;
};

// Unicode 15, East Asian Width W and F, by blocks.
constexpr std::array Wide = {Range{0x1100, 0x115f},   Range{0x231a, 0x231b},   Range{0x2e80, 0x303e},
                             Range{0x3041, 0x33ff},   Range{0x3400, 0x4dbf},   Range{0x4e00, 0x9fff},
                             Range{0xa000, 0xa4cf},   Range{0xa960, 0xa97f},   Range{0xac00, 0xd7a3},
                             Range{0xf900, 0xfaff},   Range{0xfe30, 0xfe6f},   Range{0xff00, 0xff60},
                             Range{0xffe0, 0xffe6},   Range{0x1f300, 0x1f64f}, Range{0x1f680, 0x1f6ff},
                             Range{0x1f900, 0x1f9ff}, Range{0x20000, 0x3fffd}};
// Marks that stand on the letter before them, and characters without form.
constexpr std::array Narrow = {
    Range{0x0300, 0x036f}, Range{0x0483, 0x0489}, Range{0x0591, 0x05bd}, Range{0x064b, 0x065f}, Range{0x0900, 0x0902},
    Range{0x093c, 0x093c}, Range{0x0941, 0x0948}, Range{0x0e31, 0x0e31}, Range{0x0e34, 0x0e3a}, Range{0x0e47, 0x0e4e},
    Range{0x1ab0, 0x1aff}, Range{0x1dc0, 0x1dff}, Range{0x200b, 0x200d}, Range{0x20d0, 0x20ff}, Range{0xfe00, 0xfe0f},
    Range{0xfe20, 0xfe2f}, Range{0xfeff, 0xfeff}};
// Control characters, marks and embeddings of direction, and what is no character.
constexpr std::array Refused = {Range{0x00, 0x1f},       Range{0x7f, 0x9f},          Range{0x061c, 0x061c},
                                Range{0x200e, 0x200f},   Range{0x2028, 0x202e},      Range{0x2066, 0x2069},
                                Range{0xd800, 0xdfff},   Range{0xfdd0, 0xfdef},      Range{0xfffe, 0xffff},
                                Range{0xe0000, 0xe0fff}, Range{0x110000, 0xffffffff}};

template <size_t Count>
bool IsIn(char32_t code, const std::array<Range, Count>& ranges) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [code](const Range& range) { return code >= range.First && code <= range.Last; });
}

/// Takes one character off `text`; Replacement, and one byte taken, where it is malformed (RFC 3629).
char32_t Take(std::string_view& text) {
  const auto byte = [&](size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char first = byte(0);
  const size_t length = first < 0x80   ? 1
                        : first < 0xc2 ? 0
                        : first < 0xe0 ? 2
                        : first < 0xf0 ? 3
                        : first < 0xf5 ? 4
                                       : 0;
  char32_t code = length < 2 ? first : first & (0x7fU >> length);
  bool good = length != 0 && length <= text.size();
  for (size_t index = 1; good && index < length; ++index) {
    good = (byte(index) & 0xc0U) == 0x80;
    code = (code << 6U) | (byte(index) & 0x3fU);
  }
  constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
  good = good && code >= smallest[length];
  text.remove_prefix(good ? length : 1);
  return good ? code : Replacement;
}

void Append(std::string& text, char32_t code) {
  const auto add = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (code < 0x80) return add(code);
  if (code < 0x800) {
    add(0xc0 | (code >> 6U));
  } else if (code < 0x10000) {
    add(0xe0 | (code >> 12U));
    add(0x80 | ((code >> 6U) & 0x3fU));
  } else {
    add(0xf0 | (code >> 18U));
    add(0x80 | ((code >> 12U) & 0x3fU));
    add(0x80 | ((code >> 6U) & 0x3fU));
  }
  add(0x80 | (code & 0x3fU));
}

double CellsOf(const DisplayCharacter& character) {
  return character.Columns;
}

// Of the letter's height, in the widest of the usual faces.
double WidthOf(const DisplayCharacter& character) {
  if (character.Columns != 1) return character.Columns * 0.55;
  const char32_t code = character.Code;
  if (code >= 0x80) return 0.7;
  const char letter = static_cast<char>(code);
  if (std::string_view("il.,:;'|!I()[]tfjr ").find(letter) != std::string_view::npos) return 0.38;
  if (std::string_view("mwMW@%").find(letter) != std::string_view::npos) return 0.95;
  return letter >= 'A' && letter <= 'Z' ? 0.72 : 0.6;
}

double Measure(std::string_view text, const std::function<double(const DisplayCharacter&)>& width) {
  double sum = 0;
  for (const DisplayCharacter& character : DisplayCharacters(text)) sum += width(character);
  return sum;
}

std::string Fit(std::string_view text, double room, const std::function<double(const DisplayCharacter&)>& width) {
  if (Measure(text, width) <= room) return DisplayText(text);
  double left = room - width({Ellipsis, 1});
  std::string out;
  if (left < 0) return out;
  for (const DisplayCharacter& character : DisplayCharacters(text)) {
    left -= width(character);
    if (left < 0) break;
    Append(out, character.Code);
  }
  Append(out, Ellipsis);
  return out;
}

}  // namespace

std::vector<DisplayCharacter> DisplayCharacters(std::string_view text) {
  std::vector<DisplayCharacter> characters;
  characters.reserve(text.size());
  while (!text.empty()) {
    char32_t code = Take(text);
    if (code == '\n' || code == '\r' || code == '\t')
      code = ' ';
    else if (IsIn(code, Refused))
      code = Replacement;
    characters.push_back({code, IsIn(code, Narrow) ? 0U : IsIn(code, Wide) ? 2U : 1U});
  }
  return characters;
}

std::string EncodeCharacter(char32_t code) {
  std::string text;
  Append(text, code);
  return text;
}

std::string DisplayText(std::string_view text) {
  std::string out;
  for (const DisplayCharacter& character : DisplayCharacters(text)) Append(out, character.Code);
  return out;
}

std::string DisplayLines(std::string_view text) {
  std::string out;
  for (size_t end = text.find('\n'); end != text.npos; end = text.find('\n')) {
    out += DisplayText(text.substr(0, end)) + '\n';
    text.remove_prefix(end + 1);
  }
  return out + DisplayText(text);
}

unsigned ColumnsOf(std::string_view text) {
  return static_cast<unsigned>(Measure(text, CellsOf));
}

std::string FitColumns(std::string_view text, unsigned columns) {
  return Fit(text, columns, CellsOf);
}

double PixelsOf(std::string_view text, double size) {
  return Measure(text, WidthOf) * size;
}

std::string FitPixels(std::string_view text, double size, double pixels) {
  std::string fitted = Fit(text, pixels / size, WidthOf);
  return fitted == "\u2026" ? "" : fitted;
}

}  // namespace Tool
