// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <array>
#include <span>
#include <vector>

namespace Tool {

/// A picture out of its codestream.
struct DecodedPicture {
  Ferro::ui32_t Width = 0;
  Ferro::ui32_t Height = 0;
  unsigned Bits = 0;                                 ///< per sample, up to 16
  std::vector<std::array<Ferro::ui16_t, 3>> Pixels;  ///< by rows
};

/// Decodes a JPEG 2000 codestream (ISO/IEC 15444-1) of three equal components, or of one, which then stands for all three.
/// The bytes may be anything. Throws std::runtime_error, with the reason, where they are no such codestream, or it is cut
/// short or larger than 8192 x 8192 pixels.
[[nodiscard]] DecodedPicture DecodePicture(std::span<const Ferro::ui8_t> codestream);

}  // namespace Tool
