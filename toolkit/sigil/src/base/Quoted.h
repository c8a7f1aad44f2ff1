// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace Sigil {

/// A text from outside for a message: in quotes, cut at 80 bytes, "?" for control characters and quotes.
[[nodiscard]] inline std::string Quoted(std::string_view text) {
  constexpr size_t Most = 80;
  std::string quoted = "\"";
  for (const char c : text.substr(0, Most))
    quoted += static_cast<unsigned char>(c) < 0x20 || c == '"' || c == 0x7F ? '?' : c;
  if (text.size() > Most) {
    while (!quoted.empty() && (static_cast<unsigned char>(quoted.back()) & 0xC0) == 0x80) quoted.pop_back();
    if (static_cast<unsigned char>(quoted.back()) >= 0xC0) quoted.pop_back();
    quoted += "...";
  }
  return quoted + '"';
}

}  // namespace Sigil
