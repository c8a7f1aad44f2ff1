// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Export.h>
#include <Assay/Result.h>
#include <Assay/Types.h>

#include <Ferro/Types.h>

#include <array>
#include <span>
#include <string>
#include <vector>

namespace Assay {

/// A picture out of its codestream.
struct DecodedPicture {
  ui32_t Width = 0;
  ui32_t Height = 0;
  ui32_t Bits = 0;                                   ///< per sample, up to 16
  std::vector<std::array<Ferro::ui16_t, 3>> Pixels;  ///< by rows
};

/// Decodes a JPEG 2000 codestream (ISO/IEC 15444-1) of three equal components, or of one, which then stands for all three.
/// The bytes may be anything; what they claim is looked at before memory is taken for it. Any thread may call it.
/// @param reason  on failure receives why, as the end of a sentence, in English: "it is cut short".
/// @return RESULT_OK; QUIRE::RESULT_RAW_FORMAT where they are no such codestream, or it is cut short, of more than 1024 tiles,
/// of more pixels than 4096 x 2160, of more than a million packets and code blocks, or of tile-parts with coding styles of
/// their own; RESULT_ALLOC. On failure `picture` is unchanged.
[[nodiscard]] ASSAY_API Result_t DecodePicture(std::span<const ui8_t> codestream, DecodedPicture& picture,
                                               std::string& reason);
/// The same, keeping nothing of the picture: whether it can be decoded.
[[nodiscard]] ASSAY_API Result_t TryDecoding(std::span<const ui8_t> codestream, std::string& reason);

}  // namespace Assay
