// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <openjpeg.h>

#include <memory>
#include <vector>

namespace Tool {

struct ImageDeleter {
  void operator()(opj_image_t* image) const { opj_image_destroy(image); }
};
using ImagePtr = std::unique_ptr<opj_image_t, ImageDeleter>;

/// An image of three components with 12 unsigned bits per sample, not subsampled; the samples are left to the caller.
/// Throws std::runtime_error when memory runs out.
[[nodiscard]] ImagePtr NewImage(Ferro::ui32_t width, Ferro::ui32_t height);

/// The image's JPEG 2000 codestream (ISO/IEC 15444-1). The encoder may change image and parameters. Any thread may call it.
/// Throws std::runtime_error when the encoder refuses.
[[nodiscard]] std::vector<Ferro::ui8_t> EncodeImage(opj_image_t& image, opj_cparameters_t& parameters);

}  // namespace Tool
