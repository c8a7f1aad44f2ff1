// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/TextGeometry.h>

namespace Cairn {
namespace {

constexpr double PointsOfPicture = 792;  // 11 inches of 72 points
constexpr double ScriptSize = 0.6;       // em of the characters beside the line
constexpr double ScriptRise = 0.5;

/// Where a place lies between the edges of a picture of that size. `position` counts inwards from either edge.
template <class T>
double Anchor(T align, T low, T high, double position, double size) {
  const double distance = size * position / 100;
  if (align == low) return distance;
  return align == high ? size - distance : size / 2 + distance;
}

}  // namespace

double EmHeight(ui32_t size, double picture_height) {
  return size * picture_height / PointsOfPicture;
}

double AnchorY(const TextPlace& place, double picture_height) {
  return Anchor(place.Valign.Value, TextValign_t::Top, TextValign_t::Bottom, place.Vposition.Value, picture_height);
}

double BoxBaselineY(const TextPlace& place, double picture_height, double ascent, double descent) {
  const double y = AnchorY(place, picture_height);
  switch (place.Valign.Value) {
    case TextValign_t::Top:
      return y + ascent;
    case TextValign_t::Bottom:
      return y - descent;
    case TextValign_t::Center:
      break;
  }
  return y + (ascent - descent) / 2;
}

double AnchorX(const TextPlace& place, double picture_width) {
  return Anchor(place.Halign.Value, TextHalign_t::Left, TextHalign_t::Right, place.Hposition.Value, picture_width);
}

double TextWidth(const TextFont& font, double advance, size_t character_count, double picture_height) {
  const double gaps = character_count == 0 ? 0 : static_cast<double>(character_count - 1);
  return CharacterHeight(font, picture_height) * (advance * font.AspectAdjust.Value + gaps * font.Spacing.Value);
}

double EffectWidth(const TextFont& font, double picture_height) {
  return font.EffectSize.Value * EmHeight(font.Size.Value, picture_height);
}

double CharacterHeight(const TextFont& font, double picture_height) {
  const double em = EmHeight(font.Size.Value, picture_height);
  return font.Script.Value == TextScript_t::Normal ? em : ScriptSize * em;
}

double BaselineRise(const TextFont& font, double picture_height) {
  const double rise = ScriptRise * EmHeight(font.Size.Value, picture_height);
  if (font.Script.Value == TextScript_t::Super) return rise;
  return font.Script.Value == TextScript_t::Sub ? -rise : 0;
}

double ColorOpacity(ui32_t color) {
  return static_cast<double>(color >> 24U) / 255;
}

double LeftEyeShift(const TextPlace& place, double picture_width) {
  return -picture_width * place.Zposition.Value / 100 / 2;
}

ImageBox PlaceImage(const TextPlace& place, ui32_t width, ui32_t height, double picture_width, double picture_height) {
  // By how much of its size the image lies left of, or above, what its place names.
  const auto share = [](auto align, auto low, auto high) { return align == low ? 0.0 : align == high ? 1.0 : 0.5; };
  const double left = share(place.Halign.Value, TextHalign_t::Left, TextHalign_t::Right);
  const double above = share(place.Valign.Value, TextValign_t::Top, TextValign_t::Bottom);
  return {AnchorX(place, picture_width) - left * width, AnchorY(place, picture_height) - above * height,
          static_cast<double>(width), static_cast<double>(height)};
}

}  // namespace Cairn
