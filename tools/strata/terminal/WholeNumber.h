// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <CLI/CLI.hpp>

#include <charconv>
#include <string>

/// Accepts a whole number, in decimal digits, from `least` to `most`.
inline CLI::Validator WholeNumber(Ferro::ui64_t least, Ferro::ui64_t most) {
  return CLI::Validator(
      [least, most](const std::string& text) {
        Ferro::ui64_t number = 0;
        const char* const last = text.data() + text.size();
        const auto [end, error] = std::from_chars(text.data(), last, number);
        const bool fits = error == std::errc() && end == last && number >= least && number <= most;
        return fits ? "" : text + " is no whole number from " + std::to_string(least) + " to " + std::to_string(most);
      },
      "");
}
