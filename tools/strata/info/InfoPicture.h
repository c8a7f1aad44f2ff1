// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

#include <Ferro/Types.h>

namespace Tool {

/// What of a picture is shown; 0 where the file does not say.
struct DisplaySize {
  Ferro::ui32_t Width = 0;   ///< pixels
  Ferro::ui32_t Height = 0;  ///< pixels
};

/// Adds the size that is stored, in pixels, and the one that is displayed beside it.
void SetPictureSize(InfoFacts& picture, Ferro::ui32_t width, Ferro::ui32_t height, const DisplaySize& displayed = {});

/// "50.0 Mbit/s".
[[nodiscard]] std::string BitRateText(Ferro::ui32_t bits_per_second);

}  // namespace Tool
