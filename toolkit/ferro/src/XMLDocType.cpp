// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Types.h>
#include <Ferro/XMLDocType.h>

#include "XMLCharacters.h"

#include <optional>
#include <utility>

// One pass over the text before the end of the first start tag, without recursion and without memory beyond the names
// it keeps.

namespace Ferro {
namespace {

constexpr char32_t s_End = 0xfffffffe;

/// The document as characters. A plain value: a copy marks a place to come back to.
class CharacterReader {
 public:
  explicit CharacterReader(std::string_view document) : m_Text(document) {
    if (m_Text.starts_with("\xEF\xBB\xBF"))
      m_Text.remove_prefix(3);
    else if (m_Text.starts_with("\xFE\xFF"))
      StartUTF16(1);
    else if (m_Text.starts_with("\xFF\xFE"))
      StartUTF16(0);
    Advance();
  }

  /// The character at the place, NoCharacter, or s_End.
  [[nodiscard]] char32_t Current() const { return m_Current; }

  void Advance() {
    if (m_Text.empty())
      m_Current = s_End;
    else
      m_Current = m_IsUTF16 ? TakeUTF16() : TakeUTF8(m_Text);
  }

  /// Passes over `ascii` when it comes next.
  bool Take(std::string_view ascii) {
    const CharacterReader before = *this;
    for (const char c : ascii) {
      if (m_Current != static_cast<unsigned char>(c)) {
        *this = before;
        return false;
      }
      Advance();
    }
    return true;
  }

  /// Passes over all up to and with `ascii`; false when it does not come.
  bool SkipPast(std::string_view ascii) {
    while (!Take(ascii)) {
      if (m_Current == s_End) return false;
      Advance();
    }
    return true;
  }

  bool SkipSpace() {
    const bool any = IsXMLSpace(m_Current);
    while (IsXMLSpace(m_Current)) Advance();
    return any;
  }

 private:
  void StartUTF16(size_t low_byte) {
    m_IsUTF16 = true;
    m_LowByte = low_byte;
    m_Text.remove_prefix(2);
  }

  std::optional<char32_t> TakeUnit() {
    if (m_Text.size() < 2) {
      m_Text = {};
      return std::nullopt;
    }
    const auto low = static_cast<unsigned char>(m_Text[m_LowByte]);
    const auto high = static_cast<unsigned char>(m_Text[1 - m_LowByte]);
    m_Text.remove_prefix(2);
    return static_cast<char32_t>(high << 8 | low);
  }

  char32_t TakeUTF16() {
    const auto unit = TakeUnit();
    if (!unit || (*unit >= 0xdc00 && *unit <= 0xdfff)) return NoCharacter;
    if (*unit < 0xd800 || *unit > 0xdfff) return *unit;
    const auto second = TakeUnit();
    if (!second || *second < 0xdc00 || *second > 0xdfff) return NoCharacter;
    return 0x10000 + ((*unit & 0x3ff) << 10 | (*second & 0x3ff));
  }

