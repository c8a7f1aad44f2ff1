// SPDX-License-Identifier: BSD-3-Clause
#include "TextReading.h"

#include "base/Blanks.h"

#include <utility>

namespace Cairn {
namespace {

/// At most 80 bytes of a text, no character cut in two.
std::string Shown(std::string_view text) {
  static constexpr size_t ShownLength = 80;
  size_t length = std::min(text.size(), ShownLength);
  while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  return std::string(text.substr(0, length));
}

}  // namespace

void TextReading::Note(TextProblem_t kind, const Element* element, std::string_view found, std::string_view used) {
  Note(kind, element->Line, LocalName(element), found, used);
}

void TextReading::Note(TextProblem_t kind, ui64_t line, std::string name, std::string_view found,
                       std::string_view used) {
  const bool is_new = kind != TextProblem_t::Unknown && m_Kinds.size() < TimedText::MaxProblemKinds &&
                      m_Kinds.emplace(kind, name).second;
  if (++m_Document.ProblemCount > TimedText::MaxProblemCount && !is_new) return;
  m_Document.ProblemList.push_back({kind, line, std::move(name), Shown(found), Shown(used)});
}

void TextReading::NoteStrayText(const Element* element) {
  size_t at = element->TextBegin;
  const auto check = [&](size_t end) {
    const std::string_view text = TrimBlanks(TextBetween(element, at, end));
    if (!text.empty()) Note(TextProblem_t::Misplaced, element, text);
  };
  for (const auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    check(child->TextBegin);
    at = child->TextEnd;
  }
  check(element->TextEnd);
}

void TextReading::AddLoadFont(LoadedFont font, const Element* element) {
  const auto index = static_cast<ui32_t>(m_Document.LoadFontList.size());
  if (!font.ID.empty() && !m_LoadFonts.try_emplace(font.ID, index).second)
    Note(TextProblem_t::Repeated, element, font.ID);
  m_Document.LoadFontList.push_back(std::move(font));
}

ui32_t TextReading::FindLoadFont(const std::string& id) const {
  const auto found = m_LoadFonts.find(id);
  return found == m_LoadFonts.end() ? TextFont::NoLoadFont : found->second;
}

std::string_view TextBetween(const Element* element, size_t begin, size_t end) {
  return std::string_view(*element->DocumentText).substr(begin, end - begin);
}

}  // namespace Cairn
