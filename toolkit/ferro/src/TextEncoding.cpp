// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/TextEncoding.h>

#include <algorithm>
#include <array>
#include <optional>

namespace Ferro {
namespace {

constexpr std::string_view s_HexDigits = "0123456789abcdef";
constexpr std::string_view s_Base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::optional<ui8_t> HexValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<ui8_t>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<ui8_t>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<ui8_t>(c - 'A' + 10);
  return std::nullopt;
}

constexpr ui8_t NotADigit = 0xff;

constexpr std::array<ui8_t, 256> s_Base64Values = [] {
  std::array<ui8_t, 256> values{};
  values.fill(NotADigit);
  for (size_t i = 0; i < s_Base64Digits.size(); ++i)
    values[static_cast<ui8_t>(s_Base64Digits[i])] = static_cast<ui8_t>(i);
  return values;
}();

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

}  // namespace

std::string bin2hex(std::span<const ui8_t> bytes) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (const ui8_t byte : bytes) {
    text += s_HexDigits[byte >> 4];
    text += s_HexDigits[byte & 0x0f];
  }
  return text;
}

bool hex2bin(std::string_view text, std::span<ui8_t> out) {
  size_t digits = 0;
  for (const char c : text) {
    if (c == '-') continue;
    const auto value = HexValue(c);
    if (!value || digits / 2 == out.size()) return false;
    ui8_t& byte = out[digits / 2];
    byte = digits % 2 == 0 ? static_cast<ui8_t>(*value << 4) : static_cast<ui8_t>(byte | *value);
    ++digits;
  }
  return digits == 2 * out.size();
}

std::string bin2UUIDhex(std::span<const ui8_t, 16> bytes) {
  std::string text = bin2hex(bytes);
  for (const size_t position : {8U, 13U, 18U, 23U}) text.insert(position, 1, '-');
  return text;
}

std::string base64encode(std::span<const ui8_t> bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t count = std::min<size_t>(3, bytes.size() - i);
    ui32_t group = static_cast<ui32_t>(bytes[i]) << 16;
    if (count > 1) group |= static_cast<ui32_t>(bytes[i + 1]) << 8;
    if (count > 2) group |= bytes[i + 2];
    for (size_t digit = 0; digit < 4; ++digit)
      text += digit <= count ? s_Base64Digits[(group >> (18 - 6 * digit)) & 0x3f] : '=';
  }
  return text;
}

bool base64decode(std::string_view text, std::vector<ui8_t>& out) {
  out.clear();
  std::vector<ui8_t> bytes;
  bytes.reserve(text.size() / 4 * 3);
  ui32_t group = 0;
  size_t digits = 0;
  size_t padding = 0;
  for (const char c : text) {
    if (IsSpace(c)) continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    const ui8_t value = s_Base64Values[static_cast<ui8_t>(c)];
    if (value == NotADigit || padding > 0) return false;
    group = group << 6 | value;
    if (++digits % 4 == 0)
      for (const unsigned shift : {16U, 8U, 0U}) bytes.push_back(static_cast<ui8_t>(group >> shift));
  }
  // The last group: 2 digits carry one byte and 4 spare bits, 3 digits carry two bytes and 2 spare bits; spare bits are
  // zero, which the lexical form of XML Schema's base64Binary demands too.
  const size_t rest = digits % 4;
  if (rest == 1 || padding != (4 - rest) % 4) return false;
  if (rest == 2) {
    if ((group & 0x0f) != 0) return false;
    bytes.push_back(static_cast<ui8_t>(group >> 4));
  } else if (rest == 3) {
    if ((group & 0x03) != 0) return false;
    bytes.push_back(static_cast<ui8_t>(group >> 10));
    bytes.push_back(static_cast<ui8_t>(group >> 2));
  }
  out = std::move(bytes);
  return true;
}

bool base64decode(std::string_view text, std::span<ui8_t> out) {
  std::vector<ui8_t> bytes;
  if (!base64decode(text, bytes) || bytes.size() != out.size()) return false;
  std::copy(bytes.begin(), bytes.end(), out.begin());
  return true;
}

}  // namespace Ferro
