// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/TimedTextContent.h>
#include <Cairn/Types.h>

namespace Cairn {

// From the values of timed text to pixels (ST 428-7:2014, clause 6). The picture is that of the composition: neither the
// projector's panel nor a window. x counts to the right and y downwards, from the picture's upper left corner. Round only
// what is drawn.

/// Height of the em square in pixels: `size` points of a picture 11 inches high (6.4.9).
[[nodiscard]] CAIRN_API double EmHeight(ui32_t size, double picture_height);

/// y of what Valign places: the baseline of horizontal text, as devices read all editions; the named end of vertical text
/// and of an image, or its middle.
[[nodiscard]] CAIRN_API double AnchorY(const TextPlace& place, double picture_height);
/// y of the baseline as the letter of the 2007 and 2010 editions has it: Vposition places the text's box, which reaches
/// from `ascent` above the baseline to `descent` below, both in pixels and positive.
[[nodiscard]] CAIRN_API double BoxBaselineY(const TextPlace& place, double picture_height, double ascent,
                                            double descent);
/// x of the end of the text or image that Halign names, or of its middle.
[[nodiscard]] CAIRN_API double AnchorX(const TextPlace& place, double picture_width);

/// Width in pixels of a row of characters whose advances add up to `advance` em before AspectAdjust. There is no spacing
/// after the last one: it would shift centred text.
[[nodiscard]] CAIRN_API double TextWidth(const TextFont& font, double advance, size_t character_count,
                                         double picture_height);
/// Width of the effect in pixels (6.4.12).
[[nodiscard]] CAIRN_API double EffectWidth(const TextFont& font, double picture_height);
/// em of the characters in pixels, by Size and Script (6.4.2).
[[nodiscard]] CAIRN_API double CharacterHeight(const TextFont& font, double picture_height);
/// Pixels by which Script moves the baseline; positive: upwards (6.4.2).
[[nodiscard]] CAIRN_API double BaselineRise(const TextFont& font, double picture_height);
/// Opacity of a colour 0xAARRGGBB, 0 to 1.
[[nodiscard]] CAIRN_API double ColorOpacity(ui32_t color);

/// Pixels by which the left eye's copy moves to the right; the right eye's moves as far to the left (6.3.6).
[[nodiscard]] CAIRN_API double LeftEyeShift(const TextPlace& place, double picture_width);

struct ImageBox {
  double X = 0;  ///< of the left edge
  double Y = 0;  ///< of the upper edge
  double Width = 0;
  double Height = 0;
};

/// Where an image of that many pixels is drawn, the picture being that of the composition (6.2). A picture that is shown
/// scaled scales it along.
[[nodiscard]] CAIRN_API ImageBox PlaceImage(const TextPlace& place, ui32_t width, ui32_t height, double picture_width,
                                            double picture_height);

}  // namespace Cairn
