// SPDX-License-Identifier: BSD-3-Clause
#include "TextAttributes.h"

#include "base/Blanks.h"
#include "base/Decimal.h"
#include "base/UTF16.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <locale>
#include <sstream>

namespace Cairn {
namespace {

constexpr double NoLimit = std::numeric_limits<double>::max();

std::string FormatNumber(double value) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << value;
  return text.str();
}

std::string FormatColor(ui32_t color) {
  static constexpr char Digits[] = "0123456789ABCDEF";
  std::string text(8, '0');
  for (size_t i = 0; i < 8; ++i) text[7 - i] = Digits[color >> (4 * i) & 0xFU];
  return text;
}

std::optional<ui32_t> ParseHex(std::string_view text) {
  ui32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

/// Attributes that belong to XML itself, or to schema instances.
bool IsForeign(std::string_view name) {
  return name == "xmlns" || name.starts_with("xmlns:") || name.starts_with("xml:") || name.starts_with("xsi:");
}

}  // namespace

TextAttributes::TextAttributes(TextReading& reading, const Element* element) : m_Reading(reading), m_Element(element) {}

std::string_view TextAttributes::Spelling(const TextAttributeName& name) const {
  return m_Reading.IsInterop() ? name.Interop : name.SMPTE;
}

std::optional<std::string> TextAttributes::Find(const TextAttributeName& name) {
  const auto find = [&](std::string_view spelling) -> const Element::NamedValue* {
    const auto found = std::ranges::find(m_Element->Attributes, spelling,
                                         [](const auto& attribute) -> std::string_view { return *attribute.Name; });
    return found == m_Element->Attributes.end() ? nullptr : &*found;
  };
  const Element::NamedValue* attribute = find(Spelling(name));
  const bool is_own = attribute != nullptr;
  if (!is_own) attribute = find(m_Reading.IsInterop() ? name.SMPTE : name.Interop);
  if (attribute == nullptr) return std::nullopt;

  m_Current = *attribute->Name;
  m_Asked.push_back(m_Current);
  const std::string text = UTF16ToUTF8(attribute->Value);
  std::string value(TrimBlanks(text));
  const bool is_early = m_Reading.IsInterop() ? !name.IsInInterop : m_Reading.Document().Edition < name.Since;
  if (!is_own || is_early) Note(TextProblem_t::OtherEdition, value, value);
  return value;
}

void TextAttributes::YesNo(const TextAttributeName& name, TextField<bool>& out) {
  Word<bool>(name, out, {{"no", false}, {"yes", true}});
}

void TextAttributes::Color(const TextAttributeName& name, TextField<ui32_t>& out) {
  static constexpr ui32_t Opaque = 0xFF000000;
  const auto text = Find(name);
  if (!text) return;
  const auto value = ParseHex(*text);
  if (value && text->size() == 8) return Set(out, *value);
  const bool is_opaque = value && text->size() == 6;  // written for the web
  if (is_opaque) Set(out, *value | Opaque);
  Note(TextProblem_t::Malformed, *text, FormatColor(out.Value));
}

void TextAttributes::Positive(const TextAttributeName& name, TextField<ui32_t>& out) {
  const auto text = Find(name);
  if (!text) return;
  const auto value = ParseDecimal(*text);
  if (value && *value > 0 && *value <= std::numeric_limits<ui32_t>::max()) return Set(out, static_cast<ui32_t>(*value));
  Note(value ? TextProblem_t::OutOfRange : TextProblem_t::Malformed, *text, std::to_string(out.Value));
}

void TextAttributes::Decimal(const TextAttributeName& name, TextField<double>& out, const DecimalRange& range) {
  if (const auto text = Find(name)) SetDecimal(*text, out, range);
}

void TextAttributes::Em(const TextAttributeName& name, TextField<double>& out, const DecimalRange& range) {
  const auto text = Find(name);
  if (!text) return;
  const bool has_unit = text->ends_with("em");
  const std::string_view number = std::string_view(*text).substr(0, text->size() - (has_unit ? 2 : 0));
  SetDecimal(number, out, range);
  if (has_unit != m_Reading.IsInterop() && ParseSignedDecimal(number))
    Note(TextProblem_t::OtherEdition, *text, FormatNumber(out.Value));
}

void TextAttributes::SetDecimal(std::string_view text, TextField<double>& out, const DecimalRange& range) {
  const auto value = ParseSignedDecimal(text);
  if (!value) return Note(TextProblem_t::Malformed, text, FormatNumber(out.Value));
  Set(out, std::clamp(*value, range.Least, range.Most));
  if (out.Value != *value) Note(TextProblem_t::OutOfRange, text, FormatNumber(out.Value));
}

void TextAttributes::String(const TextAttributeName& name, TextField<std::string>& out) {
  if (auto text = Find(name)) Set(out, std::move(*text));
}

void TextAttributes::SetTime(const std::string& text, const std::optional<TextTime>& time, TextField<i64_t>& out) {
  const auto rate = m_Reading.IsInterop() ? std::nullopt : std::optional(m_Reading.Document().TimeCodeRate.Value);
  if (time) Set(out, time->Units);
  if (!time) Note(TextProblem_t::Malformed, text, FormatTextTime(out.Value, rate));
  if (time && time->Problem) Note(*time->Problem, text, FormatTextTime(out.Value, rate));
}

void TextAttributes::Time(const TextAttributeName& name, TextField<i64_t>& out) {
  const auto text = Find(name);
  if (!text) return NoteMissing(name);
  const auto time =
      m_Reading.IsInterop() ? ParseTickTime(*text) : ParseTimeCode(*text, m_Reading.Document().TimeCodeRate.Value);
  if (!time) return Note(TextProblem_t::Malformed, *text, {});
  SetTime(*text, time, out);
}

void TextAttributes::Fade(const TextAttributeName& name, TextField<i64_t>& out) {
  const auto text = Find(name);
  if (!text) return;
  SetTime(*text,
          m_Reading.IsInterop() ? ParseTickFade(*text) : ParseTimeCode(*text, m_Reading.Document().TimeCodeRate.Value),
          out);
}

void TextAttributes::Note(TextProblem_t kind, std::string_view found, std::string_view used) {
  m_Reading.Note(kind, m_Element->Line, LocalName(m_Element) + "/@" + std::string(m_Current), found, used);
}

void TextAttributes::NoteSince(TimedTextEdition_t edition, std::string_view word) {
  if (m_Reading.Document().Edition < edition) Note(TextProblem_t::OtherEdition, word, word);
}

void TextAttributes::NoteMissing(const TextAttributeName& name) {
  m_Current = Spelling(name);
  Note(TextProblem_t::Missing, {}, {});
}

void TextAttributes::NoteUnknown() {
  for (const Element::NamedValue& attribute : m_Element->Attributes) {
    if (IsForeign(*attribute.Name) || std::ranges::find(m_Asked, *attribute.Name) != m_Asked.end()) continue;
    m_Current = *attribute.Name;
    Note(TextProblem_t::Unknown, UTF16ToUTF8(attribute.Value), {});
  }
}

size_t ReadTextFont(TextReading& reading, const Element* element, size_t outer) {
  using enum TimedTextEdition_t;
  TextFont font = reading.Document().FontList[outer];
  TextAttributes attributes(reading, element);
  if (const auto id = attributes.Find({"ID", "Id"})) {
    font.LoadFont = {reading.FindLoadFont(*id), element->Line};
    if (font.LoadFont.Value == TextFont::NoLoadFont) attributes.Note(TextProblem_t::NotLoaded, *id, {});
  }
  attributes.Word<TextScript_t>(
      {"Script", "Script"}, font.Script,
      {{"normal", TextScript_t::Normal}, {"super", TextScript_t::Super}, {"sub", TextScript_t::Sub}});
  const auto effect = attributes.Word<TextEffect_t>({"Effect", "Effect"}, font.Effect,
                                                    {{"none", TextEffect_t::None},
                                                     {"border", TextEffect_t::Border},
                                                     {"shadow", TextEffect_t::Shadow},
                                                     {"outline", TextEffect_t::Border}});
  if (effect == "outline") attributes.Note(TextProblem_t::Malformed, effect, "border");
  const auto slant = attributes.Word<TextSlant_t>({"Italic", "Italic"}, font.Italic,
                                                  {{"no", TextSlant_t::None},
                                                   {"yes", TextSlant_t::Right},
                                                   {"left", TextSlant_t::Left},
                                                   {"right", TextSlant_t::Right}});
  if (slant == "left" || slant == "right") attributes.NoteSince(SMPTE2014, slant);
  attributes.YesNo({"Underline", "Underlined"}, font.Underline);
  attributes.Word<bool>({"Weight", "Weight"}, font.IsBold, {{"normal", false}, {"bold", true}});
  attributes.Color({"Color", "Color"}, font.Color);
  attributes.Color({"EffectColor", "EffectColor"}, font.EffectColor);
  attributes.Positive({"Size", "Size"}, font.Size);
  attributes.Decimal({"AspectAdjust", "AspectAdjust", SMPTE2010}, font.AspectAdjust, {0.25, 4});
  attributes.Em({"Spacing", "Spacing", SMPTE2010}, font.Spacing, {-1, NoLimit});
  attributes.Decimal({"EffectSize", "EffectSize", SMPTE2014}, font.EffectSize, {0, NoLimit});
  attributes.YesNo({"Feather", "Feather", SMPTE2014, false}, font.Feather);
  attributes.NoteUnknown();
  if (font == reading.Document().FontList[outer]) return outer;
  reading.Document().FontList.push_back(std::move(font));
  return reading.Document().FontList.size() - 1;
}

void ReadTextPlace(TextAttributes& attributes, TextPlace& place) {
  using enum TimedTextEdition_t;
  static constexpr DecimalRange Percent{-100, 100};
  attributes.Word<TextHalign_t>(
      {"Halign", "HAlign"}, place.Halign,
      {{"left", TextHalign_t::Left}, {"center", TextHalign_t::Center}, {"right", TextHalign_t::Right}});
  attributes.Decimal({"Hposition", "HPosition"}, place.Hposition, Percent);
  attributes.Word<TextValign_t>(
      {"Valign", "VAlign"}, place.Valign,
      {{"top", TextValign_t::Top}, {"center", TextValign_t::Center}, {"bottom", TextValign_t::Bottom}});
  attributes.Decimal({"Vposition", "VPosition"}, place.Vposition, Percent);
  attributes.Decimal({"Zposition", "ZPosition", SMPTE2014, false}, place.Zposition, Percent);
  attributes.String({"VariableZ", "VariableZ", SMPTE2014, false}, place.VariableZ);
}

void ReadTextDirection(TextReading& reading, TextAttributes& attributes, TextField<TextDirection_t>& direction) {
  using enum TextDirection_t;
  static constexpr TextAttributeName Name{"Direction", "Direction"};
  if (reading.IsInterop()) {
    direction.Value = Horizontal;
    attributes.Word<TextDirection_t>(Name, direction, {{"horizontal", Horizontal}, {"vertical", TopToBottom}});
    return;
  }
  const auto word = attributes.Word<TextDirection_t>(
      Name, direction,
      {{"ltr", LeftToRight}, {"rtl", RightToLeft}, {"ttb", TopToBottom}, {"btt", BottomToTop}, {"hor", Horizontal}});
  if (word == "hor") attributes.NoteSince(TimedTextEdition_t::SMPTE2014, word);
}

std::optional<double> ParseSignedDecimal(std::string_view text) {
  static constexpr size_t MaxLength = 64;  // far from where a double ends
  if (text.size() > MaxLength || text.find_first_not_of("+-.0123456789") != std::string_view::npos) return std::nullopt;
  if (text.starts_with('+')) text.remove_prefix(text.starts_with("+-") ? 0 : 1);
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

}  // namespace Cairn
