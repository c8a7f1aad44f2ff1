// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Assay {

// Texts of documents, in UTF-8. White space is that of XML: blank, tab, line feed, carriage return.

[[nodiscard]] bool IsBlank(std::string_view text);
[[nodiscard]] std::string_view Trim(std::string_view text);
/// The parts between white space.
[[nodiscard]] std::vector<std::string_view> Words(std::string_view text);
/// The parts between separators, empty ones too: one part where there is no separator.
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);
[[nodiscard]] std::string ToLower(std::string_view text);
[[nodiscard]] std::string ToUpper(std::string_view text);

[[nodiscard]] constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
[[nodiscard]] constexpr bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
[[nodiscard]] constexpr bool IsHexDigit(char c) {
  return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// For a report: on one line, free of control characters, at most 80 characters, cut with "…".
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace Assay
