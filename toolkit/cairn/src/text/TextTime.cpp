// SPDX-License-Identifier: BSD-3-Clause
#include "TextTime.h"

#include "base/Decimal.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace Cairn {
namespace {

constexpr i64_t TickLength = 4;  // ms
constexpr ui64_t LastTick = 249;
constexpr ui64_t Millisecond = 1000;  // of a second

/// A number of digits alone, at most `most` of them.
std::optional<ui64_t> Digits(std::string_view text, size_t most) {
  if (text.empty() || text.size() > most || text.find_first_not_of("0123456789") != std::string_view::npos)
    return std::nullopt;
  return ParseDecimal(text);
}

void Note(TextTime& time, TextProblem_t problem) {
  if (!time.Problem) time.Problem = problem;
}

/// Reads "HH:MM:SS" into seconds, and leaves what follows.
std::optional<TextTime> TakeSeconds(std::string_view& text) {
  TextTime time;
  for (size_t i = 0; i < 3; ++i) {
    const bool is_last = i == 2;
    const size_t end = std::min(text.find_first_of(is_last ? ":." : ":"), text.size());
    const auto value = Digits(text.substr(0, end), 2);
    if (!value || (!is_last && end == text.size())) return std::nullopt;
    if (end != 2) Note(time, TextProblem_t::Malformed);
    if (*value > (i == 0 ? 29U : 59U)) Note(time, TextProblem_t::OutOfRange);
    time.Units = time.Units * 60 + static_cast<i64_t>(*value);
    text.remove_prefix(is_last ? end : end + 1);
  }
  return time;
}

/// Reads the last part of a time, which counts `rate` units a second.
std::optional<TextTime> AddUnits(TextTime time, std::string_view text, ui64_t rate, size_t fewest, size_t most) {
  static constexpr size_t Readable = 9;
  const auto value = Digits(text, Readable);
  if (!value) return std::nullopt;
  if (text.size() < fewest || text.size() > most) Note(time, TextProblem_t::Malformed);
  if (*value >= rate) Note(time, TextProblem_t::OutOfRange);
  time.Units = time.Units * static_cast<i64_t>(rate) + static_cast<i64_t>(std::min(*value, rate - 1));
  return time;
}

std::optional<TextTime> ReadTicks(TextTime time, std::string_view text, size_t fewest) {
  auto read = AddUnits(time, text, LastTick + 1, fewest, 3);
  if (read) read->Units *= TickLength;
  return read;
}

}  // namespace

std::optional<TextTime> ParseTimeCode(std::string_view text, ui32_t rate) {
  const auto time = TakeSeconds(text);
  if (!time || !text.starts_with(':')) return std::nullopt;
  return AddUnits(*time, text.substr(1), rate, 1, text.size());
}

std::optional<TextTime> ParseTickTime(std::string_view text) {
  const auto time = TakeSeconds(text);
  if (!time || text.empty()) return std::nullopt;
  std::string fraction(text.substr(1));
  if (text.front() == ':') return ReadTicks(*time, fraction, 3);
  const bool is_long = fraction.size() > 3;
  if (!fraction.empty()) fraction.resize(3, '0');
  auto read = AddUnits(*time, fraction, Millisecond, 3, 3);
  if (read && is_long) Note(*read, TextProblem_t::Malformed);
  return read;
}

std::optional<TextTime> ParseTickFade(std::string_view text) {
  return text.find(':') == std::string_view::npos ? ReadTicks({}, text, 1) : ParseTickTime(text);
}

std::string FormatTextTime(i64_t units, std::optional<ui32_t> rate) {
  const i64_t unit_rate = rate ? i64_t{*rate} : static_cast<i64_t>(Millisecond);
  const i64_t seconds = units / unit_rate;
  std::array<char, 64> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(),
                                  rate ? "%02lld:%02lld:%02lld:%02lld" : "%02lld:%02lld:%02lld.%03lld",
                                  static_cast<long long>(seconds / 3600), static_cast<long long>(seconds / 60 % 60),
                                  static_cast<long long>(seconds % 60), static_cast<long long>(units % unit_rate)));
  return text.data();
}

}  // namespace Cairn
