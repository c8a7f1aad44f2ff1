// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <string_view>

namespace Cairn {

/// White space of XML (1.0, 2.3).
inline constexpr std::string_view BlankChars = " \t\r\n";

/// The text without the blanks in front.
[[nodiscard]] inline std::string_view SkipBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(BlankChars), text.size()));
  return text;
}

/// The text without the blanks at its ends.
[[nodiscard]] inline std::string_view TrimBlanks(std::string_view text) {
  text = SkipBlanks(text);
  return text.substr(0, text.find_last_not_of(BlankChars) + 1);
}

}  // namespace Cairn
