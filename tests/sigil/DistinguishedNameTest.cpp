// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/DistinguishedName.h>

#include <gtest/gtest.h>

namespace {

using Sigil::DistinguishedName;

TEST(DistinguishedName, ATextIsReadWithItsEscapes) {
  const auto name = DistinguishedName::FromText(R"(dnQualifier=a\+b/c=,CN=.A\, B,OU=x\20,O=\C3\A9 \#1)");
  ASSERT_TRUE(name);
  ASSERT_EQ(name->Attributes.size(), 4U);
  EXPECT_EQ(name->Value(Sigil::OID_DnQualifier), "a+b/c=");
  EXPECT_EQ(name->Value(Sigil::OID_CommonName), ".A, B");
  EXPECT_EQ(name->Value(Sigil::OID_OrganizationalUnit), "x ");
  EXPECT_EQ(name->Value(Sigil::OID_Organization), "\xC3\xA9 #1");
}

TEST(DistinguishedName, KeywordsMayHaveEitherCaseOrBeObjectIdentifiersWithBlanksAround) {
  const auto name = DistinguishedName::FromText(" DNQUALIFIER = x , 2.5.4.3=y ,ou=z+o=w ");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->Text(), "dnQualifier=x,CN=y,OU=z+O=w");
  EXPECT_EQ(name, DistinguishedName::FromText("dnQualifier=x,CN=y,OU=z+O=w"));
  EXPECT_NE(name, DistinguishedName::FromText("dnQualifier=x,CN=y,OU=z,O=w"));
}

TEST(DistinguishedName, RareTypesAreReadAsTheyAreWritten) {
  const auto name = DistinguishedName::FromText("2.5.4.65=a,1.2.3.4.5=b");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->Text(), "pseudonym=a,1.2.3.4.5=b");
  EXPECT_EQ(DistinguishedName::FromText(name->Text()), name);
}

TEST(DistinguishedName, NamesOfAnotherOrderOrCaseDiffer) {
  EXPECT_NE(DistinguishedName::FromText("CN=a,O=b"), DistinguishedName::FromText("O=b,CN=a"));
  EXPECT_NE(DistinguishedName::FromText("CN=a"), DistinguishedName::FromText("CN=A"));
}

TEST(DistinguishedName, TheTextHasWhatReadsTheSame) {
  const auto name = DistinguishedName::FromText(R"(CN=\ a\"\\\;\<\>\ ,O=\0A,OU=#)");
  EXPECT_FALSE(name);  // a value that is no text
  const auto escaped = DistinguishedName::FromText(R"(CN=\ a\"\\\;\<\>\ ,O=\0A,OU=\#)");
  ASSERT_TRUE(escaped);
  EXPECT_EQ(escaped->Text(), R"(CN=\ a\"\\\;\<\>\ ,O=\0a,OU=\#)");
  EXPECT_EQ(DistinguishedName::FromText(escaped->Text()), escaped);
}

TEST(DistinguishedName, MalformedTextsHaveNoValue) {
  for (const char* text : {"CN", "=a", "XX=a", "CN=a,", "CN=a\\", "CN=a\\x", "CN=\"a\"", "CN=a;O=b", "3.1=a", "CN=a,O"})
    EXPECT_FALSE(DistinguishedName::FromText(text)) << text;
  EXPECT_TRUE(DistinguishedName::FromText(""));
}

TEST(DistinguishedName, AHundredAttributesAreTheMost) {
  std::string text = "CN=0";
  for (int i = 1; i < 100; ++i) text += ",CN=" + std::to_string(i);
  EXPECT_TRUE(DistinguishedName::FromText(text));
  EXPECT_FALSE(DistinguishedName::FromText(text + ",CN=100"));
}

}  // namespace
