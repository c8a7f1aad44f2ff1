// SPDX-License-Identifier: BSD-3-Clause
#include "XMLCharacters.h"

#include <algorithm>

namespace Ferro {
namespace {

struct Range {
  char32_t First;
  char32_t Last;
};

// The colon, which XML allows too, belongs to qualified names alone.
constexpr Range s_NameStart[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xc0, 0xd6},     {0xd8, 0xf6},
    {0xf8, 0x2ff},    {0x370, 0x37d},   {0x37f, 0x1fff},  {0x200c, 0x200d}, {0x2070, 0x218f},
    {0x2c00, 0x2fef}, {0x3001, 0xd7ff}, {0xf900, 0xfdcf}, {0xfdf0, 0xfffd}, {0x10000, 0xeffff},
};
constexpr Range s_FurtherNameCharacters[] = {
    {'-', '.'}, {'0', '9'}, {0xb7, 0xb7}, {0x300, 0x36f}, {0x203f, 0x2040},
};

template <size_t N>
bool IsIn(const Range (&ranges)[N], char32_t c) {
  return std::any_of(ranges, ranges + N, [c](const Range& range) { return c >= range.First && c <= range.Last; });
}

bool IsLocalName(std::string_view name) {
  if (name.empty() || !IsNameStart(TakeUTF8(name))) return false;
  while (!name.empty())
    if (!IsNameCharacter(TakeUTF8(name))) return false;
  return true;
}

}  // namespace

char32_t TakeUTF8(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::string_view rest = text.substr(1);
  text = rest;
  if (lead < 0x80) return lead;
  const size_t following = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : 1;
  if (lead < 0xc2 || lead > 0xf4 || rest.size() < following) return NoCharacter;

  char32_t c = lead & (0x3fU >> following);
  for (size_t i = 0; i < following; ++i) {
    const auto byte = static_cast<unsigned char>(rest[i]);
    if ((byte & 0xc0) != 0x80) return NoCharacter;
    c = c << 6 | (byte & 0x3f);
  }
  constexpr char32_t Smallest[] = {0, 0x80, 0x800, 0x10000};
  if (c < Smallest[following] || c > 0x10ffff || (c >= 0xd800 && c <= 0xdfff)) return NoCharacter;
  text = rest.substr(following);
  return c;
}

void AppendUTF8(std::string& text, char32_t c) {
  const auto put = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xc0 | c >> 6);
    put(0x80 | (c & 0x3f));
  } else if (c < 0x10000) {
    put(0xe0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3f));
    put(0x80 | (c & 0x3f));
  } else {
    put(0xf0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3f));
    put(0x80 | (c >> 6 & 0x3f));
    put(0x80 | (c & 0x3f));
  }
}

bool IsXMLCharacter(char32_t c) {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return c <= 0xd7ff || (c >= 0xe000 && c <= 0xfffd) || (c >= 0x10000 && c <= 0x10ffff);
}

bool IsXMLSpace(char32_t c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool IsNameStart(char32_t c) {
  return IsIn(s_NameStart, c);
}

bool IsNameCharacter(char32_t c) {
  return IsNameStart(c) || IsIn(s_FurtherNameCharacters, c);
}

bool IsQualifiedName(std::string_view name) {
  const size_t colon = name.find(':');
  if (colon == std::string_view::npos) return IsLocalName(name);
  return IsLocalName(name.substr(0, colon)) && IsLocalName(name.substr(colon + 1));
}

}  // namespace Ferro
