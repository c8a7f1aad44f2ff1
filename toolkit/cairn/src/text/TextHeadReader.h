// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TextReading.h"

namespace Cairn {

/// Reads all that the document says ahead of its instances: identity, rates, fonts.
void ReadTextHead(TextReading& reading, const Element* root);

/// True for an element of the root that ReadTextHead reads.
[[nodiscard]] bool IsTextHead(const TextReading& reading, const Element* child);

}  // namespace Cairn
