// SPDX-License-Identifier: BSD-3-Clause
#include "Decimal.h"

#include "Blanks.h"

#include <Ferro/CheckedMath.h>

#include <charconv>

namespace Cairn {

std::optional<ui64_t> ParseDecimal(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  ui64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (text.empty() || error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::optional<std::pair<ui64_t, ui64_t>> ParseDecimalPair(std::string_view text) {
  const size_t gap = text.find_first_of(BlankChars);
  if (gap == std::string_view::npos) return std::nullopt;
  const size_t next = text.find_first_not_of(BlankChars, gap);
  if (next == std::string_view::npos) return std::nullopt;
  const auto first = ParseDecimal(text.substr(0, gap));
  const auto second = ParseDecimal(text.substr(next));
  if (!first || !second) return std::nullopt;
  return std::pair(*first, *second);
}

// "1.85" is 185/100. Digits after the ninth tell nothing of a picture's shape, and would not fit.
std::optional<QUIRE::Rational> ParseDecimalFraction(std::string_view text) {
  const size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  std::string_view fraction = text.substr(std::min(point + 1, text.size()));
  fraction = fraction.substr(0, 9);
  if (fraction.starts_with('+')) return std::nullopt;
  ui64_t scale = 1;
  for (size_t i = 0; i < fraction.size(); ++i) scale *= 10;
  const auto high = whole.empty() && !fraction.empty() ? 0 : ParseDecimal(whole);
  const auto low = fraction.empty() ? 0 : ParseDecimal(fraction);
  if (!high || !low) return std::nullopt;
  const auto scaled = Ferro::CheckedMul(*high, scale);
  const auto sum = scaled ? Ferro::CheckedAdd(*scaled, *low) : std::nullopt;
  return sum ? MakeRational(*sum, scale) : std::nullopt;
}

std::string FormatDecimalFraction(const QUIRE::Rational& ratio) {
  static constexpr i64_t Scale = 1'000'000;
  const i64_t scaled = (i64_t{ratio.Numerator} * Scale + ratio.Denominator / 2) / ratio.Denominator;
  std::string text = std::to_string(scaled / Scale);
  std::string fraction = std::to_string(Scale + scaled % Scale).substr(1);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  if (!fraction.empty()) text += "." + fraction;
  return text;
}

std::optional<QUIRE::Rational> MakeRational(ui64_t numerator, ui64_t denominator) {
  const auto small_numerator = Ferro::CheckedCast<i32_t>(numerator);
  const auto small_denominator = Ferro::CheckedCast<i32_t>(denominator);
  if (!small_numerator || !small_denominator) return std::nullopt;
  return QUIRE::Rational(*small_numerator, *small_denominator);
}

}  // namespace Cairn
