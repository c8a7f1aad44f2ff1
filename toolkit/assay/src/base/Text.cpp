// SPDX-License-Identifier: BSD-3-Clause
#include "Text.h"

#include <algorithm>

namespace Assay {
namespace {

constexpr std::string_view Blanks = " \t\n\r";

template <class MapT>
std::string Mapped(std::string_view text, MapT map) {
  std::string out(text);
  std::ranges::transform(out, out.begin(), map);
  return out;
}

}  // namespace

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(Blanks) == std::string_view::npos;
}

std::string_view Trim(std::string_view text) {
  const size_t begin = text.find_first_not_of(Blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(Blanks) - begin + 1);
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  for (text = Trim(text); !text.empty(); text = Trim(text)) {
    const size_t length = std::min(text.find_first_of(Blanks), text.size());
    words.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  return words;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (size_t begin = 0;;) {
    const size_t end = text.find(separator, begin);
    if (end == std::string_view::npos) {
      parts.push_back(text.substr(begin));
      return parts;
    }
    parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
}

std::string ToLower(std::string_view text) {
  return Mapped(text, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
}

std::string ToUpper(std::string_view text) {
  return Mapped(text, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
}

std::string Quoted(std::string_view text) {
  constexpr size_t MaxCharacters = 80;
  std::string out;
  size_t characters = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool continues = (byte & 0xC0) == 0x80;
    if (!continues && ++characters > MaxCharacters) return out + "\xE2\x80\xA6";
    out += byte < 0x20 || byte == 0x7F ? ' ' : c;
  }
  return out;
}

}  // namespace Assay
