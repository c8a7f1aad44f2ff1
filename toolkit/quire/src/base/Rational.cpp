// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Rational.h>

#include <algorithm>
#include <charconv>

namespace QUIRE {

std::string Rational::EncodeString() const {
  return std::to_string(Numerator) + ' ' + std::to_string(Denominator);
}

bool Rational::DecodeString(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  i32_t values[2] = {};
  for (i32_t& value : values) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{}) return false;
    text.remove_prefix(static_cast<size_t>(end - text.data()));
    if (&value == &values[0] && text.find_first_of(blanks) != 0) return false;
  }
  if (text.find_first_not_of(blanks) != std::string_view::npos) return false;
  Numerator = values[0];
  Denominator = values[1];
  return true;
}

bool Rational::HasValue() const {
  return Denominator != 0;
}

ui32_t Rational::ArchiveLength() const {
  return 8;
}

bool Rational::Archive(Ferro::MemIOWriter* Writer) const {
  return Writer->WriteUi32BE(static_cast<ui32_t>(Numerator)) && Writer->WriteUi32BE(static_cast<ui32_t>(Denominator));
}

bool Rational::Unarchive(Ferro::MemIOReader* Reader) {
  ui32_t bits = 0;
  if (!Reader->ReadUi32BE(&bits)) return false;
  Numerator = static_cast<i32_t>(bits);
  if (!Reader->ReadUi32BE(&bits)) return false;
  Denominator = static_cast<i32_t>(bits);
  return true;
}

}  // namespace QUIRE
