// SPDX-License-Identifier: BSD-3-Clause
#include "DateTime.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace Assay {
namespace {

/// The number that all of `text` is; no value where it has other characters or not that many digits.
std::optional<int> ReadNumber(std::string_view text, size_t digits) {
  int number = 0;
  if (text.size() != digits || !std::ranges::all_of(text, IsDigit)) return std::nullopt;
  if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc()) return std::nullopt;
  return number;
}

/// Hours and minutes, a colon between, in minutes.
std::optional<int> ReadMinutes(std::string_view text) {
  if (text.size() != 5 || text[2] != ':') return std::nullopt;
  const auto hours = ReadNumber(text.substr(0, 2), 2);
  const auto minutes = ReadNumber(text.substr(3), 2);
  if (!hours || !minutes || *minutes > 59) return std::nullopt;
  return *hours * 60 + *minutes;
}

constexpr int MaxOffset = 14 * 60;  // minutes
constexpr size_t MaxYearDigits = 6;

bool ReadDate(std::string_view text, DateTime& out) {
  const size_t year_length = std::min(text.find('-', 1), text.size());
  const bool is_negative = text.starts_with('-');
  const std::string_view year_text = text.substr(is_negative ? 1 : 0, year_length - (is_negative ? 1 : 0));
  if (year_text.size() < 4 || year_text.size() > MaxYearDigits || text.size() != year_length + 6) return false;
  if (year_text.size() > 4 && year_text.front() == '0') return false;
  const auto year = ReadNumber(year_text, year_text.size());
  const auto month = ReadNumber(text.substr(year_length + 1, 2), 2);
  const auto day = ReadNumber(text.substr(year_length + 4), 2);
  if (!year || *year == 0 || !month || !day || text[year_length + 3] != '-') return false;
  out.Year = is_negative ? -*year : *year;
  out.Month = *month;
  out.Day = *day;
  const int leap_year = (out.Year % 4 == 0 && out.Year % 100 != 0) || out.Year % 400 == 0 ? 2024 : 2023;
  return std::chrono::year_month_day(std::chrono::year(leap_year), std::chrono::month(static_cast<unsigned>(*month)),
                                     std::chrono::day(static_cast<unsigned>(*day)))
      .ok();
}

/// "09:30:00", a fraction behind, in seconds; 24:00:00 is the end of the day.
std::optional<int> ReadTimeOfDay(std::string_view text) {
  if (text.size() < 8 || text[5] != ':') return std::nullopt;
  const auto minutes = ReadMinutes(text.substr(0, 5));
  const auto seconds = ReadNumber(text.substr(6, 2), 2);
  const std::string_view fraction = text.substr(8);
  if (!minutes || !seconds || *seconds > 59) return std::nullopt;
  if (!fraction.empty() &&
      (fraction.front() != '.' || fraction.size() == 1 || !std::ranges::all_of(fraction.substr(1), IsDigit)))
    return std::nullopt;
  const int total = *minutes * 60 + *seconds;
  constexpr int Day = 24 * 60 * 60;
  const bool is_more = fraction.find_first_not_of(".0") != std::string_view::npos;
  if (total > Day || (total == Day && is_more)) return std::nullopt;
  return total;
}

/// Takes the offset from the end of the text.
bool TakeOffset(std::string_view& text, DateTime& out, int& minutes) {
  if (text.ends_with('Z')) {
    out.HasOffset = true;
    text.remove_suffix(1);
    return true;
  }
  const size_t time = text.find('T');
  const size_t sign = text.find_first_of("+-", time);
  if (time == std::string_view::npos || sign == std::string_view::npos) return true;
  const auto offset = ReadMinutes(text.substr(sign + 1));
  if (!offset || *offset > MaxOffset) return false;
  out.HasOffset = true;
  minutes = text[sign] == '-' ? -*offset : *offset;
  text = text.substr(0, sign);
  return true;
}

}  // namespace

std::optional<DateTime> DateTime::FromText(std::string_view text) {
  DateTime out;
  int offset = 0;
  if (!TakeOffset(text, out, offset)) return std::nullopt;
  const size_t time = text.find('T');
  if (time == std::string_view::npos || !ReadDate(text.substr(0, time), out)) return std::nullopt;
  const auto seconds = ReadTimeOfDay(text.substr(time + 1));
  if (!seconds) return std::nullopt;
  // Years beyond what the calendar of the library counts are far enough away to count alike.
  const int year = std::clamp(out.Year, -32'000, 32'000);
  const std::chrono::sys_days days(std::chrono::year_month_day(std::chrono::year(year),
                                                               std::chrono::month(static_cast<unsigned>(out.Month)),
                                                               std::chrono::day(static_cast<unsigned>(out.Day))));
  out.Seconds = i64_t{days.time_since_epoch().count()} * 86'400 + *seconds - i64_t{offset} * 60;
  return out;
}

}  // namespace Assay
