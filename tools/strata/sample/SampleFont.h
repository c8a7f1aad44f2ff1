// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <array>

namespace Tool {

/// Seven rows of five pixels, the leftmost in bit 4.
using SampleGlyph = std::array<Ferro::ui8_t, 7>;

/// The glyph of a digit, a capital letter or ":"; a blank for any other character.
[[nodiscard]] const SampleGlyph& SampleGlyphOf(char character);

}  // namespace Tool
