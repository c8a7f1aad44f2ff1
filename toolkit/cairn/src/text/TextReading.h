// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/TimedText.h>

#include "xml/DocumentTree.h"

#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Cairn {

/// What the readers of a timed-text document's parts share: the document that they fill, and its list of problems.
class TextReading {
 public:
  explicit TextReading(TimedText& document) : m_Document(document) {}

  [[nodiscard]] TimedText& Document() const { return m_Document; }
  [[nodiscard]] bool IsInterop() const { return m_Document.DCPFormat == DFT_Interop; }

  /// Takes down a problem with an element, or with what is named in a line of the document.
  void Note(TextProblem_t kind, const Element* element, std::string_view found = {}, std::string_view used = {});
  void Note(TextProblem_t kind, ui64_t line, std::string name, std::string_view found, std::string_view used);
  /// Notes text that stands in an element between its children.
  void NoteStrayText(const Element* element);

  /// Adds a font that the document brings along; the first of an identifier counts.
  void AddLoadFont(LoadedFont font, const Element* element);
  /// The index of the font of that identifier, or TextFont::NoLoadFont.
  [[nodiscard]] ui32_t FindLoadFont(const std::string& id) const;

 private:
  TimedText& m_Document;
  std::unordered_map<std::string, ui32_t> m_LoadFonts;
  std::set<std::pair<TextProblem_t, std::string>> m_Kinds;  // of the problems met, by what they are with
};

/// The text of an element between `begin` and `end`, positions in the document's text.
[[nodiscard]] std::string_view TextBetween(const Element* element, size_t begin, size_t end);

}  // namespace Cairn
