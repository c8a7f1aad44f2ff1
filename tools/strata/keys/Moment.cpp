// SPDX-License-Identifier: BSD-3-Clause
#include "Moment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace Tool {

namespace {

using Ferro::i32_t;
using Ferro::i64_t;
using Ferro::Timestamp;

constexpr i64_t HalfADay = i64_t{12} * 3600 * 1000;  // milliseconds

std::tm LocalFields(const Timestamp& moment) {
  const std::time_t seconds = static_cast<std::time_t>(std::floor(double(moment.UnixMilliseconds()) / 1000));
  std::tm fields{};
  localtime_r(&seconds, &fields);
  return fields;
}

std::string DateText(int year, int month, int day) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", year, month, day);
  return text.data();
}

/// The moment at which a clock on the wall of this place shows what `shown` has as UTC, some days later.
std::optional<Timestamp> MomentOfLocal(const Timestamp& shown, int days) {
  const Timestamp::Fields fields = shown.UTC();
  std::tm local{};
  local.tm_year = fields.Year - 1900;
  local.tm_mon = fields.Month - 1;
  local.tm_mday = fields.Day + days;
  local.tm_hour = fields.Hour;
  local.tm_min = fields.Minute;
  local.tm_sec = fields.Second;
  local.tm_isdst = -1;
  const std::time_t seconds = std::mktime(&local);
  if (seconds == std::time_t{-1}) return std::nullopt;
  return Timestamp(i64_t{seconds} * 1000, static_cast<i32_t>(local.tm_gmtoff / 60));
}

/// A time of the day: "20:00:00" and "+01:00", or without an offset.
struct TimeOfDay {
  std::string Clock;
  std::string Offset;
};

std::optional<TimeOfDay> ReadTimeOfDay(const std::string& text) {
  const size_t sign = std::min(text.find_first_of("Zz+-"), text.size());
  TimeOfDay time{text.substr(0, sign), text.substr(sign)};
  if (time.Clock.size() == 5) time.Clock += ":00";
  Timestamp ignored;
  const bool is_time = time.Clock.size() == 8 &&
                       ignored.DecodeString("2000-01-01T" + time.Clock + (time.Offset.empty() ? "Z" : time.Offset));
  return is_time ? std::optional(time) : std::nullopt;
}

std::optional<Timestamp> MomentOf(const std::string& date, const TimeOfDay& time, int days = 0) {
  Timestamp moment;
  if (!moment.DecodeString(date + 'T' + time.Clock + (time.Offset.empty() ? "Z" : time.Offset))) return std::nullopt;
  if (time.Offset.empty()) return MomentOfLocal(moment, days);
  return Timestamp(moment.UnixMilliseconds() + 2 * HalfADay * days, moment.OffsetMinutes());
}

/// The date that a calendar beside such a clock shows.
std::string DateBeside(const TimeOfDay& time, const Timestamp& now) {
  if (time.Offset.empty()) {
    const std::tm local = LocalFields(now);
    return DateText(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
  }
  Timestamp there;
  static_cast<void>(there.DecodeString("2000-01-01T" + time.Clock + time.Offset));
  const Timestamp::Fields fields = Timestamp(now.UnixMilliseconds(), there.OffsetMinutes()).Local();
  return DateText(fields.Year, fields.Month, fields.Day);
}

}  // namespace

std::optional<Timestamp> ReadMoment(const std::string& text, const Timestamp& now) {
  const bool has_date = text.size() > 11 && text[4] == '-' && (text[10] == 'T' || text[10] == 't' || text[10] == ' ');
  const auto time = ReadTimeOfDay(has_date ? text.substr(11) : text);
  if (!time) return std::nullopt;
  if (has_date) return MomentOf(text.substr(0, 10), *time);
  const std::string today = DateBeside(*time, now);
  const auto moment = MomentOf(today, *time);
  const bool is_over = moment && now.UnixMilliseconds() - moment->UnixMilliseconds() > HalfADay;
  return is_over ? MomentOf(today, *time, 1) : moment;
}

std::string LocalText(const Timestamp& moment) {
  const std::tm local = LocalFields(moment);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), " %02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
  return DateText(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) + text.data();
}

std::string WrittenText(const Timestamp& moment) {
  const i32_t offset = moment.OffsetMinutes();
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), " (written in %c%02d:%02d)", offset < 0 ? '-' : '+', std::abs(offset) / 60,
                std::abs(offset) % 60);
  return LocalText(moment) + text.data();
}

Timestamp Later(const Timestamp& moment, double seconds) {
  return Timestamp(moment.UnixMilliseconds() + static_cast<i64_t>(std::llround(seconds * 1000)),
                   moment.OffsetMinutes());
}

}  // namespace Tool
