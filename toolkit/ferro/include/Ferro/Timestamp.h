// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/IArchive.h>
#include <Ferro/Types.h>

#include <compare>
#include <string>
#include <string_view>

namespace Ferro {

/// A point in time to the millisecond, with the offset from UTC in which it was written (ISO 8601, RFC 3339).
///
/// A default-constructed timestamp is the moment of its construction, in UTC, whole seconds. Comparison is by the
/// moment, not by the offset. The calendar at the timestamp's own offset stays within the years 1 to 9999: a moment
/// outside moves to the nearest one inside.
class FERRO_API Timestamp : public IArchive {
 public:
  struct Fields {
    ui16_t Year = 1970;
    ui8_t Month = 1;  // 1 to 12
    ui8_t Day = 1;    // 1 to 31
    ui8_t Hour = 0;
    ui8_t Minute = 0;
    ui8_t Second = 0;
    ui16_t Millisecond = 0;
  };

  Timestamp();
  /// A moment in milliseconds since 1970-01-01T00:00:00Z, shown with `offset_minutes` east of UTC (-1439 to 1439).
  explicit Timestamp(i64_t unix_milliseconds, i32_t offset_minutes = 0);

  [[nodiscard]] i64_t UnixMilliseconds() const { return m_Milliseconds; }
  [[nodiscard]] i32_t OffsetMinutes() const { return m_OffsetMinutes; }
  /// Shows the same moment with another offset, -1439 to 1439 (assertion).
  void SetOffsetMinutes(i32_t offset_minutes);
  /// The calendar fields in UTC.
  [[nodiscard]] Fields UTC() const;
  /// The calendar fields at the timestamp's own offset.
  [[nodiscard]] Fields Local() const;

  /// "2026-03-01T12:00:00+00:00"; with milliseconds, three digits after a point, only when they are not 0.
  [[nodiscard]] std::string EncodeString() const;
  /// Reads date, "T", time, an optional fraction of a second, and an offset "Z", "+hh:mm" or "-hh:mm" of less than a day;
  /// letters in either case. Checks every field's range. False leaves the timestamp unchanged.
  /// - Without an offset, and with RFC 3339's "-00:00", the time is UTC. Digits behind the milliseconds are dropped.
  /// - "24:00:00" is the start of the next day (ISO 8601, XML Schema).
  /// - Second 60 is read only where a leap second can be, before the end of a month in UTC, and then is the second
  ///   after it, as in POSIX time.
  [[nodiscard]] bool DecodeString(std::string_view text);

  /// The archive form is EncodeString's text as an archived string. Reading a malformed text fails.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(MemIOReader* Reader) override;

  friend bool operator==(const Timestamp& lhs, const Timestamp& rhs) {
    return lhs.m_Milliseconds == rhs.m_Milliseconds;
  }
  friend std::strong_ordering operator<=>(const Timestamp& lhs, const Timestamp& rhs) {
    return lhs.m_Milliseconds <=> rhs.m_Milliseconds;
  }

 private:
  i64_t m_Milliseconds;
  i32_t m_OffsetMinutes = 0;
};

}  // namespace Ferro
