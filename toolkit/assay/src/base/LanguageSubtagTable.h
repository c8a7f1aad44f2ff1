// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string_view>

namespace Assay {

// The codes that language tags are made of, in lower case, in order, one behind the other without anything between. Made
// by the build out of the lists of the package iso-codes.

extern const std::string_view LanguagesOfTwoLetters;    // ISO 639-1
extern const std::string_view LanguagesOfThreeLetters;  // ISO 639-2, 639-3 and 639-5, without those that have two
extern const std::string_view Scripts;                  // ISO 15924
extern const std::string_view Regions;                  // ISO 3166-1, two letters

}  // namespace Assay
