// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/JP2KHeaders.h>

#include <Ferro/MemIO.h>

#include <algorithm>
#include <utility>

namespace QUIRE::JP2K {

namespace {

using Ferro::MemIOReader;

constexpr ui16_t MaxComponents = 16384;  // A.5.1
constexpr ui16_t CapabilitiesHT = 2;     // bit of Pcap for ISO/IEC 15444-15, counted from the most significant half
constexpr ui8_t HighThroughputBlocks = 0x40;
constexpr size_t SOTLength = 12;  // marker, length field and 8 bytes
constexpr size_t SmallestTilePart = SOTLength + 2;

bool HasSegment(Marker marker) {
  const auto code = static_cast<ui16_t>(marker);
  const bool reserved = code >= 0xff30 && code <= 0xff3f;
  return !reserved && marker != Marker::SOC && marker != Marker::SOD && marker != Marker::EOC;
}

// Steps over the markers of a header.
class MarkerWalk {
 public:
  explicit MarkerWalk(std::span<const ui8_t> bytes, size_t at = 0) : m_Bytes(bytes), m_Next(at) {}

  // Moves past the next marker. False where there is none.
  bool NextMarker(Marker& marker) {
    m_At = m_Next;
    if (m_Bytes.size() - m_At < 2 || m_Bytes[m_At] != 0xff) return false;
    marker = static_cast<Marker>(0xff00 | m_Bytes[m_At + 1]);
    m_Next = m_At + 2;
    return true;
  }
  // Moves past the segment of the marker just met; `segment` begins after its length field. False where it does not fit.
  bool Segment(Marker marker, std::span<const ui8_t>& segment) {
    segment = {};
    if (!HasSegment(marker)) return true;
    if (m_Bytes.size() - m_Next < 2) return false;
    const size_t length = static_cast<size_t>(m_Bytes[m_Next] << 8 | m_Bytes[m_Next + 1]);
    if (length < 2 || length > m_Bytes.size() - m_Next) return false;
    segment = m_Bytes.subspan(m_Next + 2, length - 2);
    m_Next += length;
    return true;
  }
  // Of the marker just met.
  [[nodiscard]] size_t At() const { return m_At; }

