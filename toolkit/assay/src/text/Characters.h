// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Assay {

// Characters of texts: code points of Unicode, in UTF-8.

/// Takes the first character off a text that is not empty; U+FFFD for bytes that are none.
[[nodiscard]] char32_t TakeCharacter(std::string_view& text);
/// How many a text has.
[[nodiscard]] size_t CountCharacters(std::string_view text);
/// Whether fonts need no shape for it: it controls others, or the line.
[[nodiscard]] bool IsShapeless(char32_t character);
/// For a report: "U+0416 Ж".
[[nodiscard]] std::string DescribeCharacter(char32_t character);

}  // namespace Assay
