// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/JP2KHeaders.h>

#include <vector>

namespace testsupport {

/// Makes codestreams as cinema encoders lay them out, 2K or 4K, whose packets are zeros. Every field may be changed before
/// Make, to break one rule at a time.
struct CinemaCodestream {
  using Bytes = std::vector<QUIRE::ui8_t>;
  using Marker = QUIRE::JP2K::Marker;

  QUIRE::ui16_t Rsiz = 3;
  QUIRE::ui32_t Width = 1998;
  QUIRE::ui32_t Height = 1080;
  QUIRE::ui32_t TileWidth = 1998;
  QUIRE::ui32_t Offset = 0;
  Bytes Components = {11, 1, 1, 11, 1, 1, 11, 1, 1};
  Bytes Style = {0x01, 4, 0, 1, 1, 5, 3, 3, 0, 0, 0x77, 0x88, 0x88, 0x88, 0x88, 0x88};
  Bytes Quant = {0x22, 0x7f, 0x20};
  Bytes ProgressionChanges;
  /// Segments after those, ready made; before TLM.
  Bytes MoreOfMainHeader;
  /// The same, in each tile-part header.
  Bytes MoreOfTilePart;
  std::vector<QUIRE::ui32_t> DataLengths = {100, 200, 300};  ///< bytes after SOD of each tile-part
  bool HasTLM = true;
  Bytes Tail = {0xff, 0xd9};

  static CinemaCodestream FourK() {
    CinemaCodestream stream;
    stream.Rsiz = 4;
    stream.Width = stream.TileWidth = 3996;
    stream.Height = 2160;
    stream.Quant[0] = 0x42;
    stream.ProgressionChanges = {0, 0, 0, 1, 5, 3, 4, 5, 0, 0, 1, 6, 3, 4};
    stream.DataLengths = {100, 200, 300, 400, 500, 600};
    return stream;
  }

  static void Append(Bytes& out, const Bytes& bytes) { out.insert(out.end(), bytes.begin(), bytes.end()); }
  static void AppendNumber(Bytes& out, QUIRE::ui64_t value, int size) {
    while (size-- > 0) out.push_back(static_cast<QUIRE::ui8_t>(value >> (8 * size)));
  }
  static Bytes Segment(Marker marker, const Bytes& content) {
    Bytes segment;
    AppendNumber(segment, static_cast<QUIRE::ui16_t>(marker), 2);
    AppendNumber(segment, content.size() + 2, 2);
    Append(segment, content);
    return segment;
  }

  [[nodiscard]] QUIRE::ui32_t TilePartLength(size_t part) const {
    return static_cast<QUIRE::ui32_t>(12 + MoreOfTilePart.size() + 2) + DataLengths[part];
  }

  [[nodiscard]] Bytes MainHeader() const {
    Bytes size;
    AppendNumber(size, Rsiz, 2);
    for (const QUIRE::ui32_t field : {Width, Height, Offset, Offset, TileWidth, Height, 0u, 0u})
      AppendNumber(size, field, 4);
    AppendNumber(size, Components.size() / 3, 2);
    Append(size, Components);
    Bytes out = {0xff, 0x4f};
    Append(out, Segment(Marker::SIZ, size));
    Append(out, Segment(Marker::COD, Style));
    Append(out, Segment(Marker::QCD, Quant));
    if (!ProgressionChanges.empty()) Append(out, Segment(Marker::POC, ProgressionChanges));
    Append(out, MoreOfMainHeader);
    if (HasTLM) {
      Bytes lengths = {0, 0x50};  // one byte of tile number, four of length
      for (size_t i = 0; i < DataLengths.size(); ++i) {
        AppendNumber(lengths, 0, 1);
        AppendNumber(lengths, TilePartLength(i), 4);
      }
      Append(out, Segment(Marker::TLM, lengths));
    }
    return out;
  }

  [[nodiscard]] Bytes Make() const {
    Bytes out = MainHeader();
    for (size_t i = 0; i < DataLengths.size(); ++i) {
      Bytes part;
      AppendNumber(part, 0, 2);
      AppendNumber(part, TilePartLength(i), 4);
      AppendNumber(part, i, 1);
      AppendNumber(part, DataLengths.size(), 1);
      Append(out, Segment(Marker::SOT, part));
      Append(out, MoreOfTilePart);
      Append(out, {0xff, 0x93});
      out.resize(out.size() + DataLengths[i]);
    }
    Append(out, Tail);
    return out;
  }
};

}  // namespace testsupport
