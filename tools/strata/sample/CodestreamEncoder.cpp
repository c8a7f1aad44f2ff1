// SPDX-License-Identifier: BSD-3-Clause
#include "CodestreamEncoder.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace Tool {

namespace {

// The encoder writes to memory through these.
struct MemoryStream {
  std::vector<Ferro::ui8_t> Written;
  size_t Position = 0;
};

OPJ_SIZE_T WriteBytes(void* buffer, OPJ_SIZE_T size, void* user) {
  auto& stream = *static_cast<MemoryStream*>(user);
  stream.Written.resize(std::max(stream.Written.size(), stream.Position + size));
  std::memcpy(stream.Written.data() + stream.Position, buffer, size);
  stream.Position += size;
  return size;
}

OPJ_OFF_T SkipBytes(OPJ_OFF_T count, void* user) {
  static_cast<MemoryStream*>(user)->Position += static_cast<size_t>(count);
  return count;
}

OPJ_BOOL SeekBytes(OPJ_OFF_T position, void* user) {
  static_cast<MemoryStream*>(user)->Position = static_cast<size_t>(position);
  return OPJ_TRUE;
}

// Codecs and streams are both void to the compiler.
struct CodecDeleter {
  void operator()(opj_codec_t* codec) const { opj_destroy_codec(codec); }
};
struct StreamDeleter {
  void operator()(opj_stream_t* stream) const { opj_stream_destroy(stream); }
};

}  // namespace

ImagePtr NewImage(Ferro::ui32_t width, Ferro::ui32_t height) {
  opj_image_cmptparm_t components[3] = {};
  for (auto& component : components) {
    component.dx = component.dy = 1;
    component.w = width;
    component.h = height;
    component.prec = 12;
  }
  ImagePtr image(opj_image_create(3, components, OPJ_CLRSPC_SRGB));
  if (!image) throw std::runtime_error("a picture cannot be encoded: no memory");
  image->x1 = width;
  image->y1 = height;
  return image;
}

std::vector<Ferro::ui8_t> EncodeImage(opj_image_t& image, opj_cparameters_t& parameters) {
  MemoryStream memory;
  const std::unique_ptr<opj_codec_t, CodecDeleter> codec(opj_create_compress(OPJ_CODEC_J2K));
  const std::unique_ptr<opj_stream_t, StreamDeleter> stream(opj_stream_create(1 << 20, OPJ_FALSE));
  if (!codec || !stream) throw std::runtime_error("a picture cannot be encoded: no memory");
  opj_stream_set_write_function(stream.get(), WriteBytes);
  opj_stream_set_skip_function(stream.get(), SkipBytes);
  opj_stream_set_seek_function(stream.get(), SeekBytes);
  opj_stream_set_user_data(stream.get(), &memory, nullptr);
  const bool encoded = opj_setup_encoder(codec.get(), &parameters, &image) != 0 &&
                       opj_start_compress(codec.get(), &image, stream.get()) != 0 &&
                       opj_encode(codec.get(), stream.get()) != 0 && opj_end_compress(codec.get(), stream.get()) != 0;
  if (!encoded) throw std::runtime_error("a picture cannot be encoded: the encoder refuses it");
  return memory.Written;
}

}  // namespace Tool
