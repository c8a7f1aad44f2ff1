// SPDX-License-Identifier: BSD-3-Clause
#include "Messages.h"

#include <unistd.h>

#include <cstdlib>

namespace Tool {

namespace {

// Select graphic rendition (ECMA-48, 8.3.117): bold, and red or magenta. Yellow cannot be read on white.
constexpr std::string_view Bold[] = {"\x1b[1;31m", "\x1b[1;35m"};
constexpr std::string_view Plain = "\x1b[0m";

void Tell(std::string_view start, std::string_view message) {
  std::string line(start);
  line += message;
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

}  // namespace

bool ShowsColours(std::FILE* stream) {
  const char* const refused = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  const bool is_refused = refused != nullptr && *refused != '\0';
  const bool is_dumb = terminal == nullptr || std::string_view(terminal) == "dumb";
  return !is_refused && !is_dumb && isatty(fileno(stream)) != 0;
}

std::string InTone(std::string_view text, Tone tone, std::FILE* stream) {
  std::string toned(text);
  if (!ShowsColours(stream)) return toned;
  toned.insert(0, Bold[static_cast<size_t>(tone)]);
  return toned.append(Plain);
}

void TellError(std::string_view message) {
  Tell(InTone("strata:", Tone::Error, stderr) + ' ', message);
}

void TellWarning(std::string_view message) {
  Tell("strata: " + InTone("warning:", Tone::Warning, stderr) + ' ', message);
}

void TellRemark(std::string_view message) {
  Tell("strata: ", message);
}

}  // namespace Tool
