// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/TimedText.h>

#include <Cairn/Namespace.h>

#include "TextAttributes.h"
#include "TextHeadReader.h"
#include "TextInstanceReader.h"

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>

#include <compare>
#include <set>
#include <string_view>
#include <utility>

namespace Cairn {
namespace {

constexpr ui32_t InteropUnitRate = 1000;

TimedTextEdition_t EditionOf(std::string_view namespace_name) {
  if (namespace_name == NS_SMPTE_DCST_2007) return TimedTextEdition_t::SMPTE2007;
  if (namespace_name == NS_SMPTE_DCST_2010) return TimedTextEdition_t::SMPTE2010;
  if (namespace_name == NS_SMPTE_DCST_2014) return TimedTextEdition_t::SMPTE2014;
  return TimedTextEdition_t::Other;
}

// Instances stand in SubtitleList, and in an Interop document beside the heading.
Result_t ReadBody(TextReading& reading, const Element* root) {
  bool has_list = reading.IsInterop();
  for (auto* child = FirstChildElement(root); child != nullptr; child = NextSiblingElement(child)) {
    if (IsTextHead(reading, child)) continue;
    const std::string_view name = IsOwnElement(child) ? std::string_view(LocalName(child)) : std::string_view();
    const bool is_list = name == "SubtitleList";
    const bool is_instance = name == "Subtitle" || name == "Font";
    if (!is_list && !is_instance) {
      reading.Note(TextProblem_t::Unknown, child, TextContent(child));
      continue;
    }
    if (is_list == reading.IsInterop()) reading.Note(TextProblem_t::Misplaced, child);
    if (is_list && has_list && !reading.IsInterop()) reading.Note(TextProblem_t::Repeated, child);
    has_list = has_list || is_list;
    const Result_t result = name == "Subtitle" ? ReadTextInstance(reading, child, 0)
                            : name == "Font"   ? ReadTextList(reading, child, ReadTextFont(reading, child, 0))
                                               : ReadTextList(reading, child, 0);
    if (result.Failure()) return result;
  }
  if (!has_list) reading.Note(TextProblem_t::Missing, root->Line, "SubtitleList", {}, {});
  reading.NoteStrayText(root);
  return Ferro::RESULT_OK;
}

Result_t ReadTimedText(const Element* root, Ferro::ILogSink& log, TimedText& document) {
  const bool is_interop = LocalName(root) == "DCSubtitle";
  if (!is_interop && LocalName(root) != "SubtitleReel") return RESULT_NOT_SUBTITLE;
  document.DCPFormat = is_interop ? DFT_Interop : DFT_DCI_SMPTE;
  document.NamespaceName = NamespaceName(root);
  document.Edition = is_interop ? TimedTextEdition_t::Interop : EditionOf(document.NamespaceName);
  TextReading reading(document);
  if (is_interop ? !document.NamespaceName.empty() : document.Edition == TimedTextEdition_t::Other)
    reading.Note(TextProblem_t::OtherEdition, root, document.NamespaceName);
  ReadTextHead(reading, root);
  const Result_t result = ReadBody(reading, root);
  if (result.Failure()) {
    log.Error("Timed text refused: it has more than %zu instances\n", TimedText::MaxInstanceCount);
    return result;
  }
  MoveToOrigin(reading);
  return Ferro::RESULT_OK;
}

}  // namespace

ui32_t TimedText::UnitRate() const {
  return DCPFormat == DFT_Interop ? InteropUnitRate : TimeCodeRate.Value;
}

i64_t TimedText::EditUnits(i64_t units, const QUIRE::Rational& edit_rate) const {
  // The largest product that can come of these fits 63 bits.
  static constexpr i64_t MaxUnits = 1'000'000'000;
  FERRO_ASSERT(edit_rate.Numerator > 0 && edit_rate.Denominator > 0);
  FERRO_ASSERT(units <= MaxUnits && units >= -MaxUnits);
  i64_t numerator = edit_rate.Numerator;
  i64_t denominator = edit_rate.Denominator;
  if (denominator == 1001 && DCPFormat != DFT_Interop) {
    numerator = (2 * numerator + denominator) / (2 * denominator);
    denominator = 1;
  }
  const i64_t divisor = denominator * UnitRate();
  const i64_t doubled = 2 * units * numerator + divisor;
  const i64_t quotient = doubled / (2 * divisor);
  return doubled < 0 && doubled % (2 * divisor) != 0 ? quotient - 1 : quotient;
}

std::vector<TextResource> TimedText::Resources() const {
  std::vector<TextResource> resources;
  std::set<std::pair<std::string, std::string>> known;
  const auto add = [&](const TextResource& resource) {
    if (resource.HasValue() && known.emplace(resource.ID.EncodeString(), resource.Path).second)
      resources.push_back(resource);
  };
  for (const LoadedFont& font : LoadFontList) add(font.Resource);
  for (const TextInstance& instance : InstanceList)
    for (const TextImage& image : instance.ImageList) add(image.Resource);
  return resources;
}

Result_t TimedText::DecodeXML(const std::string& xml) {
  *this = TimedText();
  const Result_t result = ReadDocument(
      xml, Ferro::DefaultLogSink(),
      [this](const Element* root, DCPFormat_t, Ferro::ILogSink& log) { return ReadTimedText(root, log, *this); });
  if (result.Failure()) *this = TimedText();
  return result;
}

}  // namespace Cairn
