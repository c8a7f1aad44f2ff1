// SPDX-License-Identifier: BSD-3-Clause
#include "PNGFile.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Assay {
namespace {

using Bytes = std::span<const ui8_t>;

constexpr std::array<ui8_t, 8> Signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr size_t HeaderLength = 13;
constexpr ui32_t MaxNumber = 0x7FFF'FFFF;  // of lengths and sizes

ui32_t NumberAt(Bytes bytes, size_t at) {
  ui32_t number = 0;
  for (size_t i = 0; i < 4; ++i) number = number << 8U | bytes[at + i];
  return number;
}

constexpr auto CheckTable = [] {
  std::array<ui32_t, 256> table{};
  for (ui32_t i = 0; i < 256; ++i) {
    ui32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? 0xEDB8'8320U ^ value >> 1U : value >> 1U;
    table[i] = value;
  }
  return table;
}();

ui32_t CheckSum(Bytes bytes) {
  ui32_t sum = 0xFFFF'FFFF;
  for (const ui8_t byte : bytes) sum = CheckTable[(sum ^ byte) & 0xFFU] ^ sum >> 8U;
  return ~sum;
}

/// Whether a sample of that kind of colour can have so many bits.
bool IsDepth(ui8_t color, ui8_t depth) {
  struct Row {
    ui8_t Color;
    std::string_view Depths;
  };
  using namespace std::string_view_literals;
  constexpr std::array<Row, 5> Rows = {
      {{0, "\1\2\4\x8\x10"sv}, {2, "\x8\x10"sv}, {3, "\1\2\4\x8"sv}, {4, "\x8\x10"sv}, {6, "\x8\x10"sv}}};
  return std::ranges::any_of(Rows, [&](const Row& row) {
    return row.Color == color && row.Depths.find(static_cast<char>(depth)) != std::string_view::npos;
  });
}

PNGPicture ReadHeader(Bytes header) {
  PNGPicture picture{{}, NumberAt(header, 0), NumberAt(header, 4), 0};
  const bool has_size =
      picture.Width > 0 && picture.Width <= MaxNumber && picture.Height > 0 && picture.Height <= MaxNumber;
  // compression, filter, interlace
  const bool has_methods = header[10] == 0 && header[11] == 0 && header[12] <= 1;
  if (!has_size || !has_methods || !IsDepth(header[9], header[8])) picture.Fault = "a PNG header out of range";
  return picture;
}

PNGPicture Faulty(std::string fault) {
  return {std::move(fault), 0, 0, 0};
}

}  // namespace

PNGPicture ReadPNG(Bytes file) {
  if (file.size() < Signature.size() || !std::ranges::equal(file.first(Signature.size()), Signature))
    return Faulty("no PNG");
  PNGPicture picture;
  bool has_header = false;
  bool has_pixels = false;
  for (Bytes rest = file.subspan(Signature.size()); rest.size() >= 12;) {
    const ui32_t length = NumberAt(rest, 0);
    if (length > rest.size() - 12) return Faulty("a PNG that is cut");
    const std::string_view type(reinterpret_cast<const char*>(rest.data()) + 4, 4);
    if (CheckSum(rest.subspan(4, size_t{4} + length)) != NumberAt(rest, size_t{8} + length))
      return Faulty("a PNG with a wrong check sum");
    if (has_header == (type == "IHDR")) return Faulty("a PNG without one header at its front");
    if (!has_header) {
      if (length != HeaderLength) return Faulty("a PNG header of wrong length");
      picture = ReadHeader(rest.subspan(8, length));
      if (!picture.Fault.empty()) return picture;
    }
    has_header = true;
    has_pixels |= type == "IDAT";
    rest = rest.subspan(size_t{12} + length);
    if (type != "IEND") continue;
    picture.Behind = rest.size();
    return has_pixels ? picture : Faulty("a PNG without pixels");
  }
  return Faulty("a PNG that is cut");
}

}  // namespace Assay
