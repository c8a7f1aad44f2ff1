// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Timestamp.h>

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <limits>

using namespace Ferro;

namespace {

constexpr i64_t Noon = 1'772'366'400'000;  // 2026-03-01T12:00:00Z

Timestamp Decoded(std::string_view text) {
  Timestamp timestamp(0);
  EXPECT_TRUE(timestamp.DecodeString(text)) << text;
  return timestamp;
}

void ExpectRefused(std::string_view text) {
  Timestamp timestamp(Noon, 60);
  EXPECT_FALSE(timestamp.DecodeString(text)) << text;
  EXPECT_EQ(timestamp.UnixMilliseconds(), Noon) << text;
  EXPECT_EQ(timestamp.OffsetMinutes(), 60) << text;
}

}  // namespace

TEST(Timestamp, DefaultIsNowInUTCWithWholeSeconds) {
  using namespace std::chrono;
  const i64_t before = duration_cast<seconds>(system_clock::now().time_since_epoch()).count() * 1000;
  const Timestamp timestamp;
  const i64_t after = duration_cast<seconds>(system_clock::now().time_since_epoch()).count() * 1000;
  EXPECT_GE(timestamp.UnixMilliseconds(), before);
  EXPECT_LE(timestamp.UnixMilliseconds(), after);
  EXPECT_EQ(timestamp.UnixMilliseconds() % 1000, 0);
  EXPECT_EQ(timestamp.OffsetMinutes(), 0);
  EXPECT_TRUE(timestamp.HasValue());
}

TEST(Timestamp, TextFormHasAnOffset) {
  EXPECT_EQ(Timestamp(Noon).EncodeString(), "2026-03-01T12:00:00+00:00");
  EXPECT_EQ(Timestamp(Noon, 60).EncodeString(), "2026-03-01T13:00:00+01:00");
  EXPECT_EQ(Timestamp(Noon, -210).EncodeString(), "2026-03-01T08:30:00-03:30");
  EXPECT_EQ(Timestamp(Noon, -30).EncodeString(), "2026-03-01T11:30:00-00:30");
  EXPECT_EQ(Timestamp(Noon, -1439).EncodeString(), "2026-02-28T12:01:00-23:59");
  EXPECT_EQ(Timestamp(Noon, 1439).EncodeString(), "2026-03-02T11:59:00+23:59");
}

TEST(Timestamp, MillisecondsShowOnlyWhenThereAreSome) {
  EXPECT_EQ(Timestamp(Noon + 7).EncodeString(), "2026-03-01T12:00:00.007+00:00");
  EXPECT_EQ(Timestamp(Noon + 500).EncodeString(), "2026-03-01T12:00:00.500+00:00");
}

TEST(Timestamp, MomentsBefore1970) {
  EXPECT_EQ(Timestamp(-1).EncodeString(), "1969-12-31T23:59:59.999+00:00");
  EXPECT_EQ(Decoded("1969-12-31T23:59:59Z").UnixMilliseconds(), -1000);
}

TEST(Timestamp, ReadsEachFormOfTheOffset) {
  EXPECT_EQ(Decoded("2026-03-01T12:00:00Z").UnixMilliseconds(), Noon);
  EXPECT_EQ(Decoded("2026-03-01T12:00:00+00:00").UnixMilliseconds(), Noon);
  EXPECT_EQ(Decoded("2026-03-01T12:00:00").UnixMilliseconds(), Noon);
  EXPECT_EQ(Decoded("2026-03-01T13:30:00+01:30").UnixMilliseconds(), Noon);
  EXPECT_EQ(Decoded("2026-03-01T13:30:00+01:30").OffsetMinutes(), 90);
  EXPECT_EQ(Decoded("2026-02-28T12:01:00-23:59").UnixMilliseconds(), Noon);
  EXPECT_EQ(Decoded("2026-02-28T12:01:00-23:59").OffsetMinutes(), -1439);
}

TEST(Timestamp, UnknownLocalOffsetIsUTC) {
  EXPECT_EQ(Decoded("2026-03-01T12:00:00-00:00").UnixMilliseconds(), Noon);
  EXPECT_EQ(Decoded("2026-03-01T12:00:00-00:00").EncodeString(), "2026-03-01T12:00:00+00:00");
}

TEST(Timestamp, LettersAreReadInEitherCase) {
  EXPECT_EQ(Decoded("2026-03-01t12:00:00z").UnixMilliseconds(), Noon);
}

TEST(Timestamp, FractionIsReadToTheMillisecond) {
  EXPECT_EQ(Decoded("2026-03-01T12:00:00.5Z").UnixMilliseconds(), Noon + 500);
  EXPECT_EQ(Decoded("2026-03-01T12:00:00.04Z").UnixMilliseconds(), Noon + 40);
  EXPECT_EQ(Decoded("2026-03-01T12:00:00.007").UnixMilliseconds(), Noon + 7);
  EXPECT_EQ(Decoded("2026-03-01T12:00:00.1239999999999999999999999999+00:00").UnixMilliseconds(), Noon + 123);
  EXPECT_EQ(Decoded("2026-03-01T12:00:00.0000Z").UnixMilliseconds(), Noon);
}

