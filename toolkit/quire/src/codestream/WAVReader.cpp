// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/WAVReader.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace QUIRE::PCM {

namespace {

constexpr ui32_t MaxChunks = 1024;  // before the sound; real files have a handful
constexpr ui16_t MaxChannels = 64;
constexpr ui32_t Unknown32 = 0xffffffff;  // a length that stands in the ds64 chunk instead
// The format chunk, little-endian: format tag (2 bytes), channels (2), samples per second (4), bytes per second (4), bytes
// of one sample of all channels (2), bits (2). The extensible form goes on with the size of what follows (2), valid bits
// (2), channel mask (4) and sub-format (16).
constexpr size_t FormatLength = 16;
constexpr size_t ExtensibleLength = 40;
constexpr ui16_t TagPCM = 0x0001;
constexpr ui16_t TagExtensible = 0xfffe;
// The rest of a sub-format whose first two bytes are a format tag.
constexpr std::array<ui8_t, 14> SubFormatTail = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                 0x00, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71};

// The little-endian number of `size` bytes at `offset`.
ui64_t LittleEndian(std::span<const ui8_t> bytes, size_t offset, size_t size) {
  ui64_t value = 0;
  for (size_t i = size; i-- > 0;) value = value << 8 | bytes[offset + i];
  return value;
}

std::string_view FourCC(std::span<const ui8_t> bytes, size_t offset) {
  return {reinterpret_cast<const char*>(bytes.data()) + offset, 4};
}

}  // namespace

struct WAVReader::Chunk {
  fsize_t Start = 0;  // of the chunk's contents
  ui64_t Length = 0;  // at most what is left of the file
};

Result_t WAVReader::OpenRead(const std::string& filename, const Rational& edit_rate) {
  Close();
  Result_t result = m_File.OpenRead(filename);
  m_Descriptor.EditRate = edit_rate;
  if (result.Success()) result = ReadChunks();
  if (result.Success()) result = FindDuration();
  if (result.Failure()) Close();
  return result;
}

void WAVReader::Close() {
  m_File.Close();
  m_Descriptor = {};
  m_Cadence.reset();
  m_DataStart = 0;
  m_DataLength = 0;
}

// Hops from chunk to chunk up to the sound; what follows it is of no interest. A chunk is a name (4 bytes), the length of
// its contents (4), the contents, and a byte of padding where that length is odd. Files beyond 4 GiB have 0xffffffff for
// the length of the sound, and the length itself in "ds64": file size (8), sound size (8), samples (8) (EBU Tech 3306).
Result_t WAVReader::ReadChunks() {
  std::array<ui8_t, 12> head;
  if (const Result_t result = m_File.ReadAt(0, head); result.Failure()) {
    return result == Ferro::RESULT_ENDOFFILE ? RESULT_RAW_ESS : result;
  }
  const bool is_64 = FourCC(head, 0) == "RF64" || FourCC(head, 0) == "BW64";
  if ((FourCC(head, 0) != "RIFF" && !is_64) || FourCC(head, 8) != "WAVE") return RESULT_RAW_ESS;

  std::optional<ui64_t> data_length_64;
  fsize_t position = head.size();
  for (ui32_t i = 0; i < MaxChunks; ++i) {
    std::array<ui8_t, 8> header;
    if (const Result_t result = m_File.ReadAt(position, header); result.Failure()) {
      return result == Ferro::RESULT_ENDOFFILE ? RESULT_RAW_FORMAT : result;
    }
    Chunk chunk{position + header.size(), LittleEndian(header, 4, 4)};
    const ui64_t left = m_File.Size() - chunk.Start;
    if (FourCC(header, 0) == "data") {
      if (m_Descriptor.BlockAlign == 0) return RESULT_RAW_FORMAT;  // the format comes first
      if (chunk.Length == Unknown32 && is_64) chunk.Length = data_length_64.value_or(left);
      m_DataStart = chunk.Start;
      m_DataLength = std::min(chunk.Length, left);
      return Ferro::RESULT_OK;
    }
    if (chunk.Length > left) return RESULT_RAW_FORMAT;
    if (FourCC(header, 0) == "fmt ") {
      if (const Result_t result = ReadFormat(chunk); result.Failure()) return result;
    } else if (FourCC(header, 0) == "ds64") {
      std::array<ui8_t, 16> sizes;
      if (chunk.Length < sizes.size() || m_File.ReadAt(chunk.Start, sizes).Failure()) return RESULT_RAW_FORMAT;
      data_length_64 = LittleEndian(sizes, 8, 8);
    }
    position = chunk.Start + chunk.Length + chunk.Length % 2;
  }
  return RESULT_RAW_FORMAT;
}