 private:
  std::span<const ui8_t> m_Bytes;
  size_t m_At = 0;
  size_t m_Next = 0;
};

void Note(std::vector<Marker>& markers, Marker marker) {
  if (std::find(markers.begin(), markers.end(), marker) == markers.end()) markers.push_back(marker);
}

bool ReadComponents(MemIOReader& reader, ImageAndTileSize& size) {
  for (ui16_t i = 0; i < size.Csiz; ++i) {
    ComponentSizing component;
    if (!reader.ReadUi8(&component.Ssiz) || !reader.ReadUi8(&component.XRsiz) || !reader.ReadUi8(&component.YRsiz) ||
        component.XRsiz == 0 || component.YRsiz == 0) {
      return false;
    }
    size.PictureComponentSizing.push_back(component);
  }
  return true;
}

// SIZ (A.5.1): profile (2 bytes); size, offset, tile size and tile offset, each as x and y (4 each); number of components
// (2); for each component depth, horizontal and vertical separation (1 each).
bool ReadSize(std::span<const ui8_t> segment, ImageAndTileSize& size) {
  MemIOReader reader(segment);
  if (!reader.ReadUi16BE(&size.Rsiz)) return false;
  for (ui32_t* field :
       {&size.Xsiz, &size.Ysiz, &size.XOsiz, &size.YOsiz, &size.XTsiz, &size.YTsiz, &size.XTOsiz, &size.YTOsiz}) {
    if (!reader.ReadUi32BE(field)) return false;
  }
  if (!reader.ReadUi16BE(&size.Csiz)) return false;
  if (size.XOsiz >= size.Xsiz || size.YOsiz >= size.Ysiz || size.XTsiz == 0 || size.YTsiz == 0 ||
      size.XTOsiz > size.XOsiz || size.YTOsiz > size.YOsiz) {
    return false;
  }
  if (size.Csiz == 0 || size.Csiz > MaxComponents || reader.Remainder() != 3u * size.Csiz) return false;
  return ReadComponents(reader, size);
}

// The end of COD and COC, from the number of levels on (tables A.13 and A.15).
bool ReadStyle(MemIOReader& reader, bool has_precincts, CodingStyle& style) {
  ui8_t width = 0;
  ui8_t height = 0;
  ui8_t transform = 0;
  if (!reader.ReadUi8(&style.Levels) || !reader.ReadUi8(&width) || !reader.ReadUi8(&height) ||
      !reader.ReadUi8(&style.CodeBlockStyle) || !reader.ReadUi8(&transform)) {
    return false;
  }
  // Exponents less 2; a code-block has at most 4096 samples.
  if (style.Levels > 32 || width > 8 || height > 8 || width + height > 8 || transform > 1) return false;
  style.CodeBlockWidth = ui32_t{4} << width;
  style.CodeBlockHeight = ui32_t{4} << height;
  style.Transform = static_cast<WaveletTransform>(transform);
  style.Precincts.assign(has_precincts ? size_t{style.Levels} + 1 : 0, 0);
  for (ui8_t& precinct : style.Precincts)
    if (!reader.ReadUi8(&precinct)) return false;
  return reader.Remainder() == 0;
}

// COD (A.6.1): flags (1), progression (1), layers (2), component transform (1), then the style. Kept as bytes too, as track
// files repeat it.
bool ReadCodingDefault(std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  if (!headers.CodingStyleDefault.empty()) return false;
  MemIOReader reader(segment);
  CodingStyle& style = headers.Coding;
  ui8_t flags = 0;
  ui8_t progression = 0;
  ui8_t component_transform = 0;
  if (!reader.ReadUi8(&flags) || !reader.ReadUi8(&progression) || !reader.ReadUi16BE(&style.Layers) ||
      !reader.ReadUi8(&component_transform) || !ReadStyle(reader, (flags & 1) != 0, style)) {
    return false;
  }
  style.Progression = static_cast<ProgressionOrder>(progression);
  style.UsesComponentTransform = component_transform != 0;
  headers.CodingStyleDefault.assign(segment.begin(), segment.end());
  return true;
}

bool ReadQuantization(MemIOReader& reader, Quantization& quantization) {
  ui8_t style = 0;
  if (!reader.ReadUi8(&style) || reader.Remainder() == 0) return false;
  quantization.Style = style & 0x1f;
  quantization.GuardBits = style >> 5;
  return quantization.Style <= 2;
}

bool ReadQuantizationDefault(std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  MemIOReader reader(segment);
  if (!headers.QuantizationDefault.empty() || !ReadQuantization(reader, headers.Quant)) return false;
  headers.QuantizationDefault.assign(segment.begin(), segment.end());
  return true;
}

// The component that a COC or QCC is about; its number has one byte up to 256 components.
bool ReadComponent(MemIOReader& reader, const ImageAndTileSize& size, ui16_t& component) {
  ui8_t narrow = 0;
  if (size.Csiz > 256) {
    if (!reader.ReadUi16BE(&component)) return false;
  } else {
    if (!reader.ReadUi8(&narrow)) return false;
    component = narrow;
  }
  return component < size.Csiz;
}

bool ReadCodingOfComponent(std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  MemIOReader reader(segment);
  OfComponent<CodingStyle> coding;
  ui8_t flags = 0;
  if (headers.CodingOf.size() == headers.Size.Csiz || !ReadComponent(reader, headers.Size, coding.Component) ||
      !reader.ReadUi8(&flags) || !ReadStyle(reader, (flags & 1) != 0, coding.Value)) {
    return false;
  }
  headers.CodingOf.push_back(std::move(coding));
  return true;
}

bool ReadQuantizationOfComponent(std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  MemIOReader reader(segment);
  OfComponent<Quantization> quantization;
  if (headers.QuantOf.size() == headers.Size.Csiz || !ReadComponent(reader, headers.Size, quantization.Component) ||
      !ReadQuantization(reader, quantization.Value)) {
    return false;
  }
  headers.QuantOf.push_back(quantization);
  return true;
}

bool ReadProgressionChanges(std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  if (!headers.ProgressionChanges.empty() || segment.empty()) return false;  // one POC, A.6.6
  MemIOReader reader(segment);
  while (reader.Remainder() != 0) {
    ProgressionChange& change = headers.ProgressionChanges.emplace_back();
    ui8_t order = 0;
    const auto read_component = [&](ui16_t& component) {
      ui8_t narrow = 0;
      if (headers.Size.Csiz > 256) return reader.ReadUi16BE(&component);
      const bool read = reader.ReadUi8(&narrow);
      component = narrow;
      return read;
    };
    if (!reader.ReadUi8(&change.FirstResolution) || !read_component(change.FirstComponent) ||
        !reader.ReadUi16BE(&change.EndLayer) || !reader.ReadUi8(&change.EndResolution) ||
        !read_component(change.EndComponent) || !reader.ReadUi8(&order)) {
      return false;
    }
    change.Order = static_cast<ProgressionOrder>(order);
  }
  return true;
}

// Ztlm, Stlm, then for each tile-part the number of its tile, in as many bytes as Stlm says, and its length.
bool ReadTilePartLengths(std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  MemIOReader reader(segment);
  ui8_t index = 0;
  ui8_t sizes = 0;
  if (!reader.ReadUi8(&index) || !reader.ReadUi8(&sizes)) return false;
  const ui32_t tile_bytes = sizes >> 4 & 3;
  const bool is_wide = (sizes & 0x40) != 0;
  const ui32_t entry = tile_bytes + (is_wide ? 4 : 2);
  if (tile_bytes == 3 || reader.Remainder() % entry != 0) return false;
  if (reader.Remainder() / entry > CodestreamHeaders::MaxTileParts - headers.TilePartLengths.size()) return false;
  while (reader.Remainder() != 0) {
    ui16_t narrow = 0;
    ui32_t& length = headers.TilePartLengths.emplace_back();
    if (!reader.Skip(tile_bytes) || !(is_wide ? reader.ReadUi32BE(&length) : reader.ReadUi16BE(&narrow))) return false;
    if (!is_wide) length = narrow;
  }
  return true;
}

bool ReadCapabilities(std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  MemIOReader reader(segment);
  ui16_t parts = 0;
  if (!reader.ReadUi16BE(&parts)) return false;
  if ((parts & CapabilitiesHT) != 0) headers.HasHighThroughput = true;
  return true;
}

bool TakeSegment(Marker marker, std::span<const ui8_t> segment, CodestreamHeaders& headers) {
  switch (marker) {
    case Marker::CAP:
      return ReadCapabilities(segment, headers);
    case Marker::COD:
      return ReadCodingDefault(segment, headers);
    case Marker::COC:
      return ReadCodingOfComponent(segment, headers);
    case Marker::QCD:
      return ReadQuantizationDefault(segment, headers);
    case Marker::QCC:
      return ReadQuantizationOfComponent(segment, headers);
    case Marker::POC:
      return ReadProgressionChanges(segment, headers);
    case Marker::TLM:
      return ReadTilePartLengths(segment, headers);
    case Marker::SOC:
    case Marker::SIZ:
    case Marker::SOD:
    case Marker::EOC:
      return false;  // out of place
    default:
      return true;
  }
}

// SOC, SIZ, then segments in any order up to the first tile-part.
bool ReadMainHeader(std::span<const ui8_t> codestream, CodestreamHeaders& headers) {
  MarkerWalk walk(codestream);
  Marker marker{};
  std::span<const ui8_t> segment;
  if (!walk.NextMarker(marker) || marker != Marker::SOC || !walk.NextMarker(marker) || marker != Marker::SIZ ||
      !walk.Segment(marker, segment) || !ReadSize(segment, headers.Size)) {
    return false;
  }
  headers.MainMarkers = {Marker::SIZ};
  for (;;) {
    if (!walk.NextMarker(marker)) return false;
    if (marker == Marker::SOT) break;
    if (!walk.Segment(marker, segment) || !TakeSegment(marker, segment, headers)) return false;
    Note(headers.MainMarkers, marker);
  }
  headers.MainHeaderLength = walk.At();
  const auto is_ht = [](const auto& coding) { return (coding.Value.CodeBlockStyle & HighThroughputBlocks) != 0; };
  if ((headers.Coding.CodeBlockStyle & HighThroughputBlocks) != 0 ||
      std::any_of(headers.CodingOf.begin(), headers.CodingOf.end(), is_ht)) {
    headers.HasHighThroughput = true;
  }
  return !headers.CodingStyleDefault.empty() && !headers.QuantizationDefault.empty();
}

bool IsMarkerAt(std::span<const ui8_t> codestream, ui64_t at, Marker marker) {
  return codestream.size() - at >= 2 && (codestream[at] << 8 | codestream[at + 1]) == static_cast<int>(marker);
}

// The SOT marker segment at `at`, all of whose bytes are there; false where it is malformed.
bool ReadTilePart(std::span<const ui8_t> codestream, ui64_t at, TilePart& part) {
  MemIOReader reader(codestream.subspan(at + 2, SOTLength - 2));
  ui16_t length = 0;
  ui32_t part_length = 0;
  const bool read = reader.ReadUi16BE(&length) && reader.ReadUi16BE(&part.Tile) && reader.ReadUi32BE(&part_length) &&
                    reader.ReadUi8(&part.Index) && reader.ReadUi8(&part.Count);
  part.Offset = at;
  part.Length = part_length;
  if (part_length == 0) {  // up to EOC
    part.Length = codestream.size() - at;
    if (IsMarkerAt(codestream, codestream.size() - 2, Marker::EOC)) part.Length -= 2;
  }
  return read && length == SOTLength - 2 && part.Length >= SmallestTilePart;
}

// The segments between SOT and SOD; false where SOD is not found within the bytes.
bool ReadTilePartHeader(std::span<const ui8_t> part, std::vector<Marker>& markers) {
  MarkerWalk walk(part, SOTLength);
  Marker marker{};
  std::span<const ui8_t> segment;
  while (walk.NextMarker(marker)) {
    if (marker == Marker::SOD) return true;
    if (marker == Marker::SOT || marker == Marker::EOC || !walk.Segment(marker, segment)) return false;
    Note(markers, marker);
  }
  return false;
}

CodestreamEnd ReadTileParts(std::span<const ui8_t> codestream, CodestreamHeaders& headers) {
  ui64_t at = headers.MainHeaderLength;
  for (;;) {
    if (codestream.size() - at < 2) return CodestreamEnd::NoEOC;
    if (IsMarkerAt(codestream, at, Marker::EOC))
      return codestream.size() - at == 2 ? CodestreamEnd::Proper : CodestreamEnd::DataAfterEOC;
    if (!IsMarkerAt(codestream, at, Marker::SOT)) return CodestreamEnd::MalformedTilePart;
    if (codestream.size() - at < SOTLength) return CodestreamEnd::Cut;
    TilePart part;
    if (headers.TileParts.size() == CodestreamHeaders::MaxTileParts || !ReadTilePart(codestream, at, part))
      return CodestreamEnd::MalformedTilePart;
    const bool is_cut = part.Length > codestream.size() - at;
    const ui64_t present = is_cut ? codestream.size() - at : part.Length;
    const bool has_data = ReadTilePartHeader(codestream.subspan(at, present), headers.TilePartMarkers);
    if (is_cut) return CodestreamEnd::Cut;
    if (!has_data) return CodestreamEnd::MalformedTilePart;
    headers.TileParts.push_back(part);
    at += part.Length;
  }
}

bool HasOneTile(const ImageAndTileSize& size) {
  return ui64_t{size.XTOsiz} + size.XTsiz >= size.Xsiz && ui64_t{size.YTOsiz} + size.YTsiz >= size.Ysiz;
}

}  // namespace

Result_t ParseHeaders(std::span<const ui8_t> codestream, CodestreamHeaders& headers) {
  CodestreamHeaders found;
  if (!ReadMainHeader(codestream, found)) return RESULT_RAW_FORMAT;
  found.End = ReadTileParts(codestream, found);
  found.Length = codestream.size();
  headers = std::move(found);
  return Ferro::RESULT_OK;
}

std::vector<ComponentBytes> BytesOfComponents(const CodestreamHeaders& headers) {
  std::vector<ui64_t> lengths(headers.TilePartLengths.begin(), headers.TilePartLengths.end());
  if (headers.End == CodestreamEnd::Proper || headers.End == CodestreamEnd::DataAfterEOC || lengths.empty()) {
    lengths.clear();
    for (const TilePart& part : headers.TileParts) lengths.push_back(part.Length);
  }
  const size_t components = headers.Size.Csiz;
  const bool is_split = lengths.size() == 2 * components && headers.ProgressionChanges.size() == 2;
  if (headers.Coding.Progression != ProgressionOrder::CPRL || !HasOneTile(headers.Size) ||
      (lengths.size() != components && !is_split)) {
    return {};
  }
  std::vector<ComponentBytes> bytes(components);
  for (size_t i = 0; i < components; ++i) {
    bytes[i].Lower = lengths[i];
    bytes[i].Whole = lengths[i] + (is_split ? lengths[components + i] : 0);
  }
  return bytes;
}

}  // namespace QUIRE::JP2K
