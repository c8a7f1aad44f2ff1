// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/Types.h>

#include <string>
#include <variant>
#include <vector>

namespace Cairn {

// What an instance of timed text shows: lines of text and images, each with its place, and the fonts of the text. Names
// and clauses are those of ST 428-7:2014; Interop documents have the same under other spellings. Plain values.

/// A value of a document, told apart from the default that holds where the document has none.
template <class T>
struct TextField {
  T Value{};        ///< as read, or the default
  ui64_t Line = 0;  ///< where the start tag ends that says it, from 1; 0: none does, or none that can be read

  [[nodiscard]] bool IsPresent() const { return Line != 0; }
  friend bool operator==(const TextField&, const TextField&) = default;
};

enum class TextScript_t { Normal, Super, Sub };
enum class TextEffect_t { None, Border, Shadow };
enum class TextSlant_t { None, Left, Right };  ///< "yes" is Right
enum class TextHalign_t { Left, Center, Right };
enum class TextValign_t { Top, Center, Bottom };
enum class TextRotation_t { None, Left, Right };
enum class RubyPosition_t { Before, After };
enum class TextDirection_t {
  LeftToRight,
  RightToLeft,
  TopToBottom,  ///< Interop: "vertical"
  BottomToTop,
  Horizontal,  ///< the characters decide; the default of Interop documents
};

/// How characters look: the attributes of the Font elements around them, of which the closest wins, and the defaults of
/// those that none has (6.4). An em is EmHeight() pixels (TextGeometry.h). Colours are 0xAARRGGBB with FF opaque and
/// straight alpha.
struct TextFont {
  static constexpr ui32_t NoLoadFont = 0xFFFFFFFF;

  /// Index into TimedText::LoadFontList. Where no Font has an identifier, the first one; NoLoadFont, for the device's own
  /// font, where there is none, and where an identifier was given that none has.
  TextField<ui32_t> LoadFont{NoLoadFont};
  TextField<TextScript_t> Script{TextScript_t::Normal};  ///< 6.4.2
  TextField<TextEffect_t> Effect{TextEffect_t::Shadow};  ///< 6.4.3
  TextField<TextSlant_t> Italic{TextSlant_t::None};
  TextField<bool> Underline{false};
  TextField<bool> IsBold{false};  ///< Weight
  TextField<ui32_t> Color{0xFFFFFFFF};
  TextField<ui32_t> EffectColor{0xFF000000};  ///< 6.4.8
  TextField<ui32_t> Size{42};                 ///< points of a picture 792 points high, from 1 (6.4.9)
  TextField<double> AspectAdjust{1.0};        ///< width of the characters, 0.25 to 4
  TextField<double> Spacing{0.0};             ///< between characters, em, from -1 (6.4.11)
  /// em, from 0 (6.4.12). The default is a hairline: documents older than the attribute were made for devices that drew
  /// borders of 0.03 to 0.05.
  TextField<double> EffectSize{0.01};
  TextField<bool> Feather{false};  ///< 6.4.13

  friend bool operator==(const TextFont&, const TextFont&) = default;
};

/// Where a line or an image stands, in per cent of the composition's picture, -100 to 100 (6.2, 6.3).
struct TextPlace {
  TextField<TextHalign_t> Halign{TextHalign_t::Center};
  TextField<double> Hposition{0.0};  ///< from the named edge inwards; from the middle to the right
  TextField<TextValign_t> Valign{TextValign_t::Center};
  TextField<double> Vposition{0.0};    ///< from the named edge inwards; from the middle downwards
  TextField<double> Zposition{0.0};    ///< distance of the two eyes' copies; positive: behind the screen (6.3.6)
  TextField<std::string> VariableZ{};  ///< identifier of a TextVariableZ, which replaces Zposition; empty: none (6.3.7)

  friend bool operator==(const TextPlace&, const TextPlace&) = default;
};

/// Characters of one font, as UTF-8.
struct TextCharacters {
  std::string Text;

  friend bool operator==(const TextCharacters&, const TextCharacters&) = default;
};

/// Characters with an annotation beside them (6.5).
struct TextRuby {
  std::string Base;
  std::string Annotation;
  RubyPosition_t Position =
      RubyPosition_t::Before;  ///< above, in vertical text to the right; After: below, to the left
  double Size = 0.5;           ///< of the annotation, em of the base, above 0
  double Offset = 0;           ///< further away from the base, em, from -1
  double Spacing = 0;          ///< as TextFont, for the annotation alone
  double AspectAdjust = 1;

  friend bool operator==(const TextRuby&, const TextRuby&) = default;
};

/// An empty advance along the line (6.9).
struct TextSpace {
  double Size = 0.5;  ///< em, from -1; negative: backwards

  friend bool operator==(const TextSpace&, const TextSpace&) = default;
};

/// Characters that stand side by side in one cell of vertical text (HGroup, 6.10).
struct TextGroup {
  std::string Text;

  friend bool operator==(const TextGroup&, const TextGroup&) = default;
};

/// Characters that are each turned by a quarter (6.11).
struct TextRotate {
  std::string Text;
  TextRotation_t Direction = TextRotation_t::None;

  friend bool operator==(const TextRotate&, const TextRotate&) = default;
};

/// A stretch of a line in one font.
struct TextRun {
  std::variant<TextCharacters, TextRuby, TextSpace, TextGroup, TextRotate> Content;
  size_t Font = 0;  ///< index into TimedText::FontList
  ui64_t Line = 0;  ///< of the document, where the start tag of its element ends

  friend bool operator==(const TextRun&, const TextRun&) = default;
};

/// A Text element: one line, whatever its length (6.3). White space that has a line feed in it is the document's own
/// layout: it is left out at both ends, and one blank inside; so is a tab. Blanks stay as they are.
struct CAIRN_API TextLine {
  TextPlace Place;
  TextField<TextDirection_t> Direction{TextDirection_t::LeftToRight};  ///< Interop: Horizontal (6.3.5)
  std::vector<TextRun> RunList;
  ui64_t Line = 0;

  /// The characters of all runs in their order, without annotations.
  [[nodiscard]] std::string Characters() const;

  friend bool operator==(const TextLine&, const TextLine&) = default;
};

/// A font or an image that a document refers to: by identifier in an ST 428-7 document, by path relative to the
/// document's folder, as written and trimmed, in an Interop one. Neither where the reference cannot be read.
struct TextResource {
  UUID ID;
  std::string Path;

  [[nodiscard]] bool HasValue() const { return ID.HasValue() || !Path.empty(); }
  friend bool operator==(const TextResource&, const TextResource&) = default;
};

/// An Image element: a PNG picture, one pixel of which is one of the composition's picture (6.2).
struct TextImage {
  TextPlace Place;
  TextResource Resource;
  ui64_t Line = 0;

  friend bool operator==(const TextImage&, const TextImage&) = default;
};

/// Depths to be stepped through while an instance is shown (6.12).
struct TextVariableZ {
  std::string ID;
  std::string Depths;  ///< as written
  ui64_t Line = 0;

  friend bool operator==(const TextVariableZ&, const TextVariableZ&) = default;
};

}  // namespace Cairn
