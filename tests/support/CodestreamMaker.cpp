// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceMaker.h"

#include <Ferro/Assert.h>

#include <openjpeg.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

namespace testsupport {

using namespace QUIRE;

namespace {

// The encoder writes to memory through these.
struct MemoryStream {
  Bytes Written;
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

template <auto Function>
struct Deleter {
  template <class T>
  void operator()(T* object) const {
    Function(object);
  }
};
using ImagePtr = std::unique_ptr<opj_image_t, Deleter<opj_image_destroy>>;
using CodecPtr = std::unique_ptr<opj_codec_t, Deleter<opj_destroy_codec>>;
using StreamPtr = std::unique_ptr<opj_stream_t, Deleter<opj_stream_destroy>>;

ImagePtr MakeImage(ui32_t width, ui32_t height) {
  opj_image_cmptparm_t components[3] = {};
  for (auto& component : components) {
    component.dx = component.dy = 1;
    component.w = width;
    component.h = height;
    component.prec = 12;
  }
  ImagePtr image(opj_image_create(3, components, OPJ_CLRSPC_SRGB));
  FERRO_ASSERT(image);
  image->x1 = width;
  image->y1 = height;
  for (ui32_t c = 0; c < 3; ++c) {
    for (ui32_t i = 0; i < width * height; ++i) {
      image->comps[c].data[i] = static_cast<OPJ_INT32>((i % width * (c + 1) + i / width * 3) * 16 % 4096);
    }
  }
  return image;
}

Bytes Encode(ui32_t width, ui32_t height) {
  const auto image = MakeImage(width, height);
  opj_cparameters_t parameters;
  opj_set_default_encoder_parameters(&parameters);
  parameters.irreversible = 1;
  parameters.tcp_numlayers = 1;
  parameters.tcp_rates[0] = 10;
  parameters.cp_disto_alloc = 1;
  while ((std::min(width, height) >> parameters.numresolution) == 0) --parameters.numresolution;
  const CodecPtr codec(opj_create_compress(OPJ_CODEC_J2K));
  MemoryStream memory;
  const StreamPtr stream(opj_stream_create(1 << 20, OPJ_FALSE));
  opj_stream_set_write_function(stream.get(), WriteBytes);
  opj_stream_set_skip_function(stream.get(), SkipBytes);
  opj_stream_set_seek_function(stream.get(), SeekBytes);
  opj_stream_set_user_data(stream.get(), &memory, nullptr);
  const bool encoded = opj_setup_encoder(codec.get(), &parameters, image.get()) != 0 &&
                       opj_start_compress(codec.get(), image.get(), stream.get()) != 0 &&
                       opj_encode(codec.get(), stream.get()) != 0 && opj_end_compress(codec.get(), stream.get()) != 0;
  FERRO_ASSERT(encoded);
  memory.Written[7] = width <= 2048 && height <= 1080 ? 3 : 4;  // Rsiz: the D-Cinema profiles
  return memory.Written;
}

}  // namespace

Bytes MakeCodestream(ui32_t width, ui32_t height, ui32_t number) {
  static std::mutex lock;
  static std::map<std::pair<ui32_t, ui32_t>, Bytes> encoded;  // guarded by lock
  Bytes out;
  {
    const std::lock_guard guard(lock);
    Bytes& plain = encoded[{width, height}];
    if (plain.empty()) plain = Encode(width, height);
    out = plain;
  }
  // A comment of binary data after SIZ: FF64, length 8, kind 0, number; and a few bytes so that sizes differ.
  Bytes comment = {0xff, 0x64, 0, static_cast<ui8_t>(8 + number % 7), 0, 0};
  for (int shift = 24; shift >= 0; shift -= 8) comment.push_back(static_cast<ui8_t>(number >> shift));
  comment.resize(comment.size() + number % 7, 0x55);
  const size_t size_end = 4 + (size_t{out[4]} << 8 | out[5]);
  out.insert(out.begin() + static_cast<std::ptrdiff_t>(size_end), comment.begin(), comment.end());
  return out;
}

}  // namespace testsupport
