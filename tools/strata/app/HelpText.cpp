// SPDX-License-Identifier: BSD-3-Clause
#include "HelpText.h"

#include <sstream>

namespace Tool {

std::string BreakIntoLines(const std::string& text, size_t width, const std::string& line_start) {
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

}  // namespace Tool
