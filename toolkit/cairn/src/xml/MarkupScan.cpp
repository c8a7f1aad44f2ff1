// SPDX-License-Identifier: BSD-3-Clause
#include "MarkupScan.h"

#include "base/Blanks.h"

#include <algorithm>

namespace Cairn {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsASCIINameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
}

bool IsASCIINameCharacter(char c) {
  return IsASCIINameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool IsDecimal(char c) {
  return c >= '0' && c <= '9';
}

bool IsHexadecimal(char c) {
  return IsDecimal(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Reads markup that is well-formed as far as nesting of tags, quotes and sections goes. Names of other than ASCII
/// characters are taken for malformed: which of those XML allows is the parser's business.
class MarkupScan {
 public:
  explicit MarkupScan(std::string_view text) : m_Text(text) {}

  MarkupExtremes Run() {
    size_t start = 0;  // of the piece of markup or text that is being read
    while (m_At < m_Text.size()) {
      start = m_At;
      if (m_Text[m_At] == '<' ? TakeMarkup() : TakeText()) continue;
      TakeMalformed(start);
      break;
    }
    return m_Extremes;
  }

 private:
  // ---- well-formed markup: each function takes one thing and is false where it is not well-formed

  bool TakeMarkup() {
    if (Skip("<!--")) return TakeComment();
    if (Skip("<![CDATA[")) return m_Depth > 0 && SkipPast("]]>");
    if (Skip("<?")) return TakeInstruction();
    if (Skip("</")) return TakeEndTag();
    ++m_At;
    return TakeStartTag();
  }

  bool TakeComment() {
    const size_t end = m_Text.find("--", m_At);
    if (end == std::string_view::npos || !m_Text.substr(end).starts_with("-->")) return false;
    m_At = end + 3;
    return true;
  }

  bool TakeInstruction() {
    const bool at_start = m_At == 2;
    const std::string_view target = TakeName();
    const bool is_reserved =
        target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' && (target[2] | 0x20) == 'l';
    if (target.empty() || (is_reserved && !at_start)) return false;
    if (Skip("?>")) return true;
    const size_t begin = m_At;
    if (m_At >= m_Text.size() || !IsBlank(m_Text[m_At]) || !SkipPast("?>")) return false;
    // Where the parser finds a declaration malformed, it goes on behind the next ">".
    return !is_reserved || m_Text.substr(begin, m_At - 2 - begin).find_first_of("<>") == std::string_view::npos;
  }

  bool TakeEndTag() {
    if (m_Depth == 0 || TakeName().empty()) return false;
    SkipBlanks();
    --m_Depth;
    return Skip(">");
  }

  bool TakeStartTag() {
    if (m_HasRoot && m_Depth == 0) return false;
    if (TakeName().empty()) return false;
    m_HasRoot = true;
    for (size_t count = 0;;) {
      const bool has_blanks = SkipBlanks();
      if (Skip("/>")) return true;
      if (Skip(">")) {
        ++m_Depth;
        return true;
      }
      if (!has_blanks || !TakeAttribute()) return false;
      m_Extremes.MostAttributes = std::max(m_Extremes.MostAttributes, ++count);
    }
  }

  bool TakeAttribute() {
    if (TakeName().empty()) return false;
    SkipBlanks();
    if (!Skip("=")) return false;
    SkipBlanks();
    if (m_At >= m_Text.size() || (m_Text[m_At] != '"' && m_Text[m_At] != '\'')) return false;
    const char quote = m_Text[m_At++];
    const size_t end = m_Text.find(quote, m_At);
    if (end == std::string_view::npos || m_Text.substr(m_At, end - m_At).find('<') != std::string_view::npos)
      return false;
    return TakeReferences(end) && Skip({&quote, 1});
  }

  bool TakeText() {
    if (m_Depth == 0) return SkipBlanks();
    return TakeReferences(std::min(m_Text.find('<', m_At), m_Text.size()));
  }

  // All text up to `end`. Two searches for one character each take far less than one for either.
  bool TakeReferences(size_t end) {
    const std::string_view text = m_Text.substr(0, end);
    while ((m_At = text.find('&', m_At)) != std::string_view::npos)
      if (!TakeReference() || m_At > end) return false;
    m_At = end;
    return true;
  }

  bool TakeReference() {
    if (!Skip("&")) return false;
    const bool is_hexadecimal = Skip("#x");
    if (!is_hexadecimal && !Skip("#")) return !TakeName().empty() && Skip(";");
    const size_t begin = m_At;
    while (m_At < m_Text.size() && (is_hexadecimal ? IsHexadecimal(m_Text[m_At]) : IsDecimal(m_Text[m_At]))) ++m_At;
    return m_At > begin && Skip(";");
  }

  // Empty where none begins, or where it goes on with a character that is not ASCII.
  std::string_view TakeName() {
    const size_t begin = m_At;
    if (m_At < m_Text.size() && IsASCIINameStart(m_Text[m_At]))
      while (m_At < m_Text.size() && IsASCIINameCharacter(m_Text[m_At])) ++m_At;
    m_Extremes.LongestName = std::max(m_Extremes.LongestName, m_At - begin);
    if (m_At < m_Text.size() && static_cast<unsigned char>(m_Text[m_At]) >= 0x80) return {};
    return m_Text.substr(begin, m_At - begin);
  }

  bool Skip(std::string_view expected) {
    if (m_Text.substr(m_At, expected.size()) != expected) return false;
    m_At += expected.size();
    return true;
  }

  bool SkipPast(std::string_view end) {
    const size_t found = m_Text.find(end, m_At);
    if (found == std::string_view::npos) return false;
    m_At = found + end.size();
    return true;
  }

  bool SkipBlanks() {
    const size_t begin = m_At;
    while (m_At < m_Text.size() && IsBlank(m_Text[m_At])) ++m_At;
    return m_At > begin;
  }

  // ---- anything

  // As long as no text of a document is in one piece, a key or a picture in Base64 included.
  static constexpr size_t LongRun = 65'536;

  void TakeMalformed(size_t at) {
    size_t attributes = 0;
    size_t run = 0;
    for (; at < m_Text.size(); ++at) {
      const char c = m_Text[at];
      run = IsASCIINameCharacter(c) || static_cast<unsigned char>(c) >= 0x80 ? run + 1 : 0;
      if (run > LongRun) m_Extremes.LongestName = std::max(m_Extremes.LongestName, run);
      if (c == '<') attributes = 0;
      if (c != '=') continue;
      const size_t next = m_Text.find_first_not_of(BlankChars, at + 1);
      if (next != std::string_view::npos && (m_Text[next] == '"' || m_Text[next] == '\''))
        m_Extremes.MostAttributes = std::max(m_Extremes.MostAttributes, ++attributes);
    }
  }

  const std::string_view m_Text;
  size_t m_At = 0;
  size_t m_Depth = 0;      // elements that are open
  bool m_HasRoot = false;  // the document element has begun
  MarkupExtremes m_Extremes;
};

}  // namespace

MarkupExtremes ScanMarkup(std::string_view text) {
  return MarkupScan(text).Run();
}

}  // namespace Cairn
