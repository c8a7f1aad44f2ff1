// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace Tool {

/// Lines of help pages end before this column.
constexpr size_t HelpWidth = 100;

/// `text` in lines of at most `width` characters, broken at blanks; a longer word stays whole.
[[nodiscard]] std::string BreakIntoLines(const std::string& text, size_t width, const std::string& line_start);

}  // namespace Tool
