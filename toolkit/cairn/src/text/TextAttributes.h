// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TextReading.h"
#include "TextTime.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Cairn {

/// An attribute as the two flavours spell it, and the edition of ST 428-7 that brought it.
struct TextAttributeName {
  std::string_view SMPTE;
  std::string_view Interop;
  TimedTextEdition_t Since = TimedTextEdition_t::SMPTE2007;
  bool IsInInterop = true;
};

struct DecimalRange {
  double Least;
  double Most;
};

/// Reads typed values out of an element's attributes. One that is absent or malformed leaves its target; one out of its
/// range is taken for the range's end. What nobody asked for is unknown.
class TextAttributes {
 public:
  template <class T>
  using Words = std::initializer_list<std::pair<std::string_view, T>>;

  TextAttributes(TextReading& reading, const Element* element);

  /// One of the words; given back, or nothing where it is none.
  template <class T>
  std::string_view Word(const TextAttributeName& name, TextField<T>& out, Words<T> words) {
    const auto text = Find(name);
    if (!text) return {};
    std::string_view used;
    for (const auto& [word, value] : words) {
      if (word == *text) {
        Set(out, value);
        return word;
      }
      if (used.empty() && value == out.Value) used = word;
    }
    Note(TextProblem_t::Malformed, *text, used);
    return {};
  }

  void YesNo(const TextAttributeName& name, TextField<bool>& out);
  void Color(const TextAttributeName& name, TextField<ui32_t>& out);
  /// A whole number from 1 on.
  void Positive(const TextAttributeName& name, TextField<ui32_t>& out);
  void Decimal(const TextAttributeName& name, TextField<double>& out, const DecimalRange& range);
  /// A decimal, in an Interop document with "em" at its end.
  void Em(const TextAttributeName& name, TextField<double>& out, const DecimalRange& range);
  void String(const TextAttributeName& name, TextField<std::string>& out);
  /// A time of the document's flavour, or the length of a fade.
  void Time(const TextAttributeName& name, TextField<i64_t>& out);
  void Fade(const TextAttributeName& name, TextField<i64_t>& out);
  /// The value, trimmed, if it is there.
  [[nodiscard]] std::optional<std::string> Find(const TextAttributeName& name);

  /// Notes that the attribute just looked for has, or is for want of, a value.
  void Note(TextProblem_t kind, std::string_view found, std::string_view used);
  /// Notes a word of the attribute just read that only documents of `edition` on have.
  void NoteSince(TimedTextEdition_t edition, std::string_view word);
  void NoteMissing(const TextAttributeName& name);
  /// Notes the attributes that no one asked for.
  void NoteUnknown();

 private:
  template <class T>
  void Set(TextField<T>& out, T value) {
    out = {std::move(value), m_Element->Line};
  }

  void SetDecimal(std::string_view text, TextField<double>& out, const DecimalRange& range);
  void SetTime(const std::string& text, const std::optional<TextTime>& time, TextField<i64_t>& out);
  [[nodiscard]] std::string_view Spelling(const TextAttributeName& name) const;

  TextReading& m_Reading;
  const Element* m_Element;
  std::string_view m_Current;             // name of the attribute read last
  std::vector<std::string_view> m_Asked;  // names of the attributes that were found
};

/// The font of what stands inside a Font element: that of `outer`, an index into FontList, but for its attributes.
[[nodiscard]] size_t ReadTextFont(TextReading& reading, const Element* element, size_t outer);
/// The attributes that place a Text or an Image element; of a Text the direction as well.
void ReadTextPlace(TextAttributes& attributes, TextPlace& place);
void ReadTextDirection(TextReading& reading, TextAttributes& attributes, TextField<TextDirection_t>& direction);

/// A decimal as XML Schema writes it (part 2, 3.2.3): no exponent.
[[nodiscard]] std::optional<double> ParseSignedDecimal(std::string_view text);

}  // namespace Cairn