TEST(Timestamp, TextAndMomentAgreeBothWays) {
  for (const char* text : {"0001-01-01T00:00:00+00:00", "1600-02-29T00:00:00+00:00", "2000-02-29T23:59:59.999+14:00",
                           "2024-12-31T00:00:00-12:00", "9999-12-31T23:59:59.999+00:00", "9999-12-31T23:59:59-08:00",
                           "0001-01-01T00:00:00+08:00"})
    EXPECT_EQ(Decoded(text).EncodeString(), text);
  EXPECT_EQ(Decoded("2024-02-29T23:59:59Z").UnixMilliseconds(), 1'709'251'199'000);
  EXPECT_EQ(Decoded("2000-02-29T00:00:00Z").UnixMilliseconds(), 951'782'400'000);
  EXPECT_EQ(Decoded("0001-01-01T00:00:00Z").UnixMilliseconds(), -62'135'596'800'000);
  EXPECT_EQ(Decoded("9999-12-31T23:59:59Z").UnixMilliseconds(), 253'402'300'799'000);
}

TEST(Timestamp, FebruaryHas29DaysInLeapYearsOnly) {
  EXPECT_EQ(Decoded("2024-02-29T00:00:00Z").UTC().Day, 29);
  EXPECT_EQ(Decoded("2000-02-29T00:00:00Z").UTC().Day, 29);
  ExpectRefused("2023-02-29T00:00:00Z");
  ExpectRefused("1900-02-29T00:00:00Z");
  ExpectRefused("2024-02-30T00:00:00Z");
}

TEST(Timestamp, FieldsOutOfRangeAreRefused) {
  for (const char* text :
       {"0000-01-01T00:00:00Z", "2026-00-01T12:00:00Z", "2026-13-01T12:00:00Z", "2026-03-00T12:00:00Z",
        "2026-03-32T12:00:00Z", "2026-04-31T12:00:00Z", "2026-03-01T25:00:00Z", "2026-03-01T12:60:00Z",
        "2026-03-01T12:00:61Z", "2026-03-01T12:00:99Z"})
    ExpectRefused(text);
}

TEST(Timestamp, OffsetOfADayOrMoreIsRefused) {
  ExpectRefused("2026-03-01T12:00:00+24:00");
  ExpectRefused("2026-03-01T12:00:00-24:00");
  ExpectRefused("2026-03-01T12:00:00+00:60");
}

TEST(Timestamp, MalformedTextIsRefused) {
  for (const char* text : {"",
                           "2026",
                           "2026-03-01",
                           "2026-03-01T",
                           "2026-03-01T12",
                           "2026-03-01T12:00",
                           "2026-03-01T12:00Z",
                           "2026-03-01 12:00:00Z",
                           "2026-03-01T12:00:00.Z",
                           "2026-03-01T12:00:00,5Z",
                           "2026-03-01T12:00:00+1:00",
                           "2026-03-01T12:00:00+0100",
                           "2026-03-01T12:00:00+01",
                           "2026-03-01T12:00:00+01:0",
                           "2026-03-01T12:00:00+",
                           "2026-03-01T12:00:00ZZ",
                           "2026-03-01T12:00:00Z ",
                           " 2026-03-01T12:00:00Z",
                           "-2026-03-01T12:00:00Z",
                           "+2026-03-01T12:00:00Z",
                           "12026-03-01T12:00:00Z",
                           "226-03-01T12:00:00Z",
                           "2026-3-01T12:00:00Z",
                           "2026-03-1T12:00:00Z",
                           "20260301T120000Z",
                           "2026-03-01T1 :00:00Z",
                           "2026-03-01T12:00:00 Z",
                           "abcd-ef-ghTij:kl:mnZ"})
    ExpectRefused(text);
  ExpectRefused(std::string_view("2026-03-01T12:00:00Z\0", 21));
}

TEST(Timestamp, EveryProperPrefixIsRefusedUpToTheSeconds) {
  const std::string text = "2026-03-01T12:00:00";
  for (size_t length = 0; length < text.size(); ++length) ExpectRefused(text.substr(0, length));
}

TEST(Timestamp, EndOfDayIsTheStartOfTheNext) {
  EXPECT_EQ(Decoded("2026-02-28T24:00:00Z").EncodeString(), "2026-03-01T00:00:00+00:00");
  EXPECT_EQ(Decoded("2026-02-28T24:00:00.000+01:00").EncodeString(), "2026-03-01T00:00:00+01:00");
  ExpectRefused("2026-02-28T24:00:01Z");
  ExpectRefused("2026-02-28T24:01:00Z");
  ExpectRefused("2026-02-28T24:00:00.001Z");
  ExpectRefused("9999-12-31T24:00:00Z");
}

TEST(Timestamp, LeapSecondIsTheSecondAfterIt) {
  EXPECT_EQ(Decoded("2016-12-31T23:59:60Z").UnixMilliseconds(), 1'483'228'800'000);
  EXPECT_EQ(Decoded("2016-12-31T23:59:60.5Z").UnixMilliseconds(), 1'483'228'800'500);
  EXPECT_EQ(Decoded("2017-01-01T00:59:60+01:00").EncodeString(), "2017-01-01T01:00:00+01:00");
}

TEST(Timestamp, SecondSixtyIsRefusedWhereNoLeapSecondCanBe) {
  ExpectRefused("2016-12-31T12:00:60Z");
  ExpectRefused("2016-12-30T23:59:60Z");
  ExpectRefused("2016-12-31T23:59:60+01:00");
  ExpectRefused("9999-12-31T23:59:60Z");
}

TEST(Timestamp, CalendarFieldsInUTCAndAtTheOffset) {
  const Timestamp timestamp(Noon + 5, 13 * 60);
  const Timestamp::Fields utc = timestamp.UTC();
  EXPECT_EQ(utc.Year, 2026);
  EXPECT_EQ(utc.Month, 3);
  EXPECT_EQ(utc.Day, 1);
  EXPECT_EQ(utc.Hour, 12);
  EXPECT_EQ(utc.Minute, 0);
  EXPECT_EQ(utc.Second, 0);
  EXPECT_EQ(utc.Millisecond, 5);
  const Timestamp::Fields local = timestamp.Local();
  EXPECT_EQ(local.Day, 2);
  EXPECT_EQ(local.Hour, 1);
}

TEST(Timestamp, ComparisonIsByTheMoment) {
  EXPECT_EQ(Decoded("2026-03-01T12:00:00Z"), Decoded("2026-03-01T13:00:00+01:00"));
  EXPECT_LT(Decoded("2026-03-01T12:59:59+01:00"), Decoded("2026-03-01T12:00:00Z"));
  EXPECT_GT(Timestamp(1), Timestamp(0));
}

TEST(Timestamp, SetOffsetKeepsTheMoment) {
  Timestamp timestamp(Noon);
  timestamp.SetOffsetMinutes(-480);
  EXPECT_EQ(timestamp.UnixMilliseconds(), Noon);
  EXPECT_EQ(timestamp.EncodeString(), "2026-03-01T04:00:00-08:00");
}

TEST(Timestamp, MomentsOutsideTheYearsMoveToTheNearestInside) {
  EXPECT_EQ(Timestamp(std::numeric_limits<i64_t>::max()).EncodeString(), "9999-12-31T23:59:59.999+00:00");
  EXPECT_EQ(Timestamp(std::numeric_limits<i64_t>::min()).EncodeString(), "0001-01-01T00:00:00+00:00");
  EXPECT_EQ(Timestamp(std::numeric_limits<i64_t>::max(), 60).EncodeString(), "9999-12-31T23:59:59.999+01:00");
  EXPECT_EQ(Timestamp(std::numeric_limits<i64_t>::min(), -60).EncodeString(), "0001-01-01T00:00:00-01:00");
}

TEST(TimestampDeathTest, OffsetOfADayIsAProgrammingError) {
  EXPECT_DEATH(Timestamp(0, 1440),
               "Assertion 'offset_minutes >= -s_MaxOffset && offset_minutes <= s_MaxOffset' failed");
  EXPECT_DEATH(Timestamp(0).SetOffsetMinutes(-1440), "Assertion 'offset_minutes >= -s_MaxOffset");
}

TEST(Timestamp, ArchiveFormIsTheTextAsAString) {
  const Timestamp timestamp(Noon, 60);
  EXPECT_EQ(timestamp.ArchiveLength(), 29U);
  std::array<ui8_t, 29> buffer{};
  MemIOWriter writer(buffer);
  EXPECT_TRUE(timestamp.Archive(&writer));
  const std::string expected = std::string("\0\0\0\x19", 4) + "2026-03-01T13:00:00+01:00";
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), expected);
  MemIOReader reader(buffer);
  Timestamp copy(0);
  EXPECT_TRUE(copy.Unarchive(&reader));
  EXPECT_EQ(copy, timestamp);
  EXPECT_EQ(copy.OffsetMinutes(), 60);
}

TEST(Timestamp, MalformedArchiveFailsAndChangesNothing) {
  for (const std::string& bytes : {std::string("\0\0\0\0", 4), std::string("\0\0\0\x03", 4) + "abc",
                                   std::string("\0\0", 2), std::string("\0\0\0\x19", 4) + "2026-03-01T13:00:00+01:0"}) {
    MemIOReader reader(reinterpret_cast<const ui8_t*>(bytes.data()), static_cast<ui32_t>(bytes.size()));
    Timestamp timestamp(Noon);
    EXPECT_FALSE(timestamp.Unarchive(&reader));
    EXPECT_EQ(timestamp.UnixMilliseconds(), Noon);
  }
}