  std::string_view m_Text;
  char32_t m_Current = s_End;
  bool m_IsUTF16 = false;
  size_t m_LowByte = 0;  // its place within a unit of two bytes
};

/// A name as it stands in a tag.
struct QualifiedName {
  std::string Prefix;
  std::string Local;
};

bool TakeLocalName(CharacterReader& reader, std::string& name) {
  if (!IsNameStart(reader.Current())) return false;
  for (; IsNameCharacter(reader.Current()); reader.Advance()) AppendUTF8(name, reader.Current());
  return true;
}

bool TakeName(CharacterReader& reader, QualifiedName& name) {
  if (!TakeLocalName(reader, name.Local)) return false;
  if (!reader.Take(":")) return true;
  name.Prefix = std::exchange(name.Local, {});
  return TakeLocalName(reader, name.Local);
}

bool SkipQuoted(CharacterReader& reader) {
  if (reader.Take("\"")) return reader.SkipPast("\"");
  if (reader.Take("'")) return reader.SkipPast("'");
  return false;
}

/// Passes over a markup declaration behind its "<!".
bool SkipDeclaration(CharacterReader& reader) {
  while (!reader.Take(">")) {
    const char32_t c = reader.Current();
    if (c == s_End || c == '<') return false;
    if (c == '"' || c == '\'') {
      if (!SkipQuoted(reader)) return false;
    } else {
      reader.Advance();
    }
  }
  return true;
}

/// False when one begins and does not end.
bool SkipCommentOrInstruction(CharacterReader& reader, bool& skipped) {
  skipped = true;
  if (reader.Take("<!--")) return reader.SkipPast("-->");
  if (reader.Take("<?")) return reader.SkipPast("?>");
  skipped = false;
  return true;
}

bool SkipParameterReference(CharacterReader& reader) {
  QualifiedName name;
  return reader.Take("%") && TakeName(reader, name) && reader.Take(";");
}

/// Passes over the internal subset of a document type declaration behind its "[".
bool SkipInternalSubset(CharacterReader& reader) {
  while (!reader.Take("]")) {
    if (reader.SkipSpace()) continue;
    bool skipped = false;
    if (!SkipCommentOrInstruction(reader, skipped)) return false;
    if (skipped) continue;
    if (!(reader.Take("<!") ? SkipDeclaration(reader) : SkipParameterReference(reader))) return false;
  }
  return true;
}

/// Passes over a document type declaration behind "<!DOCTYPE".
bool SkipDocumentType(CharacterReader& reader) {
  while (!reader.Take(">")) {
    const char32_t c = reader.Current();
    if (c == s_End || c == '<') return false;
    if (c == '"' || c == '\'') {
      if (!SkipQuoted(reader)) return false;
    } else if (reader.Take("[")) {
      if (!SkipInternalSubset(reader)) return false;
    } else {
      reader.Advance();
    }
  }
  return true;
}

/// Passes over all that may stand before the document element, and its "<".
bool SkipProlog(CharacterReader& reader) {
  for (;;) {
    reader.SkipSpace();
    bool skipped = false;
    if (!SkipCommentOrInstruction(reader, skipped)) return false;
    if (skipped) continue;
    if (!reader.Take("<!DOCTYPE")) return reader.Take("<");
    if (!SkipDocumentType(reader)) return false;
  }
}

std::optional<char32_t> DigitValue(char32_t c, char32_t base) {
  char32_t value = base;
  if (c >= '0' && c <= '9') value = c - '0';
  if (c >= 'a' && c <= 'f') value = c - 'a' + 10;
  if (c >= 'A' && c <= 'F') value = c - 'A' + 10;
  if (value >= base) return std::nullopt;
  return value;
}

/// Reads a reference behind its "&". Only characters and the five predefined entities have a known meaning here.
std::optional<char32_t> TakeReference(CharacterReader& reader) {
  constexpr std::pair<std::string_view, char32_t> Predefined[] = {
      {"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};
  for (const auto& [name, value] : Predefined)
    if (reader.Take(name)) return value;
  if (!reader.Take("#")) return std::nullopt;

  const char32_t base = reader.Take("x") ? 16 : 10;
  char32_t value = 0;
  if (!DigitValue(reader.Current(), base)) return std::nullopt;
  while (const auto digit = DigitValue(reader.Current(), base)) {
    value = value * base + *digit;
    if (value > 0x10ffff) return std::nullopt;
    reader.Advance();
  }
  if (!reader.Take(";") || !IsXMLCharacter(value)) return std::nullopt;
  return value;
}

/// Reads a quoted attribute value, its references replaced and white space normalised (XML 1.0, 2.11 and 3.3.3).
bool TakeValue(CharacterReader& reader, std::string& value) {
  const char32_t quote = reader.Current();
  if (quote != '"' && quote != '\'') return false;
  for (reader.Advance(); reader.Current() != quote;) {
    const char32_t c = reader.Current();
    if (!IsXMLCharacter(c) || c == '<') return false;
    if (reader.Take("&")) {
      const auto character = TakeReference(reader);
      if (!character) return false;
      AppendUTF8(value, *character);
    } else if (IsXMLSpace(c)) {
      value += ' ';
      if (!reader.Take("\r\n")) reader.Advance();
    } else {
      AppendUTF8(value, c);
      reader.Advance();
    }
  }
  reader.Advance();
  return true;
}

bool SkipValue(CharacterReader& reader) {
  const char32_t quote = reader.Current();
  if (quote != '"' && quote != '\'') return false;
  for (reader.Advance(); reader.Current() != quote; reader.Advance())
    if (reader.Current() == s_End || reader.Current() == '<') return false;
  reader.Advance();
  return true;
}

/// Reads one attribute; `bound` receives its value when it declares the namespace of `prefix`.
bool TakeAttribute(CharacterReader& reader, const std::string& prefix, std::optional<std::string>& bound) {
  QualifiedName name;
  if (!TakeName(reader, name)) return false;
  reader.SkipSpace();
  if (!reader.Take("=")) return false;
  reader.SkipSpace();

  const bool declares =
      prefix.empty() ? name.Prefix.empty() && name.Local == "xmlns" : name.Prefix == "xmlns" && name.Local == prefix;
  if (!declares) return SkipValue(reader);
  return !bound.has_value() && TakeValue(reader, bound.emplace());
}

/// Reads what follows the element's name in its tag.
bool TakeAttributes(CharacterReader& reader, const std::string& prefix, std::optional<std::string>& bound) {
  for (;;) {
    const bool separated = reader.SkipSpace();
    if (reader.Take(">") || reader.Take("/>")) return true;
    if (!separated || !TakeAttribute(reader, prefix, bound)) return false;
  }
}

}  // namespace

bool GetXMLDocType(std::string_view document, XMLDocType& out) {
  CharacterReader reader(document);
  QualifiedName name;
  std::optional<std::string> bound;
  if (!SkipProlog(reader) || !TakeName(reader, name) || !TakeAttributes(reader, name.Prefix, bound)) return false;

  if (name.Prefix == "xmlns") return false;
  if (name.Prefix == "xml") bound = "http://www.w3.org/XML/1998/namespace";
  // A prefix must be bound, and not to nothing (Namespaces in XML 1.0, 2.2 and 5).
  if (!name.Prefix.empty() && (!bound || bound->empty())) return false;
  out.NamespaceName = std::move(bound).value_or(std::string());
  out.ElementName = std::move(name.Local);
  return true;
}

}  // namespace Ferro
