// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/Timestamp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>

namespace Ferro {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using LocalTime = std::chrono::sys_time<milliseconds>;  // the calendar at some offset, as if it were UTC

constexpr i32_t s_MaxOffset = 24 * 60 - 1;
constexpr i64_t s_MillisecondsPerMinute = 60'000;

constexpr LocalTime s_First{std::chrono::sys_days{std::chrono::year{1} / 1 / 1}};
constexpr LocalTime s_Last{LocalTime{std::chrono::sys_days{std::chrono::year{10000} / 1 / 1}} - milliseconds{1}};

// The moment nearest to the given one whose local calendar lies within the years 1 to 9999.
i64_t InRange(i64_t unix_milliseconds, i32_t offset_minutes) {
  FERRO_ASSERT(offset_minutes >= -s_MaxOffset && offset_minutes <= s_MaxOffset);
  const i64_t offset = offset_minutes * s_MillisecondsPerMinute;
  return std::clamp(unix_milliseconds, s_First.time_since_epoch().count() - offset,
                    s_Last.time_since_epoch().count() - offset);
}

Timestamp::Fields FieldsOf(i64_t local_milliseconds) {
  const LocalTime time{milliseconds{local_milliseconds}};
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss clock{time - day};
  return {
      static_cast<ui16_t>(static_cast<int>(date.year())),    static_cast<ui8_t>(static_cast<unsigned>(date.month())),
      static_cast<ui8_t>(static_cast<unsigned>(date.day())), static_cast<ui8_t>(clock.hours().count()),
      static_cast<ui8_t>(clock.minutes().count()),           static_cast<ui8_t>(clock.seconds().count()),
      static_cast<ui16_t>(clock.subseconds().count())};
}

/// Takes a text apart from its front. After the first part that is missing all further ones are.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : m_Text(text) {}

  [[nodiscard]] bool Good() const { return m_Good; }
  [[nodiscard]] bool AtEnd() const { return m_Text.empty(); }

  /// Takes the next character when it is one of `characters`; gives it, or NUL.
  char TakeOneOf(std::string_view characters) {
    if (m_Text.empty() || characters.find(m_Text.front()) == std::string_view::npos) return '\0';
    const char c = m_Text.front();
    m_Text.remove_prefix(1);
    return c;
  }

  void Expect(std::string_view one_of) {
    if (TakeOneOf(one_of) == '\0') m_Good = false;
  }

  /// Exactly `digits` digits, whose number is at most `max`.
  unsigned Number(unsigned digits, unsigned max) {
    unsigned value = 0;
    for (; digits > 0; --digits) {
      const char digit = TakeOneOf("0123456789");
      if (digit == '\0') m_Good = false;
      value = value * 10 + static_cast<unsigned>(digit - '0');
    }
    if (value > max) m_Good = false;
    return value;
  }

  /// A point and at least one digit, when a point comes next. Digits after the third are dropped.
  milliseconds Fraction() {
    if (TakeOneOf(".") == '\0') return milliseconds{0};
    unsigned value = Number(1, 9) * 100;
    for (unsigned weight = 10; const char digit = TakeOneOf("0123456789"); weight /= 10)
      value += static_cast<unsigned>(digit - '0') * weight;
    return milliseconds{value};
  }

  /// "Z", "+hh:mm", "-hh:mm", or nothing.
  minutes Offset() {
    if (AtEnd() || TakeOneOf("Zz") != '\0') return minutes{0};
    const char sign = TakeOneOf("+-");
    if (sign == '\0') m_Good = false;
    const unsigned hours = Number(2, 23);
    Expect(":");
    const auto offset = minutes{hours * 60 + Number(2, 59)};
    return sign == '-' ? -offset : offset;
  }

 private:
  std::string_view m_Text;
  bool m_Good = true;
};

