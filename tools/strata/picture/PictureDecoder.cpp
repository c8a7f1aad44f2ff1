// SPDX-License-Identifier: BSD-3-Clause
#include "PictureDecoder.h"

#include <stdexcept>
#include <string>

namespace Tool {

DecodedPicture DecodePicture(std::span<const Ferro::ui8_t> codestream) {
  DecodedPicture picture;
  std::string reason;
  if (Assay::DecodePicture(codestream, picture, reason).Failure())
    throw std::runtime_error("the picture cannot be decoded: " + reason);
  return picture;
}

}  // namespace Tool
