// SPDX-License-Identifier: BSD-3-Clause
#include "PngFile.h"

#include <png.h>

#include <stdexcept>
#include <string>

namespace Tool {

std::vector<Ferro::ui8_t> EncodePng(const PngPicture& picture) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = picture.Width;
  image.height = picture.Height;
  image.format = picture.Channels == 4 ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
  if (picture.Samples.size() != size_t{picture.Width} * picture.Height * (picture.Channels == 4 ? 4 : 3))
    throw std::runtime_error("a picture has not the samples that its size asks for");

  // Sized once for the worst case, so that the picture is encoded once.
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<Ferro::ui8_t> bytes(size);
  if (png_image_write_to_memory(&image, bytes.data(), &size, 0, picture.Samples.data(), 0, nullptr) == 0)
    throw std::runtime_error(std::string("a picture cannot be written as PNG: ") + image.message);
  bytes.resize(size);
  return bytes;
}

}  // namespace Tool
