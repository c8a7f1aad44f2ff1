// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/PictureDecoder.h>

#include <span>

namespace Tool {

using Assay::DecodedPicture;

/// Decodes a JPEG 2000 codestream as Assay::DecodePicture. Throws std::runtime_error, with the reason, where that fails.
[[nodiscard]] DecodedPicture DecodePicture(std::span<const Ferro::ui8_t> codestream);

}  // namespace Tool
