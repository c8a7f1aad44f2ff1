// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentEncoding.h"

#include "base/Blanks.h"
#include "base/UTF16.h"

#include <algorithm>
#include <cctype>

namespace Cairn {
namespace {

using namespace std::string_view_literals;

/// The encoding that an XML declaration names, in upper case; empty when it names none or is malformed, of which the
/// parser will have more to say.
std::string DeclaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml") || text.size() < 6 || BlankChars.find(text[5]) == std::string_view::npos) return {};
  std::string_view declaration = text.substr(0, text.find("?>"));
  const size_t start = declaration.find("encoding");
  if (start == std::string_view::npos) return {};
  declaration = SkipBlanks(declaration.substr(start + "encoding"sv.size()));
  if (!declaration.starts_with('=')) return {};
  declaration = SkipBlanks(declaration.substr(1));
  if (declaration.empty() || (declaration[0] != '"' && declaration[0] != '\'')) return {};
  std::string name(declaration.substr(1, declaration.find(declaration[0], 1) - 1));
  std::ranges::transform(name, name.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return name;
}

std::string Contradiction(const std::string& declared, const char* actual) {
  return "the encoding \"" + declared.substr(0, 40) + "\" is declared, but the text is " + actual;
}

std::string DecodeUTF16(std::string_view bytes, bool is_big_endian, std::string& buffer) {
  if (bytes.size() % 2 != 0) return "UTF-16 text with an odd number of bytes";
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (size_t i = 0; i < bytes.size(); i += 2) {
    const auto high = static_cast<unsigned char>(bytes[is_big_endian ? i : i + 1]);
    const auto low = static_cast<unsigned char>(bytes[is_big_endian ? i + 1 : i]);
    units += static_cast<char16_t>(high << 8 | low);
  }
  if (!IsPaired(units)) return UnpairedSurrogate;
  buffer = UTF16ToUTF8(units);
  const std::string declared = DeclaredEncoding(buffer);
  const bool agrees =
      declared.empty() || declared == "UTF-16" || declared == (is_big_endian ? "UTF-16BE"sv : "UTF-16LE"sv);
  return agrees ? std::string() : Contradiction(declared, "UTF-16");
}

void DecodeLatin1(std::string_view bytes, std::string& buffer) {
  buffer.clear();
  buffer.reserve(bytes.size());
  for (const char c : bytes) AppendUTF8(buffer, static_cast<unsigned char>(c));
}

bool IsASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

// The byte order mark first, then the declaration; without either the text is UTF-8.
std::string DecodeDocumentText(std::string_view document, std::string& buffer, std::string_view& out) {
  if (document.starts_with("\x00\x00\xFE\xFF"sv) || document.starts_with("\xFF\xFE\x00\x00"sv))
    return "the encoding UTF-32 is not supported";
  if (document.starts_with("\xFE\xFF"sv) || document.starts_with("\xFF\xFE"sv)) {
    std::string reason = DecodeUTF16(document.substr(2), document.starts_with("\xFE\xFF"sv), buffer);
    out = buffer;
    return reason;
  }
  const bool has_mark = document.starts_with("\xEF\xBB\xBF"sv);
  out = has_mark ? document.substr(3) : document;
  const std::string declared = DeclaredEncoding(out);
  if (declared.empty() || declared == "UTF-8") return {};
  if (declared.starts_with("UTF-16")) return Contradiction(declared, "not UTF-16");
  const bool is_ascii = declared == "US-ASCII" || declared == "ASCII";
  if (!is_ascii && declared != "ISO-8859-1" && declared != "LATIN1")
    return "the encoding \"" + declared.substr(0, 40) + "\" is not supported";
  if (has_mark) return Contradiction(declared, "UTF-8");
  if (is_ascii) return IsASCII(out) ? std::string() : Contradiction(declared, "not ASCII");
  DecodeLatin1(out, buffer);
  out = buffer;
  return {};
}

}  // namespace Cairn
