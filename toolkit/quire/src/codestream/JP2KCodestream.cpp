// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Codestream.h>
#include <QUIRE/Dictionary.h>

#include <Ferro/MemIO.h>

#include <utility>

namespace QUIRE::JP2K {

namespace {

// Markers of the main header (ISO/IEC 15444-1, table A.2).
constexpr ui16_t SOC = 0xff4f;
constexpr ui16_t SIZ = 0xff51;
constexpr ui16_t COD = 0xff52;
constexpr ui16_t QCD = 0xff5c;
constexpr ui16_t SOT = 0xff90;

constexpr ui16_t MaxComponents = 16384;  // A.5.1
constexpr size_t MinCODLength = 10;      // Scod, SGcod 4, SPcod 5
constexpr size_t MinQCDLength = 2;       // Sqcd and one value

// The segment's bytes after its length field; the cursor moves past them. Empty when they do not fit.
std::span<const ui8_t> ReadSegment(Ferro::MemIOReader& reader) {
  ui16_t length = 0;
  if (!reader.ReadUi16BE(&length) || length < 2) return {};
  const std::span<const ui8_t> segment(reader.CurrentData(), ui32_t{length} - 2);
  return reader.Skip(ui32_t{length} - 2) ? segment : std::span<const ui8_t>();
}

bool ReadComponents(Ferro::MemIOReader& reader, PictureDescriptor& descriptor) {
  descriptor.PictureComponentSizing.clear();
  for (ui16_t i = 0; i < descriptor.Csiz; ++i) {
    ComponentSizing component;
    if (!reader.ReadUi8(&component.Ssiz) || !reader.ReadUi8(&component.XRsiz) || !reader.ReadUi8(&component.YRsiz) ||
        component.XRsiz == 0 || component.YRsiz == 0) {
      return false;
    }
    descriptor.PictureComponentSizing.push_back(component);
  }
  return true;
}

bool ReadSize(std::span<const ui8_t> segment, PictureDescriptor& descriptor) {
  Ferro::MemIOReader reader(segment);
  if (!reader.ReadUi16BE(&descriptor.Rsiz)) return false;
  for (ui32_t* field : {&descriptor.Xsiz, &descriptor.Ysiz, &descriptor.XOsiz, &descriptor.YOsiz, &descriptor.XTsiz,
                        &descriptor.YTsiz, &descriptor.XTOsiz, &descriptor.YTOsiz}) {
    if (!reader.ReadUi32BE(field)) return false;
  }
  if (!reader.ReadUi16BE(&descriptor.Csiz)) return false;
  if (descriptor.XOsiz >= descriptor.Xsiz || descriptor.YOsiz >= descriptor.Ysiz || descriptor.XTsiz == 0 ||
      descriptor.YTsiz == 0 || descriptor.XTOsiz > descriptor.XOsiz || descriptor.YTOsiz > descriptor.YOsiz) {
    return false;
  }
  if (descriptor.Csiz == 0 || descriptor.Csiz > MaxComponents || reader.Remainder() != 3u * descriptor.Csiz) {
    return false;
  }
  return ReadComponents(reader, descriptor);
}

// The segments after SIZ, up to the first tile part.
bool ReadCodingDefaults(Ferro::MemIOReader& reader, PictureDescriptor& descriptor) {
  descriptor.CodingStyleDefault.clear();
  descriptor.QuantizationDefault.clear();
  for (;;) {
    ui16_t marker = 0;
    if (!reader.ReadUi16BE(&marker) || marker < 0xff00) return false;
    if (marker == SOT) return !descriptor.CodingStyleDefault.empty() && !descriptor.QuantizationDefault.empty();
    const auto segment = ReadSegment(reader);
    if (segment.empty()) return false;
    if (marker != COD && marker != QCD) continue;
    auto& field = marker == COD ? descriptor.CodingStyleDefault : descriptor.QuantizationDefault;
    if (!field.empty() || segment.size() < (marker == COD ? MinCODLength : MinQCDLength)) return false;
    field.assign(segment.begin(), segment.end());
  }
}

UL CodingLabel(ui16_t rsiz) {
  switch (rsiz) {
    case 3:
      return DefaultSMPTEDict().ul(MDD_JP2KEssenceCompression_2K);
    case 4:
      return DefaultSMPTEDict().ul(MDD_JP2KEssenceCompression_4K);
    default:
      return DefaultSMPTEDict().ul(MDD_JP2KEssenceCompression_Undefined);
  }
}

}  // namespace

Result_t ParseCodestream(std::span<const ui8_t> codestream, PictureDescriptor& descriptor) {
  if (!std::in_range<ui32_t>(codestream.size())) return RESULT_RAW_FORMAT;
  Ferro::MemIOReader reader(codestream);
  ui16_t start = 0;
  ui16_t size = 0;
  if (!reader.ReadUi16BE(&start) || start != SOC || !reader.ReadUi16BE(&size) || size != SIZ) return RESULT_RAW_FORMAT;

  PictureDescriptor found = descriptor;
  if (!ReadSize(ReadSegment(reader), found) || !ReadCodingDefaults(reader, found)) return RESULT_RAW_FORMAT;
  found.StoredWidth = found.Xsiz - found.XOsiz;
  found.StoredHeight = found.Ysiz - found.YOsiz;
  if (!std::in_range<i32_t>(found.StoredWidth) || !std::in_range<i32_t>(found.StoredHeight)) return RESULT_RAW_FORMAT;
  found.AspectRatio = Rational(static_cast<i32_t>(found.StoredWidth), static_cast<i32_t>(found.StoredHeight));
  found.PictureEssenceCoding = CodingLabel(found.Rsiz);
  descriptor = std::move(found);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::JP2K
