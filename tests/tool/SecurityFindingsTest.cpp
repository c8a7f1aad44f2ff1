// SPDX-License-Identifier: BSD-3-Clause
#include "findings/SecurityFindings.h"
#include "keys/Moment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

using namespace Tool;

namespace {

TEST(SecurityFindings, EachOfTheLibraryIsOneOfThePackageCheckByTheSameName) {
  for (size_t number = 0; number <= static_cast<size_t>(Sigil::FindingID::KdmKeyType); ++number) {
    const auto id = static_cast<Sigil::FindingID>(number);
    const Finding finding = FindingOf(Sigil::Finding{id, Sigil::Severity::Note, "Text."});
    EXPECT_STREQ(Assay::RuleOf(finding.ID).Name, Sigil::FindingName(id));
  }
}

TEST(SecurityFindings, TellWhatTheLibrarySays) {
  const Finding finding = FindingOf(Sigil::Finding{Sigil::FindingID::CertChain, Sigil::Severity::Error, "Text."});
  EXPECT_EQ(finding.Class, FindingClass::Error);
  EXPECT_EQ(finding.Found, "Text");
}

/// In the time zone of a place one or two hours east of UTC.
class Moment : public testing::Test {
 protected:
  void SetUp() override { Zone("CET-1CEST,M3.5.0,M10.5.0/3"); }
  void TearDown() override { Zone("UTC"); }
  static void Zone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
  static Ferro::Timestamp At(const char* text) {
    Ferro::Timestamp moment;
    EXPECT_TRUE(moment.DecodeString(text)) << text;
    return moment;
  }
  static std::string Read(const std::string& text, const char* now = "2026-03-01T12:00:00Z") {
    const auto moment = ReadMoment(text, At(now));
    return moment ? moment->EncodeString() : "none";
  }
};

TEST_F(Moment, WithoutOffsetItIsLocal) {
  EXPECT_EQ(Read("2026-03-01 20:00"), "2026-03-01T20:00:00+01:00");
  EXPECT_EQ(Read("2026-07-01T20:00:05"), "2026-07-01T20:00:05+02:00");
  EXPECT_EQ(Read("2026-07-01T20:00:05Z"), "2026-07-01T20:00:05+00:00");
  EXPECT_EQ(Read("2026-07-01t20:00-05:30"), "2026-07-01T20:00:00-05:30");
}

TEST_F(Moment, ATimeAloneIsTodays) {
  EXPECT_EQ(Read("20:00"), "2026-03-01T20:00:00+01:00");
  EXPECT_EQ(Read("20:00:30"), "2026-03-01T20:00:30+01:00");
  EXPECT_EQ(Read("09:00"), "2026-03-01T09:00:00+01:00");
  EXPECT_EQ(Read("20:00Z", "2026-03-01T23:30:00Z"), "2026-03-01T20:00:00+00:00");
  EXPECT_EQ(Read("20:00+10:00", "2026-03-01T23:30:00Z"), "2026-03-02T20:00:00+10:00");
}

TEST_F(Moment, LateAtNightTheMorningIsTheNextOne) {
  EXPECT_EQ(Read("11:00", "2026-03-01T22:00:00Z"), "2026-03-01T11:00:00+01:00");
  EXPECT_EQ(Read("10:59:59", "2026-03-01T22:00:00Z"), "2026-03-02T10:59:59+01:00");
  EXPECT_EQ(Read("01:00Z", "2026-03-01T22:00:00Z"), "2026-03-02T01:00:00+00:00");
  EXPECT_EQ(Read("01:00", "2026-03-28T22:30:00Z"), "2026-03-29T01:00:00+01:00");
}

TEST_F(Moment, WhatIsNoTimeIsRefused) {
  for (const char* text : {"", "tonight", "24:01", "20", "20:0", "20:00:60", "20:00+25:00", "2026-02-30 20:00",
                           "2026-03-01", "2026-03-01 20", "20:00 ", "2026-03-01T20:00:00+1"})
    EXPECT_EQ(Read(text), "none") << text;
}

TEST_F(Moment, WindowsHaveTheOffsetOfTheDocumentBesideThem) {
  EXPECT_EQ(LocalText(At("2026-03-09T22:59:59Z")), "2026-03-09 23:59:59");
  EXPECT_EQ(WrittenText(At("2026-03-09T18:59:59-04:00")), "2026-03-09 23:59:59 (written in -04:00)");
  EXPECT_EQ(WrittenText(At("2026-07-01T20:00:00+05:30")), "2026-07-01 16:30:00 (written in +05:30)");
  EXPECT_EQ(Later(At("2026-03-01T12:00:00Z"), 1.5).EncodeString(), "2026-03-01T12:00:01.500+00:00");
}

}  // namespace
