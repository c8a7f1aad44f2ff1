// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetMapPath.h>

#include "base/Blanks.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace Cairn {
namespace {

std::string_view WithoutFileScheme(std::string_view path) {
  for (const std::string_view scheme : {"file:///", "file://", "file:/"})
    if (path.starts_with(scheme)) return path.substr(scheme.size());
  return path;
}

// A scheme or a drive letter: a colon before the first separator.
bool HasScheme(std::string_view path) {
  return path.substr(0, path.find_first_of("/\\")).find(':') != std::string_view::npos;
}

bool HasControlCharacter(std::string_view path) {
  return std::ranges::any_of(path, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

// The path from its steps; no value when it is absolute, climbs, or is empty. A backslash counts as a separator where it
// could hide a step upwards, and is a character otherwise.
std::optional<std::string> Normalize(std::string_view path) {
  if (path.starts_with('/') || path.starts_with('\\') || HasScheme(path) || HasControlCharacter(path))
    return std::nullopt;
  std::string out;
  for (size_t at = 0; at <= path.size();) {
    const size_t end = std::min(path.find('/', at), path.size());
    const std::string_view step = path.substr(at, end - at);
    at = end + 1;
    if (step.empty() || step == ".") continue;
    for (size_t part = 0; part <= step.size();) {
      const size_t part_end = std::min(step.find('\\', part), step.size());
      if (step.substr(part, part_end - part) == "..") return std::nullopt;
      part = part_end + 1;
    }
    if (!out.empty()) out += '/';
    out += step;
  }
  if (out.empty()) return std::nullopt;
  return out;
}

// Each "%" with two hexadecimal digits becomes its byte, once; other percent signs stay.
std::string PercentDecode(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    const bool is_escape = text[i] == '%' && i + 2 < text.size() &&
                           std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
                           std::isxdigit(static_cast<unsigned char>(text[i + 2]));
    if (is_escape) {
      std::from_chars(text.data() + i + 1, text.data() + i + 3, value, 16);
      out += static_cast<char>(value);
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

}  // namespace

Result_t AssetMapPathCandidates(std::string_view path, std::vector<std::string>& out) {
  out.clear();
  const std::string_view plain = WithoutFileScheme(TrimBlanks(path));
  const std::string decoded = PercentDecode(plain);
  const auto first = Normalize(plain);
  const auto second = Normalize(decoded);
  if (!first || !second) return RESULT_CN_PATH;
  out.push_back(*first);
  if (*second != *first) out.push_back(*second);
  return Ferro::RESULT_OK;
}

}  // namespace Cairn
