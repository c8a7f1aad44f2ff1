// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

#include <QUIRE/Rational.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Cairn {

// Numbers as XML Schema writes them (part 2, 3.3), whatever the locale. No value where the text is malformed, negative
// or too large.

/// Digits with an optional plus sign in front.
[[nodiscard]] std::optional<ui64_t> ParseDecimal(std::string_view text);
/// Two of them, separated by white space.
[[nodiscard]] std::optional<std::pair<ui64_t, ui64_t>> ParseDecimalPair(std::string_view text);
/// Digits with an optional point: "1.85" is 185/100, "2" is 2/1. At most nine digits after the point count.
[[nodiscard]] std::optional<QUIRE::Rational> ParseDecimalFraction(std::string_view text);
/// The decimal form of a positive ratio, six digits after the point at most: 185/100 is "1.85".
[[nodiscard]] std::string FormatDecimalFraction(const QUIRE::Rational& ratio);
/// A rational of two numbers that fit.
[[nodiscard]] std::optional<QUIRE::Rational> MakeRational(ui64_t numerator, ui64_t denominator);

}  // namespace Cairn
