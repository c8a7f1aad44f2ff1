// SPDX-License-Identifier: BSD-3-Clause
#include "Characters.h"
#include "TextFindings.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace Assay {
namespace {

using Cairn::TextLine;
using Cairn::TextPlace;
using Cairn::TextValign_t;

constexpr size_t MaxReadable = 52;  // characters of a line
constexpr size_t MaxOnScreen = 79;
constexpr size_t MaxOfCaption = 32;

std::string InCharacters(size_t count) {
  return std::to_string(count) + " characters";
}

std::string AtMost(size_t count) {
  return InCharacters(count) + " at most";
}

const char* NameOf(TextValign_t align) {
  return align == TextValign_t::Top ? "top" : align == TextValign_t::Bottom ? "bottom" : "center";
}

std::string DescribePlace(const TextPlace& place) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << NameOf(place.Valign.Value) << ' ' << place.Vposition.Value;
  return text.str();
}

/// Whether a line's letters, or what hangs below them, lie beyond the upper or the lower edge.
bool IsOffScreen(const TextPlace& place) {
  const double position = place.Vposition.Value;
  if (place.Valign.Value == TextValign_t::Center) return std::abs(position) >= 50;
  return position <= 0 || position >= 100;
}

/// Whether the second line stands above the first.
bool IsAbove(const TextPlace& first, const TextPlace& second) {
  const double step = second.Vposition.Value - first.Vposition.Value;
  return first.Valign.Value == TextValign_t::Bottom ? step > 0 : step < 0;
}

/// What is wrong with the order of a caption's lines; empty where nothing is.
std::string OrderFault(const std::vector<TextLine>& lines) {
  for (size_t i = 1; i < lines.size(); ++i) {
    const TextPlace& above = lines[i - 1].Place;
    const TextPlace& below = lines[i].Place;
    if (above.Valign.Value != below.Valign.Value || IsAbove(above, below))
      return DescribePlace(above) + ", then " + DescribePlace(below);
  }
  return {};
}

}  // namespace

void FindInTextLines(const Cairn::TimedText& document, TextFile& file) {
  TextTally long_lines, endless_lines, caption_lines, places, order;
  const char* position_name = document.DCPFormat == Cairn::DFT_Interop ? "Text/@VPosition" : "Text/@Vposition";
  for (const Cairn::TextInstance& instance : document.InstanceList) {
    for (const TextLine& line : instance.TextList) {
      const TextMoment moment = MomentOf(instance, line.Line);
      const size_t count = CountCharacters(line.Characters());
      if (count > MaxReadable) (count > MaxOnScreen ? endless_lines : long_lines).Note(moment, InCharacters(count));
      if (count > MaxOfCaption) caption_lines.Note(moment, InCharacters(count));
      // What cannot be read, or is beyond 100, is told with the form.
      if (IsOffScreen(line.Place) && !HasProblem(document, line.Line, position_name))
        places.Note(moment, DescribePlace(line.Place));
    }
    if (std::string fault = OrderFault(instance.TextList); !fault.empty())
      order.Note(MomentOf(instance, instance.Line), std::move(fault));
  }
  endless_lines.Tell(file, Finding(FindingID::TextLineLength, FindingClass::Warning), AtMost(MaxOnScreen),
                     file.SubtitleFindings);
  long_lines.Tell(file, Finding(FindingID::TextLineLength), AtMost(MaxReadable), file.SubtitleFindings);
  places.Tell(file, Finding(FindingID::TextPosition), "a place on the screen", file.SubtitleFindings);
  caption_lines.Tell(file, Finding(FindingID::CaptionLines), AtMost(MaxOfCaption), file.CaptionFindings);
  order.Tell(file, Finding(FindingID::CaptionAlign), "one alignment, from top to bottom", file.CaptionFindings);
}

}  // namespace Assay
