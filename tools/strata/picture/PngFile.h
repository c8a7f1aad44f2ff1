// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <vector>

namespace Tool {

/// A picture as PNG knows it: rows from the top, pixels from the left, 8 bits per sample, sRGB.
struct PngPicture {
  Ferro::ui32_t Width = 0;            ///< pixels, at least 1
  Ferro::ui32_t Height = 0;           ///< pixels, at least 1
  Ferro::ui32_t Channels = 3;         ///< 3: red, green, blue; 4: and alpha, 0 transparent
  std::vector<Ferro::ui8_t> Samples;  ///< Width × Height × Channels
};

/// The bytes of a PNG file (ISO/IEC 15948) with this picture and nothing that tells when or by whom it was made. Throws
/// std::runtime_error when the encoder refuses.
[[nodiscard]] std::vector<Ferro::ui8_t> EncodePng(const PngPicture& picture);

}  // namespace Tool
