// SPDX-License-Identifier: BSD-3-Clause
#include "HelpFormat.h"

#include <sstream>

std::string WrapText(const std::string& text, size_t width, const std::string& line_start) {
  std::istringstream words(text);
  std::string out;
  size_t column = 0;
  for (std::string word; words >> word;) {
    if (column > 0 && column + 1 + word.size() > width) {
      out += '\n' + line_start;
      column = 0;
    }
    out += (column == 0 ? "" : " ") + word;
    column += (column == 0 ? 0 : 1) + word.size();
  }
  return out;
}

std::string HelpFormat::make_option(const CLI::Option* option, bool is_positional) const {
  const size_t indent = get_column_width();
  std::string name = "  " + make_option_name(option, is_positional) + make_option_opts(option);
  const std::string line_start(indent, ' ');
  name += name.size() < indent ? std::string(indent - name.size(), ' ') : '\n' + line_start;
  return name + WrapText(make_option_desc(option), HelpWidth - indent, line_start) + '\n';
}
