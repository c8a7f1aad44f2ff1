// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Codestream.h>
#include <QUIRE/Dictionary.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <utility>

namespace QUIRE::MPEG2 {

namespace {

// Start code values (ISO/IEC 13818-2, table 6-1).
constexpr ui8_t PictureStart = 0x00;
constexpr ui8_t SequenceHeader = 0xb3;
constexpr ui8_t Extension = 0xb5;
constexpr ui8_t GroupStart = 0xb8;

// Extension identifiers (table 6-2).
constexpr ui32_t SequenceExtensionID = 1;
constexpr ui32_t PictureCodingExtensionID = 8;

constexpr ui8_t MainAtHigh = 0x44;
constexpr ui8_t FourTwoTwoAtHigh = 0x82;

// One start code, 00 00 01 and its value, and the bytes up to the next.
struct Section {
  ui8_t Code = 0;
  size_t Offset = 0;  // of the start code prefix
  std::span<const ui8_t> Payload;
};

std::optional<size_t> FindPrefix(std::span<const ui8_t> stream, size_t from) {
  for (size_t i = from; i + 3 < stream.size(); ++i) {
    if (stream[i] == 0 && stream[i + 1] == 0 && stream[i + 2] == 1) return i;
  }
  return std::nullopt;
}

// Walks the start codes of a stream in order.
class SectionWalk {
 public:
  explicit SectionWalk(std::span<const ui8_t> stream) : m_Stream(stream), m_Next(FindPrefix(stream, 0)) {}

  std::optional<Section> Next() {
    if (!m_Next) return std::nullopt;
    const size_t start = *m_Next;
    m_Next = FindPrefix(m_Stream, start + 4);
    const size_t end = m_Next.value_or(m_Stream.size());
    return Section{m_Stream[start + 3], start, m_Stream.subspan(start + 4, end - start - 4)};
  }

 private:
  std::span<const ui8_t> m_Stream;
  std::optional<size_t> m_Next;
};

// Reads bits from the most significant on; past the end it reads zeros and remembers.
class BitReader {
 public:
  explicit BitReader(std::span<const ui8_t> bytes) : m_Bytes(bytes) {}

  ui32_t Read(unsigned count) {
    ui32_t value = 0;
    for (; count > 0; --count, ++m_Position) {
      const size_t byte = m_Position / 8;
      m_Complete = m_Complete && byte < m_Bytes.size();
      value = value << 1 | (m_Complete ? ui32_t{m_Bytes[byte]} >> (7 - m_Position % 8) & 1u : 0u);
    }
    return value;
  }
  [[nodiscard]] bool Complete() const { return m_Complete; }

