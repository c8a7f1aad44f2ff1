// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <span>
#include <vector>

namespace QUIRE::JP2K {

// The headers of a JPEG 2000 codestream (ISO/IEC 15444-1, annex A): everything but the packets.
//
//   SOC SIZ [CAP] { COD QCD [COC QCC POC TLM COM ...] }   main header
//   { SOT [PLT COM ...] SOD packets } ...                 tile-parts
//   EOC

/// A marker: 0xff and a byte that says which.
enum class Marker : ui16_t {
  SOC = 0xff4f,  ///< start of codestream
  CAP = 0xff50,  ///< extended capabilities (ISO/IEC 15444-15 among them)
  SIZ = 0xff51,  ///< image and tile size
  COD = 0xff52,  ///< coding style default
  COC = 0xff53,  ///< coding style of a component
  TLM = 0xff55,  ///< tile-part lengths
  PLM = 0xff57,  ///< packet lengths, main header
  PLT = 0xff58,  ///< packet lengths, tile-part header
  QCD = 0xff5c,  ///< quantization default
  QCC = 0xff5d,  ///< quantization of a component
  RGN = 0xff5e,  ///< region of interest
  POC = 0xff5f,  ///< progression order change
  PPM = 0xff60,  ///< packed packet headers, main header
  PPT = 0xff61,  ///< packed packet headers, tile-part header
  CRG = 0xff63,  ///< component registration
  COM = 0xff64,  ///< comment
  SOT = 0xff90,  ///< start of tile-part
  SOD = 0xff93,  ///< start of data
  EOC = 0xffd9,  ///< end of codestream
};

/// Which packets come first (table A.16): layer, resolution, component, position.
enum class ProgressionOrder : ui8_t { LRCP = 0, RLCP = 1, RPCL = 2, PCRL = 3, CPRL = 4 };

/// The wavelet transform (table A.20).
enum class WaveletTransform : ui8_t { Irreversible97 = 0, Reversible53 = 1 };

/// How components are coded: the COD marker segment, or what a COC puts in its place (A.6.1, A.6.2).
struct CodingStyle {
  ProgressionOrder Progression = ProgressionOrder::LRCP;  ///< not of a COC
  ui16_t Layers = 0;                                      ///< not of a COC
  bool UsesComponentTransform = false;                    ///< of the first three components; not of a COC
  ui8_t Levels = 0;                                       ///< of the wavelet transform, 0 to 32
  ui32_t CodeBlockWidth = 0;                              ///< samples, 4 to 1024
  ui32_t CodeBlockHeight = 0;
  ui8_t CodeBlockStyle = 0;  ///< bits of table A.19; bits 6 and 7 say high throughput (ISO/IEC 15444-15)
  WaveletTransform Transform = WaveletTransform::Irreversible97;
  /// One byte for each resolution, lowest first: exponent of the width in the low, of the height in the high four bits.
  /// Empty where precincts are as large as they can be.
  std::vector<ui8_t> Precincts;

  friend bool operator==(const CodingStyle&, const CodingStyle&) = default;
};

/// The QCD marker segment, or the QCC that stands in its place (A.6.4, A.6.5), without the step sizes.
struct Quantization {
  ui8_t Style = 0;  ///< 0: none, 1: derived, 2: expounded
  ui8_t GuardBits = 0;
  friend bool operator==(const Quantization&, const Quantization&) = default;
};

template <class T>
struct OfComponent {
  ui16_t Component = 0;
  T Value;
  friend bool operator==(const OfComponent&, const OfComponent&) = default;
};

/// One entry of a POC marker segment (A.6.6); ends are exclusive.
struct ProgressionChange {
  ui8_t FirstResolution = 0;
  ui16_t FirstComponent = 0;
  ui16_t EndLayer = 0;
  ui8_t EndResolution = 0;
  ui16_t EndComponent = 0;
  ProgressionOrder Order = ProgressionOrder::LRCP;
  friend bool operator==(const ProgressionChange&, const ProgressionChange&) = default;
};

/// A tile-part, by its SOT marker segment (A.4.2).
struct TilePart {
  ui64_t Offset = 0;  ///< of the SOT marker
  ui64_t Length = 0;  ///< bytes from there, headers included
  ui16_t Tile = 0;
  ui8_t Index = 0;  ///< among the parts of its tile
  ui8_t Count = 0;  ///< parts of its tile; 0 when not told
  friend bool operator==(const TilePart&, const TilePart&) = default;
};

/// How a codestream ends.
enum class CodestreamEnd : ui8_t {
  Proper,             ///< with EOC, and nothing after it
  DataAfterEOC,       ///< EOC is not the last of it
  NoEOC,              ///< after a whole tile-part
  Cut,                ///< within a tile-part
  MalformedTilePart,  ///< where a tile-part belongs there is none that makes sense
};

/// What the headers of a codestream say. The coding style and quantization defaults stand in Coding and Quant; what
/// components have in their place, in CodingOf and QuantOf.
struct CodestreamHeaders {
  /// More tile-parts than this, in the stream or in TLM, are taken for damage.
  static constexpr size_t MaxTileParts = 65536;

  ImageAndTileSize Size;
  std::vector<ui8_t> CodingStyleDefault;   ///< the COD marker segment after its length field
  std::vector<ui8_t> QuantizationDefault;  ///< the QCD marker segment after its length field
  CodingStyle Coding;
  Quantization Quant;
  std::vector<OfComponent<CodingStyle>> CodingOf;  ///< one for each COC
  std::vector<OfComponent<Quantization>> QuantOf;  ///< one for each QCC
  std::vector<ProgressionChange> ProgressionChanges;
  std::vector<ui32_t> TilePartLengths;  ///< as TLM has them; empty without TLM

  /// The distinct markers of main header and tile-part headers, in the order of their first appearance, without SOC,
  /// SOT, SOD and EOC.
  std::vector<Marker> MainMarkers;
  std::vector<Marker> TilePartMarkers;
  bool HasHighThroughput = false;  ///< by CAP or by code-block style

  ui64_t MainHeaderLength = 0;      ///< bytes, from SOC to the first SOT
  std::vector<TilePart> TileParts;  ///< those that are whole, in stored order
  CodestreamEnd End = CodestreamEnd::Cut;
  ui64_t Length = 0;  ///< bytes given

  friend bool operator==(const CodestreamHeaders&, const CodestreamHeaders&) = default;
};

/// Reads the headers of any bytes: a length or count that leads outside them ends the reading. What is kept takes at
/// most a few megabytes, however long the stream. Any thread may call it.
/// @return RESULT_OK, also where tile-parts are missing or cut, which `End` tells; RESULT_RAW_FORMAT, with `headers`
/// unchanged, where the main header is cut or a marker segment in it is missing, malformed or out of place.
[[nodiscard]] QUIRE_API Result_t ParseHeaders(std::span<const ui8_t> codestream, CodestreamHeaders& headers);

/// How many bytes a component takes, its tile-part headers included.
struct ComponentBytes {
  ui64_t Whole = 0;
  ui64_t Lower = 0;  ///< without the highest resolution, where that has tile-parts of its own; else as Whole
  friend bool operator==(const ComponentBytes&, const ComponentBytes&) = default;
};

/// The bytes of each component where tile-parts are laid out as for D-Cinema: one part for each component, or one for each
/// component's lower resolutions and then one for each component's highest. Lengths are those of the tile-parts, or TLM's
/// where the stream is cut. Empty where tile-parts are laid out otherwise.
[[nodiscard]] QUIRE_API std::vector<ComponentBytes> BytesOfComponents(const CodestreamHeaders& headers);

}  // namespace QUIRE::JP2K
