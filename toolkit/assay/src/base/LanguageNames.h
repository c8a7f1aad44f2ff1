// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace Assay {

/// The language tag that a text means, in lower case: the tag that it is, or that of the English name that Interop
/// documents write. Empty where neither is known.
[[nodiscard]] std::string LanguageTagOf(std::string_view text);
/// Whether two tags, as LanguageTagOf gives them, can be of one text: "fr" and "fr-ca".
[[nodiscard]] bool CanBeSameLanguage(std::string_view first, std::string_view second);

}  // namespace Assay