Result_t WAVReader::ReadFormat(const Chunk& chunk) {
  std::array<ui8_t, ExtensibleLength> format{};
  const auto present = std::span(format).first(static_cast<size_t>(std::min<ui64_t>(chunk.Length, format.size())));
  if (present.size() < FormatLength) return RESULT_RAW_FORMAT;
  if (const Result_t result = m_File.ReadAt(chunk.Start, present); result.Failure()) return result;

  ui64_t tag = LittleEndian(format, 0, 2);
  if (tag == TagExtensible && present.size() == ExtensibleLength &&
      std::equal(SubFormatTail.begin(), SubFormatTail.end(), format.begin() + 26)) {
    tag = LittleEndian(format, 24, 2);
  }
  const ui64_t channels = LittleEndian(format, 2, 2);
  const ui64_t rate = LittleEndian(format, 4, 4);
  const ui64_t block = LittleEndian(format, 12, 2);
  const ui64_t bits = LittleEndian(format, 14, 2);
  if (tag != TagPCM || channels == 0 || channels > MaxChannels || rate == 0 || !std::in_range<i32_t>(rate) ||
      bits < 16 || bits > 32 || block != channels * ((bits + 7) / 8) || !std::in_range<ui32_t>(rate * block)) {
    return RESULT_RAW_FORMAT;
  }
  m_Descriptor.AudioSamplingRate = Rational(static_cast<i32_t>(rate), 1);
  m_Descriptor.ChannelCount = static_cast<ui32_t>(channels);
  m_Descriptor.QuantizationBits = static_cast<ui32_t>(bits);
  m_Descriptor.BlockAlign = static_cast<ui32_t>(block);
  m_Descriptor.AvgBps = static_cast<ui32_t>(rate * block);
  return Ferro::RESULT_OK;
}

Result_t WAVReader::FindDuration() {
  m_Cadence = SampleCadence::Make(m_Descriptor.AudioSamplingRate, m_Descriptor.EditRate);
  if (!m_Cadence) return Ferro::RESULT_PARAM;
  const ui64_t samples = m_DataLength / m_Descriptor.BlockAlign;
  m_DataLength = samples * m_Descriptor.BlockAlign;
  const auto duration = m_Cadence->EditUnitsFor(samples);
  if (!duration) return RESULT_RAW_FORMAT;
  m_Descriptor.ContainerDuration = *duration;
  return Ferro::RESULT_OK;
}

Result_t WAVReader::FillAudioDescriptor(AudioDescriptor& descriptor) const {
  if (!m_File.IsOpen()) return Ferro::RESULT_INIT;
  descriptor = m_Descriptor;
  return Ferro::RESULT_OK;
}

// The last edit unit is filled up with silence where the samples end within it.
Result_t WAVReader::ReadFrame(ui32_t frame_number, FrameBuffer& frame) const {
  if (!m_File.IsOpen()) return Ferro::RESULT_INIT;
  if (frame_number >= m_Descriptor.ContainerDuration) return RESULT_RANGE;
  const ui64_t length = ui64_t{m_Cadence->SampleCount(frame_number)} * m_Descriptor.BlockAlign;
  if (frame.Capacity() < length) return Ferro::RESULT_SMALLBUF;

  const ui64_t offset = m_Cadence->FirstSample(frame_number) * m_Descriptor.BlockAlign;
  const auto present = static_cast<ui32_t>(std::min<ui64_t>(length, m_DataLength - offset));
  const Result_t result = m_File.ReadAt(m_DataStart + offset, std::span(frame.Data(), present));
  if (result.Failure()) return result;
  std::memset(frame.Data() + present, 0, length - present);
  frame.Clear();
  frame.Size(static_cast<ui32_t>(length));
  frame.FrameNumber(frame_number);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::PCM
