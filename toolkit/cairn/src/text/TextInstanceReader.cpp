// SPDX-License-Identifier: BSD-3-Clause
#include "TextInstanceReader.h"

#include "TextAttributes.h"
#include "TextLineReader.h"
#include "base/Blanks.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace Cairn {
namespace {

constexpr TextAttributeName TimeInName{"TimeIn", "TimeIn"};
constexpr TextAttributeName TimeOutName{"TimeOut", "TimeOut"};

void ReadTimes(TextReading& reading, TextAttributes& attributes, TextInstance& instance) {
  static constexpr i64_t InteropFade = 80;  // ms: 20 ticks
  static constexpr i64_t SMPTEFade = 2;     // units
  attributes.Time(TimeInName, instance.TimeIn);
  attributes.Time(TimeOutName, instance.TimeOut);
  // An instance without one of the times is never shown.
  if (!instance.TimeIn.IsPresent()) instance.TimeIn.Value = instance.TimeOut.Value;
  if (!instance.TimeOut.IsPresent()) instance.TimeOut.Value = instance.TimeIn.Value;
  instance.FadeUpTime.Value = instance.FadeDownTime.Value = reading.IsInterop() ? InteropFade : SMPTEFade;
  attributes.Fade({"FadeUpTime", "FadeUpTime"}, instance.FadeUpTime);
  attributes.Fade({"FadeDownTime", "FadeDownTime"}, instance.FadeDownTime);
}

TextImage ReadImage(TextReading& reading, const Element* element) {
  TextImage image;
  image.Line = element->Line;
  TextAttributes attributes(reading, element);
  ReadTextPlace(attributes, image.Place);
  attributes.NoteUnknown();
  image.Resource = ReadTextResource(reading, element, TrimmedText(element));
  return image;
}

void ReadVariableZ(TextReading& reading, const Element* element, TextInstance& instance) {
  static constexpr TextAttributeName Name{"ID", "ID", TimedTextEdition_t::SMPTE2014, false};
  TextAttributes attributes(reading, element);
  const auto id = attributes.Find(Name);
  if (!id) attributes.NoteMissing(Name);
  attributes.NoteUnknown();
  instance.VariableZList.push_back({id.value_or(""), TrimmedText(element), element->Line});
}

/// The content of an instance and of the Font elements in it, which in an ST 428-7 document are one deep and hold Text.
void ReadContent(TextReading& reading, const Element* element, size_t font, TextInstance& instance) {
  const bool is_in_font = LocalName(element) == "Font";
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string_view name = IsOwnElement(child) ? std::string_view(LocalName(child)) : std::string_view();
    const bool is_misplaced = is_in_font && !reading.IsInterop() && name != "Text";
    if (name == "Text") {
      instance.TextList.push_back(ReadTextLine(reading, child, font));
    } else if (name == "Image") {
      instance.ImageList.push_back(ReadImage(reading, child));
    } else if (name == "LoadVariableZ") {
      ReadVariableZ(reading, child, instance);
    } else if (name == "Font") {
      ReadContent(reading, child, ReadTextFont(reading, child, font), instance);
    } else {
      reading.Note(TextProblem_t::Unknown, child, TextContent(child));
      continue;
    }
    if (is_misplaced) reading.Note(TextProblem_t::Misplaced, child);
  }
  reading.NoteStrayText(element);
}

void CheckVariableZ(TextReading& reading, const TextInstance& instance) {
  std::unordered_set<std::string_view> known;
  for (const TextVariableZ& list : instance.VariableZList) known.insert(list.ID);
  const auto check = [&](const TextField<std::string>& id) {
    if (id.IsPresent() && !known.contains(id.Value))
      reading.Note(TextProblem_t::NotLoaded, id.Line, "Subtitle/*/@VariableZ", id.Value, {});
  };
  for (const TextLine& line : instance.TextList) check(line.Place.VariableZ);
  for (const TextImage& image : instance.ImageList) check(image.Place.VariableZ);
}

}  // namespace

Result_t ReadTextInstance(TextReading& reading, const Element* element, size_t font) {
  if (reading.Document().InstanceList.size() == TimedText::MaxInstanceCount) return Ferro::RESULT_TOOLARGE;
  static constexpr TextAttributeName SpotName{"SpotNumber", "SpotNumber"};
  TextInstance instance;
  instance.Line = element->Line;
  TextAttributes attributes(reading, element);
  attributes.String(SpotName, instance.SpotNumber);
  if (!instance.SpotNumber.IsPresent() && reading.IsInterop()) attributes.NoteMissing(SpotName);
  ReadTimes(reading, attributes, instance);
  attributes.NoteUnknown();
  ReadContent(reading, element, font, instance);
  CheckVariableZ(reading, instance);
  reading.Document().InstanceList.push_back(std::move(instance));
  return Ferro::RESULT_OK;
}

Result_t ReadTextList(TextReading& reading, const Element* element, size_t font) {
  const bool is_in_font = LocalName(element) == "Font";
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string_view name = IsOwnElement(child) ? std::string_view(LocalName(child)) : std::string_view();
    Result_t result = Ferro::RESULT_OK;
    if (name == "Subtitle") {
      result = ReadTextInstance(reading, child, font);
    } else if (name == "Font") {
      if (is_in_font && !reading.IsInterop()) reading.Note(TextProblem_t::Misplaced, child);
      result = ReadTextList(reading, child, ReadTextFont(reading, child, font));
    } else {
      reading.Note(TextProblem_t::Unknown, child, TextContent(child));
    }
    if (result.Failure()) return result;
  }
  reading.NoteStrayText(element);
  return Ferro::RESULT_OK;
}

void MoveToOrigin(TextReading& reading) {
  TimedText& document = reading.Document();
  std::vector<TextInstance>& instances = document.InstanceList;
  const i64_t start = document.StartTime.Value;
  if (start == 0 || instances.empty()) return;
  const auto note = [&](ui64_t line, const char* name, i64_t found, i64_t used) {
    const ui32_t rate = document.TimeCodeRate.Value;
    reading.Note(TextProblem_t::BeforeStart, line, name, FormatTextTime(found, rate), FormatTextTime(used, rate));
  };
  const auto is_before = [&](const TextInstance& instance) {
    return instance.TimeIn.IsPresent() && instance.TimeIn.Value < start;
  };
  const auto is_within = [&](const TextInstance& instance) { return instance.TimeIn.Value >= start; };
  if (std::ranges::none_of(instances, is_within) && std::ranges::any_of(instances, is_before))
    return note(document.StartTime.Line, "StartTime", start, 0);  // not meant as an origin
  document.Origin = start;
  for (TextInstance& instance : instances) {
    const i64_t time = instance.TimeIn.Value;
    if (is_before(instance)) note(instance.TimeIn.Line, "Subtitle/@TimeIn", time, time);
    instance.TimeIn.Value -= start;
    instance.TimeOut.Value -= start;
  }
}

TextResource ReadTextResource(TextReading& reading, const Element* element, std::string_view text) {
  TextResource resource;
  if (reading.IsInterop()) {
    resource.Path = std::string(TrimBlanks(text));
    if (resource.Path.empty()) reading.Note(TextProblem_t::Malformed, element);
    return resource;
  }
  if (const auto id = UUID::FromURN(text)) {
    resource.ID = *id;
  } else {
    if (const auto plain = UUID::FromHex(text)) resource.ID = *plain;
    reading.Note(TextProblem_t::Malformed, element, text, resource.HasValue() ? resource.ID.EncodeURN() : "");
  }
  return resource;
}

}  // namespace Cairn
