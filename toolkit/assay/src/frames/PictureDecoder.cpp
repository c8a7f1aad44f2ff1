// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/PictureDecoder.h>

#include <QUIRE/JP2KHeaders.h>

#include <openjpeg.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <new>

namespace Assay {

using QUIRE::JP2K::CodestreamEnd;
using QUIRE::JP2K::CodingStyle;
using QUIRE::JP2K::Marker;

namespace {

constexpr ui32_t LargestSide = 8192;                // pixels
constexpr ui64_t MostPixels = ui64_t{4096} * 2160;  // the largest container of D-Cinema
constexpr ui64_t MaxTiles = 1024;
// Packets and code blocks, for each of which the decoder takes up to some hundred bytes. Cinema pictures have 40,000.
constexpr ui64_t MaxParts = 1'000'000;

// The decoder reads from memory through these.
struct MemoryReader {
  std::span<const ui8_t> Bytes;
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

/// Why something cannot be decoded; empty: nothing speaks against it.
using Refusal = std::string;

/// The decoder takes missing tile parts for none. Zeros that fill up a codestream are no part of it.
bool HasEnd(std::span<const ui8_t> codestream) {
  size_t size = codestream.size();
  while (size > 0 && codestream[size - 1] == 0) --size;
  return size >= 2 && codestream[size - 2] == 0xff && codestream[size - 1] == 0xd9;
}

/// How many pieces of 2^exponent samples a length touches at most, wherever among them it begins.
ui64_t Pieces(ui64_t length, ui32_t exponent) {
  return ((length + (ui64_t{1} << exponent) - 1) >> exponent) + 1;
}

/// Packets and code blocks of one component of a tile (ISO/IEC 15444-1, B.5 to B.9).
ui64_t PartsOf(const CodingStyle& style, ui64_t width, ui64_t height, ui64_t layers) {
  const auto halved = [](ui64_t length, ui32_t times) { return (length + (ui64_t{1} << times) - 1) >> times; };
  const auto exponent = [](ui32_t side) { return static_cast<ui32_t>(std::bit_width(side) - 1); };
  constexpr ui8_t largest = 0xff;
  ui64_t parts = 0;
  for (ui32_t resolution = 0; resolution <= style.Levels; ++resolution) {
    const ui8_t precinct = resolution < style.Precincts.size() ? style.Precincts[resolution] : largest;
    const ui32_t precinct_width = precinct & 15U;
    const ui32_t precinct_height = precinct >> 4U;
    const ui64_t across = halved(width, style.Levels - resolution);
    const ui64_t down = halved(height, style.Levels - resolution);
    parts += Pieces(across, precinct_width) * Pieces(down, precinct_height) * layers;
    // Above the lowest resolution there are three bands of half its size.
    const ui32_t half = resolution == 0 ? 0 : 1;
    const auto block = [&](ui32_t side, ui32_t of_precinct) {
      return std::min(exponent(side), of_precinct - std::min(half, of_precinct));
    };
    parts += (half == 0 ? 1 : 3) * Pieces(halved(across, half), block(style.CodeBlockWidth, precinct_width)) *
             Pieces(halved(down, half), block(style.CodeBlockHeight, precinct_height));
  }
  return parts;
}

/// The same of a whole picture, each component being taken for the one with the most.
ui64_t PartsOf(const QUIRE::JP2K::CodestreamHeaders& headers, ui64_t tiles) {
  const QUIRE::JP2K::ImageAndTileSize& size = headers.Size;
  const ui64_t width = std::min(size.XTsiz, size.Xsiz - size.XOsiz);
  const ui64_t height = std::min(size.YTsiz, size.Ysiz - size.YOsiz);
  ui64_t most = PartsOf(headers.Coding, width, height, headers.Coding.Layers);
  for (const auto& of_component : headers.CodingOf)
    most = std::max(most, PartsOf(of_component.Value, width, height, headers.Coding.Layers));
  return tiles * size.Csiz * most;
}

/// Tile-parts that put another coding style in the place of the main header's could have any number of parts.
bool HasOtherStyles(const QUIRE::JP2K::CodestreamHeaders& headers) {
  return std::ranges::any_of(headers.TilePartMarkers,
                             [](Marker marker) { return marker == Marker::COD || marker == Marker::COC; });
}

/// Before the decoder sees it, which takes memory for each tile: the header of a broken file may claim anything.
Refusal RefuseHeaders(std::span<const ui8_t> codestream) {
  QUIRE::JP2K::CodestreamHeaders headers;
  if (ParseHeaders(codestream, headers).Failure()) return "it is no JPEG 2000 codestream, or its header is broken";
  const QUIRE::JP2K::ImageAndTileSize& size = headers.Size;
  const ui32_t width = size.Xsiz - size.XOsiz;
  const ui32_t height = size.Ysiz - size.YOsiz;
  if (width > LargestSide || height > LargestSide || ui64_t{width} * height > MostPixels)
    return "it claims to have " + std::to_string(width) + " x " + std::to_string(height) + " pixels";
  const auto tiles = [](ui32_t end, ui32_t start, ui32_t step) { return (ui64_t{end} - start + step - 1) / step; };
  const ui64_t count = tiles(size.Xsiz, size.XTOsiz, size.XTsiz) * tiles(size.Ysiz, size.YTOsiz, size.YTsiz);
  if (count > MaxTiles) return "it has " + std::to_string(count) + " tiles";
  if (size.Csiz != 1 && size.Csiz != 3) return "it has " + std::to_string(size.Csiz) + " components, not three";
  if (headers.End == CodestreamEnd::Cut) return "it is cut short";
  if (headers.End == CodestreamEnd::MalformedTilePart) return "a tile-part is malformed";
  if (HasOtherStyles(headers)) return "its tile-parts have coding styles of their own";
  if (PartsOf(headers, count) > MaxParts) return "it has too many precincts, layers or code blocks";
  return {};
}

Refusal RefuseImage(const opj_image_t& image) {
  for (OPJ_UINT32 i = 0; i < image.numcomps; ++i) {
    const opj_image_comp_t& component = image.comps[i];
    if (component.dx != 1 || component.dy != 1) return "its components have different numbers of samples";
    if (component.prec < 1 || component.prec > 16 || component.prec != image.comps[0].prec)
      return "its samples have a number of bits that is not supported";
  }
  return {};
}

bool IsComplete(const opj_image_t& image) {
  const std::span components(image.comps, image.numcomps);
  return std::ranges::all_of(components, [&](const opj_image_comp_t& component) {
    return component.data != nullptr && component.w == components[0].w && component.h == components[0].h;
  });
}

DecodedPicture PictureOf(const opj_image_t& image) {
  const opj_image_comp_t& first = image.comps[0];
  DecodedPicture picture{first.w, first.h, first.prec, {}};
  picture.Pixels.resize(size_t{first.w} * first.h);
  for (size_t c = 0; c < 3; ++c) {
    const opj_image_comp_t& component = image.comps[image.numcomps == 3 ? c : 0];
    const OPJ_INT32 zero = component.sgnd != 0 ? 1 << (component.prec - 1) : 0;
    const OPJ_INT32 largest = (1 << component.prec) - 1;
    for (size_t i = 0; i < picture.Pixels.size(); ++i)
      picture.Pixels[i][c] = static_cast<Ferro::ui16_t>(std::clamp(component.data[i] + zero, 0, largest));
  }
  return picture;
}

StreamPtr StreamOf(MemoryReader& memory) {
  StreamPtr stream(opj_stream_create(1 << 20, OPJ_TRUE));
  if (!stream) throw std::bad_alloc();
  opj_stream_set_read_function(stream.get(), ReadBytes);
  opj_stream_set_skip_function(stream.get(), SkipBytes);
  opj_stream_set_seek_function(stream.get(), SeekBytes);
  opj_stream_set_user_data(stream.get(), &memory, nullptr);
  opj_stream_set_user_data_length(stream.get(), memory.Bytes.size());
  return stream;
}

Refusal Decode(std::span<const ui8_t> codestream, ImagePtr& image) {
  if (Refusal refusal = RefuseHeaders(codestream); !refusal.empty()) return refusal;
  MemoryReader memory{codestream};
  std::string message;
  const CodecPtr codec(opj_create_decompress(OPJ_CODEC_J2K));
  if (!codec) throw std::bad_alloc();
  const StreamPtr stream = StreamOf(memory);
  opj_set_error_handler(codec.get(), KeepMessage, &message);
  opj_dparameters_t parameters;
  opj_set_default_decoder_parameters(&parameters);
  opj_image_t* read = nullptr;
  const bool has_header =
      opj_setup_decoder(codec.get(), &parameters) != 0 && opj_read_header(stream.get(), codec.get(), &read) != 0;
  image.reset(read);
  if (!has_header || !image) return message.empty() ? "its header is broken" : message;
  if (Refusal refusal = RefuseImage(*image); !refusal.empty()) return refusal;
  if (!HasEnd(codestream)) return "it is cut short";
  if (opj_decode(codec.get(), stream.get(), image.get()) == 0 || opj_end_decompress(codec.get(), stream.get()) == 0)
    return message.empty() ? "it is broken" : message;
  return IsComplete(*image) ? "" : "it is incomplete";
}

template <class Take>
Result_t DecodeAnd(std::span<const ui8_t> codestream, std::string& reason, const Take& take) {
  try {
    ImagePtr image;
    Refusal refusal = Decode(codestream, image);
    if (!refusal.empty()) {
      reason = std::move(refusal);
      return QUIRE::RESULT_RAW_FORMAT;
    }
    take(*image);
    return Ferro::RESULT_OK;
  } catch (const std::bad_alloc&) {
    reason = "no memory";
    return Ferro::RESULT_ALLOC;
  }
}

}  // namespace

Result_t DecodePicture(std::span<const ui8_t> codestream, DecodedPicture& picture, std::string& reason) {
  return DecodeAnd(codestream, reason, [&](const opj_image_t& image) { picture = PictureOf(image); });
}

Result_t TryDecoding(std::span<const ui8_t> codestream, std::string& reason) {
  return DecodeAnd(codestream, reason, [](const opj_image_t&) {});
}

}  // namespace Assay