 private:
  std::span<const ui8_t> m_Bytes;
  size_t m_Position = 0;
  bool m_Complete = true;
};

// Fields of the sequence header and of its extension that are put together.
struct SequenceFields {
  ui32_t Width = 0;
  ui32_t Height = 0;
  ui32_t AspectCode = 0;
  ui32_t RateCode = 0;
  ui32_t BitRate = 0;  // in units of 400 bit/s
  ui32_t ProfileAndLevel = 0;
  bool Progressive = false;
  ui32_t ChromaFormat = 0;
  bool LowDelay = false;
  ui32_t RateNumerator = 0;    // less 1
  ui32_t RateDenominator = 0;  // less 1
};

bool ReadHeader(std::span<const ui8_t> payload, SequenceFields& fields) {
  BitReader bits(payload);
  fields.Width = bits.Read(12);
  fields.Height = bits.Read(12);
  fields.AspectCode = bits.Read(4);
  fields.RateCode = bits.Read(4);
  fields.BitRate = bits.Read(18);
  const bool marker = bits.Read(1) == 1;
  return bits.Complete() && marker;
}

bool ReadExtension(std::span<const ui8_t> payload, SequenceFields& fields) {
  BitReader bits(payload);
  if (bits.Read(4) != SequenceExtensionID) return false;
  fields.ProfileAndLevel = bits.Read(8);
  fields.Progressive = bits.Read(1) == 1;
  fields.ChromaFormat = bits.Read(2);
  fields.Width |= bits.Read(2) << 12;
  fields.Height |= bits.Read(2) << 12;
  fields.BitRate |= bits.Read(12) << 18;
  const bool marker = bits.Read(1) == 1;
  bits.Read(8);  // vbv_buffer_size_extension
  fields.LowDelay = bits.Read(1) == 1;
  fields.RateNumerator = bits.Read(2);
  fields.RateDenominator = bits.Read(5);
  return bits.Complete() && marker;
}

// Table 6-4; a code outside it gives 0/0.
Rational FrameRate(const SequenceFields& fields) {
  constexpr std::array<std::pair<i32_t, i32_t>, 9> rates = {
      {{0, 0}, {24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}, {50, 1}, {60000, 1001}, {60, 1}}};
  if (fields.RateCode == 0 || fields.RateCode >= rates.size()) return {};
  const auto [numerator, denominator] = rates[fields.RateCode];
  if (fields.RateNumerator == 0 && fields.RateDenominator == 0) return {numerator, denominator};
  const i32_t scaled_numerator = numerator * static_cast<i32_t>(fields.RateNumerator + 1);
  const i32_t scaled_denominator = denominator * static_cast<i32_t>(fields.RateDenominator + 1);
  const i32_t divisor = std::gcd(scaled_numerator, scaled_denominator);
  return {scaled_numerator / divisor, scaled_denominator / divisor};
}

// Table 6-3; a code outside it gives 0/0.
Rational AspectRatio(const SequenceFields& fields) {
  switch (fields.AspectCode) {
    case 1:
      return {static_cast<i32_t>(fields.Width), static_cast<i32_t>(fields.Height)};
    case 2:
      return {4, 3};
    case 3:
      return {16, 9};
    case 4:
      return {221, 100};
    default:
      return {};
  }
}

UL CodingLabel(ui32_t profile_and_level) {
  switch (profile_and_level) {
    case MainAtHigh:
      return DefaultSMPTEDict().ul(MDD_MPEG2Coding_MPHL_LongGOP);
    case FourTwoTwoAtHigh:
      return DefaultSMPTEDict().ul(MDD_MPEG2Coding_422PHL_LongGOP);
    default:
      return {};
  }
}

// Chroma format 1 is 4:2:0, 2 is 4:2:2, 3 is 4:4:4 (table 6-5); the siting codes are those of ST 377-1, G.2.
void FillChroma(ui32_t chroma_format, VideoDescriptor& descriptor) {
  constexpr ui8_t cosited = 0, rec601 = 4, vertical_midpoint = 6;
  descriptor.ComponentDepth = 8;
  descriptor.HorizontalSubsampling = chroma_format == 3 ? 1 : 2;
  descriptor.VerticalSubsampling = chroma_format == 1 ? 2 : 1;
  descriptor.ColorSiting = chroma_format == 1 ? vertical_midpoint : chroma_format == 2 ? rec601 : cosited;
}

constexpr ui32_t FramePicture = 3;

// The structure of the picture whose header `walk` has just passed (table 6-14): 1 top field, 2 bottom field, 3 frame.
ui32_t PictureStructure(SectionWalk walk) {
  const auto extension = walk.Next();
  if (!extension || extension->Code != Extension) return FramePicture;
  BitReader bits(extension->Payload);
  if (bits.Read(4) != PictureCodingExtensionID) return FramePicture;
  bits.Read(16 + 2);  // f_code, intra_dc_precision
  const ui32_t structure = bits.Read(2);
  return structure == 0 ? FramePicture : structure;
}

}  // namespace

Result_t ParseSequence(std::span<const ui8_t> stream, VideoDescriptor& descriptor) {
  SectionWalk walk(stream);
  auto section = walk.Next();
  while (section && section->Code != SequenceHeader) section = walk.Next();
  SequenceFields fields;
  if (!section || !ReadHeader(section->Payload, fields)) return RESULT_RAW_FORMAT;
  section = walk.Next();  // the extension follows at once, or it is MPEG-1
  if (!section || section->Code != Extension || !ReadExtension(section->Payload, fields)) return RESULT_RAW_FORMAT;

  const Rational rate = FrameRate(fields);
  const Rational aspect = AspectRatio(fields);
  if (!rate.HasValue() || !aspect.HasValue() || fields.Width == 0 || fields.Height == 0 || fields.ChromaFormat == 0) {
    return RESULT_RAW_FORMAT;
  }
  descriptor.EditRate = rate;
  descriptor.SampleRate = rate;
  descriptor.StoredWidth = fields.Width;
  descriptor.StoredHeight = fields.Height;
  descriptor.AspectRatio = aspect;
  descriptor.PictureEssenceCoding = CodingLabel(fields.ProfileAndLevel);
  descriptor.FrameLayout = fields.Progressive ? 0 : 3;
  descriptor.CodedContentType = fields.Progressive ? 1 : 2;
  descriptor.LowDelay = fields.LowDelay;
  const ui64_t bit_rate = ui64_t{fields.BitRate} * 400;
  descriptor.BitRate = std::in_range<ui32_t>(bit_rate) ? static_cast<ui32_t>(bit_rate) : 0;
  descriptor.ProfileAndLevel = static_cast<ui8_t>(fields.ProfileAndLevel);
  FillChroma(fields.ChromaFormat, descriptor);
  return Ferro::RESULT_OK;
}

Result_t ParsePicture(std::span<const ui8_t> access_unit, PictureHeader& header) {
  PictureHeader found;
  SectionWalk walk(access_unit);
  while (const auto section = walk.Next()) {
    BitReader bits(section->Payload);
    if (section->Code == SequenceHeader) {
      found.HasSequenceHeader = true;
    } else if (section->Code == GroupStart) {
      bits.Read(25);  // time_code
      found.StartsGroup = true;
      found.ClosedGroup = bits.Read(1) == 1;
    } else if (section->Code == PictureStart) {
      found.TemporalReference = static_cast<ui16_t>(bits.Read(10));
      const ui32_t type = bits.Read(3);
      if (!bits.Complete() || type < PT_I || type > PT_B) return RESULT_RAW_FORMAT;
      found.Type = static_cast<PictureType_t>(type);
      header = found;
      return Ferro::RESULT_OK;
    }
  }
  return RESULT_RAW_FORMAT;
}

Result_t FindAccessUnit(std::span<const ui8_t> stream, size_t& length) {
  if (FindPrefix(stream.first(std::min<size_t>(stream.size(), 4)), 0) != 0) return RESULT_RAW_FORMAT;
  SectionWalk walk(stream);
  ui32_t first_structure = 0;  // 0 until a picture was met
  bool has_both_fields = false;
  while (const auto section = walk.Next()) {
    if (section->Code == PictureStart) {
      const ui32_t structure = PictureStructure(walk);
      const bool is_second_field = first_structure + structure == FramePicture && first_structure != 0;
      if (first_structure != 0 && (has_both_fields || !is_second_field)) {
        length = section->Offset;
        return Ferro::RESULT_OK;
      }
      has_both_fields = is_second_field;
      if (first_structure == 0) first_structure = structure;
    } else if (first_structure != 0 && (section->Code == SequenceHeader || section->Code == GroupStart)) {
      length = section->Offset;
      return Ferro::RESULT_OK;
    }
  }
  if (first_structure == 0) return RESULT_RAW_FORMAT;
  length = stream.size();
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MPEG2
