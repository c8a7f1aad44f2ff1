// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MXF/DataTypes.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace QUIRE::MXF {
namespace {

// Label of a basic identifier, how its halves were made, the number of bytes that follow (0x13), the instance 0 (ST 330).
// The material number makes up the other half.
constexpr ui8_t UMIDHead[16] = {0x06, 0x0a, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05,
                                0x01, 0x01, 0x0f, 0x20, 0x13, 0x00, 0x00, 0x00};

}  // namespace

Timestamp::Timestamp(const Ferro::Timestamp& moment) {
  const Ferro::Timestamp::Fields utc = moment.UTC();
  Year = static_cast<i16_t>(utc.Year);
  Month = utc.Month;
  Day = utc.Day;
  Hour = utc.Hour;
  Minute = utc.Minute;
  Second = utc.Second;
  Tick = static_cast<ui8_t>(utc.Millisecond / 4);
}

std::optional<Ferro::Timestamp> Timestamp::Moment() const {
  using namespace std::chrono;
  const year_month_day date{year{Year}, month{Month}, day{Day}};
  if (Year < 1 || Year > 9999 || !date.ok() || Hour > 23 || Minute > 59 || Second > 59 || Tick > 249)
    return std::nullopt;
  const auto moment = sys_days{date} + hours{Hour} + minutes{Minute} + seconds{Second} + milliseconds{4 * Tick};
  return Ferro::Timestamp(duration_cast<milliseconds>(moment.time_since_epoch()).count());
}

std::string Timestamp::EncodeString() const {
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u %02u:%02u:%02u.%03u", Year, Month, Day, Hour, Minute, Second,
                Tick * 4u);
  return text;
}

UMID MakeUMID(const UUID& material) {
  ui8_t bytes[32];
  std::copy_n(UMIDHead, 16, bytes);
  std::copy_n(material.Value(), 16, bytes + 16);
  return UMID(std::span<const ui8_t, 32>(bytes));
}

UUID MaterialNumber(const UMID& umid) {
  return UUID(umid.Bytes().last<16>());
}

}  // namespace QUIRE::MXF
