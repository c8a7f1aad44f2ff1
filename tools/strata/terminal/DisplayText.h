// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tool {

// Text from documents and file systems, for showing to people.

/// One character and how much room it takes.
struct DisplayCharacter {
  char32_t Code = 0;
  unsigned Columns = 1;  ///< of a terminal: 0 for combining marks, 2 for wide letters
};

/// The characters of UTF-8 text. What is malformed, a control character, or would turn the direction of the text around
/// becomes U+FFFD; line breaks and tabs become blanks.
[[nodiscard]] std::vector<DisplayCharacter> DisplayCharacters(std::string_view text);
/// UTF-8 of one character.
[[nodiscard]] std::string EncodeCharacter(char32_t code);
/// The same as UTF-8: safe to print, and fit for XML.
[[nodiscard]] std::string DisplayText(std::string_view text);
/// The same for text of several lines, which stay lines.
[[nodiscard]] std::string DisplayLines(std::string_view text);

/// Columns that a text takes on a terminal.
[[nodiscard]] unsigned ColumnsOf(std::string_view text);
/// At most `columns` of a text, "…" at the end of what was shortened.
[[nodiscard]] std::string FitColumns(std::string_view text, unsigned columns);

/// Pixels that a text takes in a sans-serif face of the size given: an estimate, on the long side.
[[nodiscard]] double PixelsOf(std::string_view text, double size);
/// At most `pixels` of a text, "…" at the end of what was shortened; empty where not even two characters fit.
[[nodiscard]] std::string FitPixels(std::string_view text, double size, double pixels);

}  // namespace Tool
