// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <span>
#include <string>

namespace Assay {

/// What a PNG file tells of its picture (ISO/IEC 15948).
struct PNGPicture {
  std::string Fault;  ///< for people; empty: the file is sound, and there is what follows
  ui32_t Width = 0;   ///< pixels
  ui32_t Height = 0;
  size_t Behind = 0;  ///< bytes that follow its end
};

/// Walks through a PNG file: signature, header, order, lengths and check sums of the chunks. The pixels stay compressed:
/// whether they can be expanded is not looked at.
[[nodiscard]] PNGPicture ReadPNG(std::span<const ui8_t> file);

}  // namespace Assay
