// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

#include <string>

/// Help pages whose lines end before column HelpWidth.
class HelpFormat : public CLI::Formatter {
 public:
  static constexpr size_t HelpWidth = 100;

  std::string make_option(const CLI::Option* option, bool is_positional) const override;
};

/// `text` in lines of at most `width` characters, broken at blanks; a longer word stays whole.
[[nodiscard]] std::string WrapText(const std::string& text, size_t width, const std::string& line_start);
