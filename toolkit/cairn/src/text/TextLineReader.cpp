// SPDX-License-Identifier: BSD-3-Clause
#include "TextLineReader.h"

#include "TextAttributes.h"
#include "base/Blanks.h"

#include <algorithm>
#include <limits>

namespace Cairn {
namespace {

constexpr double NoLimit = std::numeric_limits<double>::max();

/// White space as it is shown: a tab is a blank, and so is all white space around a line feed.
std::string FoldBlanks(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  while (!text.empty()) {
    const size_t length = std::min(text.find_first_not_of(BlankChars), text.size());
    const std::string_view blanks = text.substr(0, length);
    folded.append(blanks.find('\n') == std::string_view::npos ? length : 1, ' ');
    text.remove_prefix(length);
    const size_t next = std::min(text.find_first_of(BlankChars), text.size());
    folded.append(text.substr(0, next));
    text.remove_prefix(next);
  }
  return folded;
}

bool HasLineFeed(std::string_view text) {
  return text.find('\n') != std::string_view::npos;
}

/// Takes the document's own layout from an end of a run. True when nothing is left of it.
bool TrimEnd(TextRun& run, bool is_front) {
  auto* characters = std::get_if<TextCharacters>(&run.Content);
  if (characters == nullptr) return false;
  std::string& text = characters->Text;
  const size_t first = std::min(text.find_first_not_of(BlankChars), text.size());
  const size_t last = text.find_last_not_of(BlankChars) + 1;
  if (is_front && HasLineFeed(text.substr(0, first))) text.erase(0, first);
  if (!is_front && HasLineFeed(text.substr(last))) text.erase(last);
  return text.empty();
}

void TrimEnds(std::vector<TextRun>& runs) {
  const auto first = std::ranges::find_if(runs, [](TextRun& run) { return !TrimEnd(run, true); });
  runs.erase(runs.begin(), first);
  while (!runs.empty() && TrimEnd(runs.back(), false)) runs.pop_back();
}

/// Reads the mixed content of a Text element into runs.
class RunReader {
 public:
  RunReader(TextReading& reading, std::vector<TextRun>& runs) : m_Reading(reading), m_Runs(runs) {}

  void Read(const Element* element, size_t font) {
    size_t at = element->TextBegin;
    for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
      AddCharacters(element, at, child->TextBegin, font);
      ReadChild(child, font);
      at = child->TextEnd;
    }
    AddCharacters(element, at, element->TextEnd, font);
  }

 private:
  void Add(const Element* element, size_t font, decltype(TextRun::Content) content) {
    m_Runs.push_back({std::move(content), font, element->Line});
  }

  void AddCharacters(const Element* element, size_t begin, size_t end, size_t font) {
    if (begin == end) return;
    const std::string_view text = TextBetween(element, begin, end);
    auto* last = m_Runs.empty() ? nullptr : std::get_if<TextCharacters>(&m_Runs.back().Content);
    if (last != nullptr && m_Runs.back().Font == font) {
      last->Text += text;
    } else {
      Add(element, font, TextCharacters{std::string(text)});
    }
  }

  // A Font inside Text holds characters alone in an ST 428-7 document, and such fonts nest in an Interop one.
  void ReadChild(const Element* child, size_t font) {
    const std::string& name = LocalName(child);
    const bool is_outermost = LocalName(child->Parent) == "Text";
    const bool is_known = IsOwnElement(child) &&
                          (name == "Font" || name == "Ruby" || name == "Space" || name == "HGroup" || name == "Rotate");
    if (!is_known) {
      m_Reading.Note(TextProblem_t::Unknown, child, TextContent(child));
      return AddCharacters(child, child->TextBegin, child->TextEnd, font);
    }
    if (!is_outermost && !(name == "Font" && m_Reading.IsInterop())) m_Reading.Note(TextProblem_t::Misplaced, child);
    if (name == "Font") return Read(child, ReadTextFont(m_Reading, child, font));
    TextAttributes attributes(m_Reading, child);
    if (name == "Ruby") {
      ReadRuby(child, font);
    } else if (name == "Space") {
      ReadSpace(child, attributes, font);
    } else if (name == "HGroup") {
      Add(child, font, TextGroup{FoldBlanks(TextContent(child))});
    } else {
      ReadRotate(child, attributes, font);
    }
    attributes.NoteUnknown();
  }

