// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TextReading.h"

#include <Cairn/Result.h>

namespace Cairn {

/// Reads the instances below an element, whatever Font elements stand around them. `font` is the index in FontList of
/// the font around the element.
/// @return Ferro::RESULT_TOOLARGE for more than TimedText::MaxInstanceCount.
[[nodiscard]] Result_t ReadTextList(TextReading& reading, const Element* element, size_t font);
/// Reads one instance.
[[nodiscard]] Result_t ReadTextInstance(TextReading& reading, const Element* element, size_t font);

/// Has the times of the instances count from the document's origin, which it finds.
void MoveToOrigin(TextReading& reading);

/// The reference that an element's text or an attribute holds; noted when it is malformed.
[[nodiscard]] TextResource ReadTextResource(TextReading& reading, const Element* element, std::string_view text);

}  // namespace Cairn
