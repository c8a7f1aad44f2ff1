// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentGuard.h"

#include "DocumentEncoding.h"
#include "MarkupScan.h"
#include "base/Blanks.h"

#include <Cairn/DocumentParser.h>

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

/// True where UTF-8 holds a surrogate, which UTF-16 has in pairs and UTF-8 never.
bool HasSurrogate(std::string_view text) {
  for (size_t at = 0; (at = text.find('\xED', at)) != std::string_view::npos; ++at)
    if (at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) >= 0xA0) return true;
  return false;
}

}  // namespace

std::string CheckDocumentText(std::string_view text) {
  // The parser takes it for the end of the text in some places.
  if (text.find('\0') != std::string_view::npos) return "it has a NUL character";
  if (HasDocumentType(text)) return "it has a document type declaration";
  if (HasSurrogate(text)) return UnpairedSurrogate;
  const MarkupExtremes extremes = ScanMarkup(text);
  if (extremes.LongestName > DocumentParser::MaxNameLength)
    return "a name is longer than " + std::to_string(DocumentParser::MaxNameLength) + " bytes";
  if (extremes.MostAttributes > DocumentParser::MaxAttributeCount)
    return "an element has more than " + std::to_string(DocumentParser::MaxAttributeCount) + " attributes";
  return {};
}

}  // namespace Cairn
