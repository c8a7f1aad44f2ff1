// SPDX-License-Identifier: BSD-3-Clause
#include "base/LanguageTag.h"
#include "base/Text.h"

#include <gtest/gtest.h>

namespace {

TEST(LanguageTag, FormsOfRFC5646) {
  for (const char* tag : {"en", "EN", "fr-CA", "es-419", "zh-Hant", "zh-yue-Hant-HK", "sl-rozaj-biske", "de-1996",
                          "de-CH-1996", "en-a-bbb-x-a", "x-whatever", "qaa-Qaaa-QM", "i-klingon", "en-GB-oed",
                          "sgn-BE-FR", "english", "de-CH-x-phonebk"})
    EXPECT_TRUE(Assay::IsLanguageTag(tag)) << tag;
}

TEST(LanguageTag, OthersAreNone) {
  for (const char* tag : {"", "e", "en_US", "en-", "-en", "en--US", "toolonglanguage", "en-US-US", "e1", "en-x", "en-a",
                          "en-a-bb-a-cc", "de-1996-1996", "i-unknown", "en US", "fr\xC3\xA9", "12", "en-toolongsubtag"})
    EXPECT_FALSE(Assay::IsLanguageTag(tag)) << tag;
}

TEST(DocumentText, WordsAndPartsOfATextAreTakenApart) {
  using Parts = std::vector<std::string_view>;
  EXPECT_EQ(Assay::Words(" a\tb\r\n c "), (Parts{"a", "b", "c"}));
  EXPECT_EQ(Assay::Words(" \n"), Parts{});
  EXPECT_EQ(Assay::Split("a__b_", '_'), (Parts{"a", "", "b", ""}));
  EXPECT_EQ(Assay::Split("", '_'), Parts{""});
  EXPECT_EQ(Assay::Trim("\n a b\t"), "a b");
  EXPECT_EQ(Assay::ToLower("AbZ\xC3\x89"), "abz\xC3\x89");
  EXPECT_EQ(Assay::ToUpper("aBz"), "ABZ");
}

TEST(DocumentText, ReportsQuoteOneShortLine) {
  EXPECT_EQ(Assay::Quoted("a\nb\x1b[31m"), "a b [31m");
  EXPECT_EQ(Assay::Quoted(std::string(80, 'x')), std::string(80, 'x'));
  EXPECT_EQ(Assay::Quoted(std::string(81, 'x')), std::string(80, 'x') + "\xE2\x80\xA6");
  std::string accents;
  for (int i = 0; i < 100; ++i) accents += "\xC3\xA9";
  EXPECT_EQ(Assay::Quoted(accents), accents.substr(0, 160) + "\xE2\x80\xA6");
}

}  // namespace
