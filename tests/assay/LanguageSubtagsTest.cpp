// SPDX-License-Identifier: BSD-3-Clause
#include "base/LanguageSubtags.h"
#include "base/LanguageTag.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

struct Case {
  std::string_view Tag;
  std::string_view Unknown;  // empty: all is known
};

TEST(LanguageSubtags, LanguagesScriptsAndRegionsAreLookedUp) {
  const Case cases[] = {
      {"en", ""},          {"FR-ca", ""},
      {"zu-ZW", ""},       {"aa-AD", ""},
      {"es-419", ""},      {"en-001", ""},
      {"zh-Hant-HK", ""},  {"zh-yue-Hant-HK", ""},
      {"gsw-CH", ""},      {"aaa", ""},
      {"zza", ""},         {"mul", ""},
      {"sgn", ""},          // a group of languages
      {"sr-Adlm", ""},      // the first script
      {"und-Zzzz", ""},     // the last
      {"iw-IL", ""},        // replaced by he
      {"de-DD", ""},        // withdrawn
      {"en-EU", ""},        // reserved
      {"qaa-Qaaa-QM", ""},  // for private use
      {"qtz-Qabx-XZ", ""},  // likewise
      {"xx", "xx"},        {"english", "english"},
      {"fren", "fren"},    {"eng", "eng"},  // is en
      {"ger", "ger"},                       // has never been a subtag
      {"qzz-DE", "qzz"},   {"zh-xqx", "xqx"},
      {"en-Qaby", "Qaby"}, {"en-Lati-US", "Lati"},
      {"en-UK", "UK"},     {"en-Latn-uk-x-a", "uk"},
      {"en-840", "840"},  // countries have letters
      {"en-999", "999"},
  };
  for (const Case& one : cases) {
    EXPECT_TRUE(Assay::IsLanguageTag(one.Tag)) << one.Tag;
    EXPECT_EQ(Assay::UnknownSubtag(one.Tag), one.Unknown) << one.Tag;
  }
}

TEST(LanguageSubtags, VariantsExtensionsAndPrivateUseAreNot) {
  for (const std::string_view tag : {"de-1996", "sl-rozaj-biske", "en-a-bbb-xx", "x-whatever", "en-x-uk", "i-klingon",
                                     "en-GB-oed", "sgn-BE-FR", "art-lojban", "zh-min-nan", "de-CH-u-co-phonebk"}) {
    EXPECT_TRUE(Assay::IsLanguageTag(tag)) << tag;
    EXPECT_EQ(Assay::UnknownSubtag(tag), "") << tag;
  }
}

}  // namespace
