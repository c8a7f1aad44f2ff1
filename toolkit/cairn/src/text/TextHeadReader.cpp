// SPDX-License-Identifier: BSD-3-Clause
#include "TextHeadReader.h"

#include "TextAttributes.h"
#include "TextInstanceReader.h"
#include "base/Decimal.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <numeric>

namespace Cairn {
namespace {

using HeadReader = void (*)(TextReading&, const Element*);

/// An element of the heading; the readers run in the order of the table, since times need the rates. An empty name: the
/// flavour has none.
struct HeadElement {
  std::string_view SMPTE;
  std::string_view Interop;
  bool IsRequired;  // where the flavour has it
  HeadReader Read;
};

template <auto Field>
void ReadText(TextReading& reading, const Element* element) {
  (reading.Document().*Field) = {TrimmedText(element), element->Line};
}

void ReadID(TextReading& reading, const Element* element) {
  const std::string text = TrimmedText(element);
  const auto urn = UUID::FromURN(text);
  const auto id = urn ? urn : UUID::FromHex(text);
  if (id) reading.Document().ID = {*id, element->Line};
  if (id.has_value() && urn.has_value() != reading.IsInterop()) return;
  reading.Note(id ? TextProblem_t::OtherEdition : TextProblem_t::Malformed, element, text,
               id ? id->EncodeString() : std::string());
}

void ReadReelNumber(TextReading& reading, const Element* element) {
  const std::string text = TrimmedText(element);
  const auto number = ParseDecimal(text);
  if (number && *number > 0 && *number <= std::numeric_limits<ui32_t>::max()) {
    reading.Document().ReelNumber = {static_cast<ui32_t>(*number), element->Line};
  } else {
    reading.Note(number ? TextProblem_t::OutOfRange : TextProblem_t::Malformed, element, text);
  }
}

void ReadEditRate(TextReading& reading, const Element* element) {
  TextField<QUIRE::Rational>& rate = reading.Document().EditRate;
  const std::string text = TrimmedText(element);
  const auto pair = ParseDecimalPair(text);
  if (!pair) return reading.Note(TextProblem_t::Malformed, element, text, rate.Value.EncodeString());
  const ui64_t divisor = std::max<ui64_t>(std::gcd(pair->first, pair->second), 1);
  const auto reduced = MakeRational(pair->first / divisor, pair->second / divisor);
  if (!reduced || reduced->Numerator == 0 || reduced->Denominator == 0)
    return reading.Note(TextProblem_t::OutOfRange, element, text, rate.Value.EncodeString());
  rate = {*reduced, element->Line};
}

/// The rate in whole units a second, within what a time code can count.
ui32_t NominalRate(const QUIRE::Rational& rate) {
  const i64_t nominal = (i64_t{rate.Numerator} * 2 + rate.Denominator) / (i64_t{rate.Denominator} * 2);
  return static_cast<ui32_t>(std::clamp<i64_t>(nominal, 1, TimedText::MaxTimeCodeRate));
}

void ReadTimeCodeRate(TextReading& reading, const Element* element) {
  TextField<ui32_t>& rate = reading.Document().TimeCodeRate;
  const std::string text = TrimmedText(element);
  const auto value = ParseDecimal(text);
  if (value && *value > 0 && *value <= TimedText::MaxTimeCodeRate) {
    rate = {static_cast<ui32_t>(*value), element->Line};
  } else {
    reading.Note(value ? TextProblem_t::OutOfRange : TextProblem_t::Malformed, element, text,
                 std::to_string(rate.Value));
  }
}

void ReadStartTime(TextReading& reading, const Element* element) {
  const ui32_t rate = reading.Document().TimeCodeRate.Value;
  TextField<i64_t>& start = reading.Document().StartTime;
  const std::string text = TrimmedText(element);
  const auto time = ParseTimeCode(text, rate);
  if (time) start = {time->Units, element->Line};
  if (!time || time->Problem)
    reading.Note(time ? *time->Problem : TextProblem_t::Malformed, element, text, FormatTextTime(start.Value, rate));
}

void ReadDisplayType(TextReading& reading, const Element* element) {
  ReadText<&TimedText::DisplayType>(reading, element);
  if (reading.Document().Edition == TimedTextEdition_t::SMPTE2007)
    reading.Note(TextProblem_t::OtherEdition, element, TrimmedText(element), TrimmedText(element));
}

constexpr HeadElement s_Elements[] = {
    {"Id", "SubtitleID", true, ReadID},
    {"ContentTitleText", "MovieTitle", true, ReadText<&TimedText::ContentTitle>},
    {"AnnotationText", "", false, ReadText<&TimedText::Annotation>},
    {"IssueDate", "", true, ReadText<&TimedText::IssueDate>},
    {"ReelNumber", "ReelNumber", false, ReadReelNumber},
    {"Language", "Language", false, ReadText<&TimedText::Language>},
    {"EditRate", "", true, ReadEditRate},
    {"TimeCodeRate", "", true, ReadTimeCodeRate},
    {"StartTime", "", false, ReadStartTime},
    {"DisplayType", "", false, ReadDisplayType},
};

/// The entry of an element of that name; null where there is none.
const HeadElement* FindHead(const TextReading& reading, const Element* element) {
  if (!IsOwnElement(element)) return nullptr;
  const auto name_of = [&](const HeadElement& head) { return reading.IsInterop() ? head.Interop : head.SMPTE; };
  const auto* found = std::ranges::find(s_Elements, LocalName(element), name_of);
  return found == std::end(s_Elements) ? nullptr : found;
}

// Interop documents must have a ReelNumber and a Language.
void ReadHead(TextReading& reading, const Element* root, const HeadElement& head) {
  const std::string_view name = reading.IsInterop() ? head.Interop : head.SMPTE;
  if (name.empty()) return;
  const Element* first = nullptr;
  for (auto* child = FirstChildElement(root); child != nullptr; child = NextSiblingElement(child)) {
    if (FindHead(reading, child) != &head) continue;
    if (first != nullptr) reading.Note(TextProblem_t::Repeated, child, TextContent(child));
    if (first == nullptr) first = child;
  }
  if (first != nullptr) return head.Read(reading, first);
  if (head.IsRequired || reading.IsInterop())
    reading.Note(TextProblem_t::Missing, root->Line, std::string(name), {}, {});
}

void ReadLoadFont(TextReading& reading, const Element* element) {
  static constexpr TextAttributeName IDName{"ID", "Id"};
  static constexpr TextAttributeName URIName{"", "URI"};
  LoadedFont font;
  font.Line = element->Line;
  TextAttributes attributes(reading, element);
  const auto id = attributes.Find(IDName);
  if (!id && reading.IsInterop()) attributes.NoteMissing(IDName);
  font.ID = id.value_or("");
  if (reading.IsInterop()) {
    const auto uri = attributes.Find(URIName);
    if (!uri) attributes.NoteMissing(URIName);
    if (uri) font.Resource = ReadTextResource(reading, element, *uri);
  } else {
    font.Resource = ReadTextResource(reading, element, TrimmedText(element));
  }
  attributes.NoteUnknown();
  reading.AddLoadFont(std::move(font), element);
}

void ReadRootAttributes(TextReading& reading, const Element* root) {
  TextAttributes attributes(reading, root);
  if (reading.IsInterop()) {
    static constexpr TextAttributeName Name{"Version", "Version"};
    attributes.String(Name, reading.Document().Version);
    if (!reading.Document().Version.IsPresent()) attributes.NoteMissing(Name);
  } else {
    static constexpr TextAttributeName Name{"IntrinsicPictureResolution", "IntrinsicPictureResolution",
                                            TimedTextEdition_t::SMPTE2014, false};
    attributes.String(Name, reading.Document().PictureResolution);
  }
  attributes.NoteUnknown();
}

}  // namespace

void ReadTextHead(TextReading& reading, const Element* root) {
  TimedText& document = reading.Document();
  if (!reading.IsInterop()) {
    document.Language.Value = "en";
    document.DisplayType.Value = "MainSubtitle";
  }
  ReadRootAttributes(reading, root);
  for (const HeadElement& head : s_Elements) {
    if (head.Read == ReadTimeCodeRate) document.TimeCodeRate.Value = NominalRate(document.EditRate.Value);
    ReadHead(reading, root, head);
  }
  if (!document.EditRate.IsPresent() && document.TimeCodeRate.IsPresent())
    document.EditRate.Value = QUIRE::Rational(static_cast<i32_t>(document.TimeCodeRate.Value), 1);
  for (auto* child = FirstChildElement(root); child != nullptr; child = NextSiblingElement(child))
    if (LocalName(child) == "LoadFont" && IsOwnElement(child)) ReadLoadFont(reading, child);
  TextFont& font = document.FontList.emplace_back();
  if (!document.LoadFontList.empty()) font.LoadFont.Value = 0;
}

bool IsTextHead(const TextReading& reading, const Element* child) {
  return FindHead(reading, child) != nullptr || (LocalName(child) == "LoadFont" && IsOwnElement(child));
}

}  // namespace Cairn