bool IsStartOfMonth(LocalTime utc) {
  const auto day = std::chrono::floor<std::chrono::days>(utc);
  return utc - day < std::chrono::seconds{1} && std::chrono::year_month_day{day}.day() == std::chrono::day{1};
}

struct Moment {
  LocalTime Local;
  minutes Offset;
};

std::optional<Moment> Parse(std::string_view text) {
  Scanner scanner(text);
  const std::chrono::year year{static_cast<int>(scanner.Number(4, 9999))};
  scanner.Expect("-");
  const std::chrono::month month{scanner.Number(2, 12)};
  scanner.Expect("-");
  const std::chrono::day day{scanner.Number(2, 31)};
  scanner.Expect("Tt");
  const std::chrono::hours hour{scanner.Number(2, 24)};
  scanner.Expect(":");
  const minutes minute{scanner.Number(2, 59)};
  scanner.Expect(":");
  const std::chrono::seconds second{scanner.Number(2, 60)};
  const milliseconds fraction = scanner.Fraction();
  const minutes offset = scanner.Offset();

  const std::chrono::year_month_day date{year, month, day};
  if (!scanner.Good() || !scanner.AtEnd() || !date.ok()) return std::nullopt;
  const milliseconds time_of_day = hour + minute + second + fraction;
  if (hour.count() == 24 && time_of_day != hour) return std::nullopt;
  const LocalTime local = std::chrono::sys_days{date} + time_of_day;
  if (second.count() == 60 && !IsStartOfMonth(local - offset)) return std::nullopt;
  if (local < s_First || local > s_Last) return std::nullopt;
  return Moment{local, offset};
}

}  // namespace

Timestamp::Timestamp()
    : Timestamp(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()).time_since_epoch() /
                milliseconds{1}) {}

Timestamp::Timestamp(i64_t unix_milliseconds, i32_t offset_minutes)
    : m_Milliseconds(InRange(unix_milliseconds, offset_minutes)), m_OffsetMinutes(offset_minutes) {}

void Timestamp::SetOffsetMinutes(i32_t offset_minutes) {
  *this = Timestamp(m_Milliseconds, offset_minutes);
}

Timestamp::Fields Timestamp::UTC() const {
  return FieldsOf(m_Milliseconds);
}

Timestamp::Fields Timestamp::Local() const {
  return FieldsOf(m_Milliseconds + m_OffsetMinutes * s_MillisecondsPerMinute);
}

std::string Timestamp::EncodeString() const {
  const Fields local = Local();
  const auto offset = static_cast<unsigned>(m_OffsetMinutes < 0 ? -m_OffsetMinutes : m_OffsetMinutes);
  char fraction[8] = "";
  if (local.Millisecond != 0) std::snprintf(fraction, sizeof(fraction), ".%03u", local.Millisecond % 1000U);
  char text[64];
  std::snprintf(text, sizeof(text), "%04u-%02u-%02uT%02u:%02u:%02u%s%c%02u:%02u", local.Year, local.Month, local.Day,
                local.Hour, local.Minute, local.Second, fraction, m_OffsetMinutes < 0 ? '-' : '+', offset / 60,
                offset % 60);
  return text;
}

bool Timestamp::DecodeString(std::string_view text) {
  const auto moment = Parse(text);
  if (!moment) return false;
  m_Milliseconds = (moment->Local - moment->Offset).time_since_epoch().count();
  m_OffsetMinutes = static_cast<i32_t>(moment->Offset.count());
  return true;
}

bool Timestamp::HasValue() const {
  return true;
}

ui32_t Timestamp::ArchiveLength() const {
  return static_cast<ui32_t>(sizeof(ui32_t) + EncodeString().size());
}

bool Timestamp::Archive(MemIOWriter* Writer) const {
  return Writer != nullptr && Writer->WriteString(EncodeString());
}

bool Timestamp::Unarchive(MemIOReader* Reader) {
  std::string text;
  return Reader != nullptr && Reader->ReadString(&text) && DecodeString(text);
}

}  // namespace Ferro
