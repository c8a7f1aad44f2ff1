// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentGuard.h"

#include "base/Blanks.h"

#include <Cairn/DocumentParser.h>

#include <algorithm>

namespace Cairn {
namespace {

/// The position after `end`, searched from `start`; the text's end when it is not there.
size_t After(std::string_view text, std::string_view end, size_t start) {
  const size_t found = text.find(end, start);
  return found == std::string_view::npos ? text.size() : found + end.size();
}

/// True when a document type declaration stands before the document element.
bool HasDocumentType(std::string_view text) {
  for (size_t at = 0; (at = text.find_first_not_of(BlankChars, at)) != std::string_view::npos;) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<!--")) {
      at = After(text, "-->", at + 4);
    } else if (rest.starts_with("<?")) {
      at = After(text, "?>", at + 2);
    } else {
      return rest.starts_with("<!DOCTYPE");
    }
  }
  return false;
}

/// The most "=" before a quote between two "<": no fewer than the attributes of any element, however malformed the text.
size_t MostAttributes(std::string_view text) {
  size_t most = 0;
  size_t count = 0;
  for (size_t at = 0; (at = text.find_first_of("<=", at)) != std::string_view::npos; ++at) {
    if (text[at] == '<') {
      count = 0;
      continue;
    }
    const size_t next = text.find_first_not_of(BlankChars, at + 1);
    if (next != std::string_view::npos && (text[next] == '"' || text[next] == '\'')) most = std::max(most, ++count);
  }
  return most;
}

}  // namespace

std::string CheckDocumentText(std::string_view text) {
  // The parser takes it for the end of the text in some places.
  if (text.find('\0') != std::string_view::npos) return "it has a NUL character";
  if (HasDocumentType(text)) return "it has a document type declaration";
  if (MostAttributes(text) > DocumentParser::MaxAttributeCount)
    return "an element has more than " + std::to_string(DocumentParser::MaxAttributeCount) + " attributes";
  return {};
}

}  // namespace Cairn
