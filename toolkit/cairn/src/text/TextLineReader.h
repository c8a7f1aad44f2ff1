// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TextReading.h"

namespace Cairn {

/// A Text element; `font` is the index in FontList of the font around it.
[[nodiscard]] TextLine ReadTextLine(TextReading& reading, const Element* element, size_t font);

}  // namespace Cairn
