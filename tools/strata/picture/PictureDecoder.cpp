// SPDX-License-Identifier: BSD-3-Clause
#include "PictureDecoder.h"

#include <openjpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

namespace Tool {

namespace {

constexpr Ferro::ui32_t LargestSide = 8192;  // pixels

// The decoder reads from memory through these.
struct MemoryReader {
  std::span<const Ferro::ui8_t> Bytes;
  size_t Position = 0;
};

OPJ_SIZE_T ReadBytes(void* buffer, OPJ_SIZE_T size, void* user) {
  auto& reader = *static_cast<MemoryReader*>(user);
  const size_t count = std::min<size_t>(size, reader.Bytes.size() - reader.Position);
  if (count == 0) return static_cast<OPJ_SIZE_T>(-1);
  std::memcpy(buffer, reader.Bytes.data() + reader.Position, count);
  reader.Position += count;
  return count;
}

OPJ_OFF_T SkipBytes(OPJ_OFF_T count, void* user) {
  auto& reader = *static_cast<MemoryReader*>(user);
  if (count < 0) return -1;
  const size_t skipped = std::min(static_cast<size_t>(count), reader.Bytes.size() - reader.Position);
  reader.Position += skipped;
  return static_cast<OPJ_OFF_T>(skipped);
}

OPJ_BOOL SeekBytes(OPJ_OFF_T position, void* user) {
  auto& reader = *static_cast<MemoryReader*>(user);
  if (position < 0 || static_cast<size_t>(position) > reader.Bytes.size()) return OPJ_FALSE;
  reader.Position = static_cast<size_t>(position);
  return OPJ_TRUE;
}

void KeepMessage(const char* message, void* user) {
  auto& kept = *static_cast<std::string*>(user);
  if (kept.empty()) kept.assign(message, std::strcspn(message, "\r\n"));
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

[[noreturn]] void refuse(const std::string& reason) {
  throw std::runtime_error("the picture cannot be decoded: " + reason);
}

/// The decoder takes missing tile parts for none. Zeros that fill up a codestream are no part of it.
bool HasEnd(std::span<const Ferro::ui8_t> codestream) {
  size_t size = codestream.size();
  while (size > 0 && codestream[size - 1] == 0) --size;
  return size >= 2 && codestream[size - 2] == 0xff && codestream[size - 1] == 0xd9;
}

/// Before anything is allocated for it: the header of a broken file may claim any size.
void CheckHeader(const opj_image_t& image) {
  if (image.x1 <= image.x0 || image.y1 <= image.y0 || image.x1 - image.x0 > LargestSide ||
      image.y1 - image.y0 > LargestSide)
    refuse("it claims to have " + std::to_string(image.x1 - image.x0) + " x " + std::to_string(image.y1 - image.y0) +
           " pixels");
  if (image.numcomps != 1 && image.numcomps != 3)
    refuse("it has " + std::to_string(image.numcomps) + " components, not three");
  for (OPJ_UINT32 i = 0; i < image.numcomps; ++i) {
    const opj_image_comp_t& component = image.comps[i];
    if (component.dx != 1 || component.dy != 1) refuse("its components have different numbers of samples");
    if (component.prec < 1 || component.prec > 16 || component.prec != image.comps[0].prec)
      refuse("its samples have a number of bits that is not supported");
  }
}

DecodedPicture PixelsOf(const opj_image_t& image) {
  const opj_image_comp_t& first = image.comps[0];
  DecodedPicture picture{first.w, first.h, first.prec, {}};
  picture.Pixels.resize(size_t{first.w} * first.h);
  for (size_t c = 0; c < 3; ++c) {
    const opj_image_comp_t& component = image.comps[image.numcomps == 3 ? c : 0];
    if (component.data == nullptr || component.w != first.w || component.h != first.h) refuse("it is incomplete");
    const OPJ_INT32 zero = component.sgnd != 0 ? 1 << (component.prec - 1) : 0;
    const OPJ_INT32 largest = (1 << component.prec) - 1;
    for (size_t i = 0; i < picture.Pixels.size(); ++i)
      picture.Pixels[i][c] = static_cast<Ferro::ui16_t>(std::clamp(component.data[i] + zero, 0, largest));
  }
  return picture;
}

}  // namespace

DecodedPicture DecodePicture(std::span<const Ferro::ui8_t> codestream) {
  MemoryReader memory{codestream};
  std::string message;
  const CodecPtr codec(opj_create_decompress(OPJ_CODEC_J2K));
  const StreamPtr stream(opj_stream_create(1 << 20, OPJ_TRUE));
  if (!codec || !stream) refuse("no memory");
  opj_stream_set_read_function(stream.get(), ReadBytes);
  opj_stream_set_skip_function(stream.get(), SkipBytes);
  opj_stream_set_seek_function(stream.get(), SeekBytes);
  opj_stream_set_user_data(stream.get(), &memory, nullptr);
  opj_stream_set_user_data_length(stream.get(), codestream.size());
  opj_set_error_handler(codec.get(), KeepMessage, &message);

  opj_dparameters_t parameters;
  opj_set_default_decoder_parameters(&parameters);
  opj_image_t* read = nullptr;
  const bool has_header =
      opj_setup_decoder(codec.get(), &parameters) != 0 && opj_read_header(stream.get(), codec.get(), &read) != 0;
  const ImagePtr image(read);
  if (!has_header || !image) refuse(message.empty() ? "it is no JPEG 2000 codestream" : message);
  CheckHeader(*image);
  if (!HasEnd(codestream)) refuse("it is cut short");
  if (opj_decode(codec.get(), stream.get(), image.get()) == 0 || opj_end_decompress(codec.get(), stream.get()) == 0)
    refuse(message.empty() ? "it is broken" : message);
  return PixelsOf(*image);
}

}  // namespace Tool