  void ReadRuby(const Element* element, size_t font) {
    TextRuby ruby;
    const Element* base = FirstChildNamed(element, "Rb");
    const Element* annotation = FirstChildNamed(element, "Rt");
    for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child))
      if (child != base && child != annotation)
        m_Reading.Note(
            LocalName(child) == "Rb" || LocalName(child) == "Rt" ? TextProblem_t::Repeated : TextProblem_t::Unknown,
            child, TextContent(child));
    if (base == nullptr) m_Reading.Note(TextProblem_t::Missing, element->Line, "Ruby/Rb", {}, {});
    if (annotation == nullptr) m_Reading.Note(TextProblem_t::Missing, element->Line, "Ruby/Rt", {}, {});
    ruby.Base = FoldBlanks(TextContent(base));
    if (annotation != nullptr) ReadAnnotation(annotation, ruby);
    Add(element, font, std::move(ruby));
  }

  void ReadAnnotation(const Element* element, TextRuby& ruby) {
    static constexpr double LeastSize = 0.01;  // there is no annotation without a size
    ruby.Annotation = FoldBlanks(TextContent(element));
    TextField<double> size{ruby.Size};
    TextField<double> offset{ruby.Offset};
    TextField<double> spacing{ruby.Spacing};
    TextField<double> aspect{ruby.AspectAdjust};
    TextField<RubyPosition_t> position{ruby.Position};
    TextAttributes attributes(m_Reading, element);
    attributes.Em({"Size", "Size"}, size, {LeastSize, NoLimit});
    attributes.Word<RubyPosition_t>({"Position", "Position"}, position,
                                    {{"before", RubyPosition_t::Before}, {"after", RubyPosition_t::After}});
    attributes.Em({"Offset", "Offset"}, offset, {-1, NoLimit});
    attributes.Em({"Spacing", "Spacing"}, spacing, {-1, NoLimit});
    attributes.Decimal({"AspectAdjust", "AspectAdjust"}, aspect, {0.25, 4});
    attributes.NoteUnknown();
    ruby.Size = size.Value;
    ruby.Position = position.Value;
    ruby.Offset = offset.Value;
    ruby.Spacing = spacing.Value;
    ruby.AspectAdjust = aspect.Value;
  }

  void ReadSpace(const Element* element, TextAttributes& attributes, size_t font) {
    TextField<double> size{TextSpace().Size};
    attributes.Em({"Size", "Size"}, size, {-1, NoLimit});
    if (element->TextBegin != element->TextEnd) m_Reading.NoteStrayText(element);
    Add(element, font, TextSpace{size.Value});
  }

  void ReadRotate(const Element* element, TextAttributes& attributes, size_t font) {
    TextField<TextRotation_t> direction{TextRotation_t::None};
    attributes.Word<TextRotation_t>(
        {"Direction", "Direction"}, direction,
        {{"none", TextRotation_t::None}, {"left", TextRotation_t::Left}, {"right", TextRotation_t::Right}});
    Add(element, font, TextRotate{FoldBlanks(TextContent(element)), direction.Value});
  }

  TextReading& m_Reading;
  std::vector<TextRun>& m_Runs;
};

}  // namespace

std::string TextLine::Characters() const {
  std::string text;
  for (const TextRun& run : RunList) {
    if (const auto* characters = std::get_if<TextCharacters>(&run.Content)) text += characters->Text;
    if (const auto* ruby = std::get_if<TextRuby>(&run.Content)) text += ruby->Base;
    if (const auto* group = std::get_if<TextGroup>(&run.Content)) text += group->Text;
    if (const auto* rotate = std::get_if<TextRotate>(&run.Content)) text += rotate->Text;
  }
  return text;
}

TextLine ReadTextLine(TextReading& reading, const Element* element, size_t font) {
  TextLine line;
  line.Line = element->Line;
  TextAttributes attributes(reading, element);
  ReadTextPlace(attributes, line.Place);
  ReadTextDirection(reading, attributes, line.Direction);
  attributes.NoteUnknown();
  RunReader(reading, line.RunList).Read(element, font);
  TrimEnds(line.RunList);
  for (TextRun& run : line.RunList)
    if (auto* characters = std::get_if<TextCharacters>(&run.Content)) characters->Text = FoldBlanks(characters->Text);
  return line;
}

}  // namespace Cairn
