// SPDX-License-Identifier: BSD-3-Clause
#include "form/ValueForm.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Assay::ValueForm;

struct Row {
  ValueForm Form;
  std::vector<const char*> Right, Wrong;
};

TEST(ValueForm, EachAdmitsItsValuesUpToTheirLimits) {
  const Row rows[] = {
      {ValueForm::UUID,
       {"urn:uuid:0F0f0f0f-1111-4222-8333-0000000000ab", "\n urn:uuid:00000000-0000-0000-0000-000000000000 "},
       {"", "0f0f0f0f-1111-4222-8333-0000000000ab", "urn:uuid:0f0f0f0f-1111-4222-8333-0000000000a",
        "urn:uuid:0f0f0f0f-1111-4222-8333-0000000000abc", "URN:UUID:0f0f0f0f-1111-4222-8333-0000000000ab"}},
      {ValueForm::PlainUUID, {"0f0f0f0f-1111-4222-8333-0000000000ab"}, {"0f0f0f0f11114222833300000000000ab"}},
      {ValueForm::Long,
       {"9223372036854775807", "-9223372036854775808", "+007", "-0", "00000000000000000000000000000001"},
       {"9223372036854775808", "-9223372036854775809", "", "1.0", "0x1", "--1"}},
      {ValueForm::NonNegativeLong, {"0", "-0", "9223372036854775807"}, {"-1"}},
      {ValueForm::PositiveInteger, {"1", "+1", "99999999999999999999999"}, {"0", "-1", "-0", ""}},
      {ValueForm::NonNegativeInteger, {"0", "-0", "1"}, {"-1", "a"}},
      {ValueForm::Integer, {"-99999999999999999999999999", "0"}, {"1e3", "-"}},
      {ValueForm::Boolean, {"true", "0", " 1 "}, {"TRUE", "yes", ""}},
      {ValueForm::Base64,
       {"", "AAAA", "AA==", "AAA=", "A A\nAA", "+/+/"},
       {"AAAAA", "AB==", "AAB=", "A===", "AA=A", "AA-A"}},
      {ValueForm::Language,
       {"en", "fr-CA", "abcdefgh-12345678"},
       {"", "e n", "abcdefghi", "1a", "en-", "en-123456789"}},
      {ValueForm::LanguageList, {"en", "en fr\nde"}, {"", "  ", "en f_r"}},
      {ValueForm::Rational, {"24 1", "24000\t1001", " +24 -1 "}, {"24", "24 1 1", "24/1", "", "23.976 1"}},
      {ValueForm::Decimal, {"1", "-1.5", ".5", "5.", "+0"}, {"", ".", "1e3", "1,5"}},
      {ValueForm::PositiveDecimal, {"0.0001", "14"}, {"0", "0.0", "-0", "-1"}},
      {ValueForm::NonNegativeDecimal, {"0", "-0.0", "5"}, {"-0.1"}},
      {ValueForm::DecimalFromMinusOne, {"-1", "-1.000", "3"}, {"-1.0001", "-2"}},
      {ValueForm::Percent, {"100", "-100.0", "0"}, {"100.01", "-101", "1000"}},
      {ValueForm::Aspect, {"0.25", "4", "4.000", "1.0"}, {"0.249", "4.01", "-1", "0"}},
      {ValueForm::Color, {"FFffFF00", " 00000000 "}, {"FFFFFF", "FFFFFFFFF", "GGGGGGGG"}},
      {ValueForm::TimeCode,
       {"00:00:00:0", "29:59:59:123"},
       {"30:00:00:00", "00:60:00:00", "00:00:00:", " 00:00:00:00"}},
      {ValueForm::InteropTime,
       {"00:00:04:249", "99:59:59.1", "00:00:00.123"},
       {"00:00:04:250", "00:00:04:24", "00:00:04.", "00:00:04.1234", "00:00:04"}},
      {ValueForm::InteropFade, {"0", "999", "00:00:00:020"}, {"", "1000", "2a"}},
      {ValueForm::Em, {"0em", "-0.5em"}, {"em", ".5em", "0.em", "1 em"}},
      {ValueForm::URI, {"", "a/b c", "http://x/y#z", "urn:x", "%41", "\xC3\xA9"}, {"a#b#c", "%4", "%zz", "1a:b", ":x"}},
      {ValueForm::Name, {"a", "_1", "a-b.c"}, {"", "1a", "a:b", "a b"}},
      {ValueForm::Empty, {""}, {"x"}},
      {ValueForm::NonEmptyText, {" ", "x"}, {""}},
      {ValueForm::DateTime, {"2024-03-01T09:30:00+00:00", " 2024-03-01T09:30:00 "}, {"2024-03-01"}},
  };
  for (const Row& row : rows) {
    for (const char* text : row.Right) EXPECT_TRUE(HasForm(row.Form, text)) << DescribeForm(row.Form) << ": " << text;
    for (const char* text : row.Wrong) EXPECT_FALSE(HasForm(row.Form, text)) << DescribeForm(row.Form) << ": " << text;
  }
}

TEST(ValueForm, ChoicesAreWholeWords) {
  EXPECT_TRUE(HasForm(ValueForm::OneOf, "yes", "yes no"));
  EXPECT_FALSE(HasForm(ValueForm::OneOf, "ye", "yes no"));
  EXPECT_FALSE(HasForm(ValueForm::OneOf, " yes", "yes no"));
  EXPECT_TRUE(HasForm(ValueForm::TokenOneOf, " yes\n", "yes no"));
  EXPECT_EQ(DescribeForm(ValueForm::OneOf, "yes no"), "yes, no");
}

}  // namespace
