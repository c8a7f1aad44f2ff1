// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceMaker.h"

#include <Ferro/Assert.h>

#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace testsupport {

using namespace QUIRE;

namespace {

void AppendBE(Bytes& out, ui64_t value, int size) {
  for (int i = size - 1; i >= 0; --i) out.push_back(static_cast<ui8_t>(value >> (8 * i)));
}

void AppendLE(Bytes& out, ui64_t value, int size) {
  for (int i = 0; i < size; ++i) out.push_back(static_cast<ui8_t>(value >> (8 * i)));
}

void AppendText(Bytes& out, const std::string& text) {
  out.insert(out.end(), text.begin(), text.end());
}

// Writes bits from the most significant on; Append pads the last byte with zeros.
class BitWriter {
 public:
  BitWriter& Put(ui32_t value, unsigned count) {
    while (count-- > 0) m_Bits.push_back((value >> count & 1u) != 0);
    return *this;
  }
  void Append(ui8_t start_code, Bytes& out) const {
    AppendBE(out, 0x100u | start_code, 4);
    for (size_t i = 0; i < m_Bits.size(); i += 8) {
      unsigned byte = 0;
      for (size_t j = i; j < i + 8; ++j) byte = byte << 1 | (j < m_Bits.size() && m_Bits[j] ? 1u : 0u);
      out.push_back(static_cast<ui8_t>(byte));
    }
  }

 private:
  std::vector<bool> m_Bits;
};

ui32_t FrameRateCode(const Rational& rate) {
  const Rational rates[] = {{24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}, {50, 1}, {60000, 1001}, {60, 1}};
  for (ui32_t i = 0; i < std::size(rates); ++i) {
    if (rates[i] == rate) return i + 1;
  }
  FERRO_ASSERT_TEXT(false, "a rate that MPEG-2 has");
  return 0;
}

ui32_t CRC32(const ui8_t* bytes, size_t size) {
  ui32_t crc = 0xffffffff;
  for (size_t i = 0; i < size; ++i) {
    crc ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1u) != 0 ? 0xedb88320u : 0u);
  }
  return ~crc;
}

void AppendPNGChunk(Bytes& out, const char* type, const Bytes& contents) {
  AppendBE(out, contents.size(), 4);
  const size_t start = out.size();
  AppendText(out, type);
  out.insert(out.end(), contents.begin(), contents.end());
  AppendBE(out, CRC32(out.data() + start, out.size() - start), 4);
}

}  // namespace

Bytes MakeAccessUnit(MPEG2::PictureType_t type, ui16_t temporal_reference, ui32_t width, ui32_t height,
                     const Rational& rate, ui32_t number) {
  Bytes out;
  if (type == MPEG2::PT_I) {
    BitWriter header;  // bit rate 15 Mbit/s, no matrices
    header.Put(width & 0xfff, 12).Put(height & 0xfff, 12).Put(3, 4).Put(FrameRateCode(rate), 4).Put(37500, 18);
    header.Put(1, 1).Put(112, 10).Put(0, 3).Append(0xb3, out);
    BitWriter extension;  // MP@HL, progressive, 4:2:0
    extension.Put(1, 4).Put(0x44, 8).Put(1, 1).Put(1, 2).Put(width >> 12, 2).Put(height >> 12, 2).Put(0, 12);
    extension.Put(1, 1).Put(0, 8).Put(0, 1).Put(0, 7).Append(0xb5, out);
    BitWriter().Put(0x1000, 25).Put(1, 1).Put(0, 1).Append(0xb8, out);  // a closed group
  }
  BitWriter picture;
  picture.Put(temporal_reference, 10).Put(type, 3).Put(0xffff, 16);
  if (type != MPEG2::PT_I) picture.Put(7, 4);
  if (type == MPEG2::PT_B) picture.Put(7, 4);
  picture.Put(0, 1).Append(0x00, out);
  BitWriter coding;  // frame picture, progressive
  coding.Put(8, 4).Put(type == MPEG2::PT_I ? 0xffff : 0x1111, 16).Put(0, 2).Put(3, 2).Put(0, 1).Put(1, 1).Put(0, 5);
  coding.Put(3, 2).Put(0, 1).Append(0xb5, out);
  AppendBE(out, 0x101, 4);  // one slice of bytes that cannot be taken for a start code
  for (ui8_t byte : MakeNoise(200 + number % 50, number)) out.push_back(byte | 1);
  return out;
}

Bytes MakeSamples(const PCM::AudioDescriptor& sound, ui64_t first, ui32_t count) {
  const int size = static_cast<int>((sound.QuantizationBits + 7) / 8);
  const double peak = std::ldexp(0.25, static_cast<int>(sound.QuantizationBits));
  Bytes out;
  out.reserve(size_t{count} * sound.ChannelCount * static_cast<size_t>(size));
  for (ui64_t n = first; n < first + count; ++n) {
    for (ui32_t channel = 0; channel < sound.ChannelCount; ++channel) {
      const double turns = static_cast<double>(n) * (220.0 * (channel + 1)) / sound.AudioSamplingRate.Quotient();
      const auto sample = static_cast<i64_t>(peak * std::sin(2 * std::numbers::pi * turns));
      AppendLE(out, static_cast<ui64_t>(sample), size);
    }
  }
  return out;
}

Bytes MakeNoise(size_t size, ui32_t number) {
  Bytes out(size);
  ui64_t state = 0x9e3779b97f4a7c15ull * (ui64_t{number} + 1);
  for (ui8_t& byte : out) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    byte = static_cast<ui8_t>(state >> 32);
  }
  return out;
}

Bytes MakeImmersiveFrame(ui32_t number) {
  Bytes out;
  out.push_back(0x01);
  AppendBE(out, 16, 4);
  for (const ui8_t byte : MakeNoise(16, number)) out.push_back(byte);
  const Bytes frame = MakeNoise(300 + number % 100, number + 1000);
  out.push_back(0x02);
  AppendBE(out, frame.size(), 4);
  out.insert(out.end(), frame.begin(), frame.end());
  return out;
}

Bytes MakePNG(size_t size) {
  Bytes out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  AppendPNGChunk(out, "IHDR", {0, 0, 0, 1, 0, 0, 0, 1, 8, 0, 0, 0, 0});
  AppendPNGChunk(out, "IDAT", {0x78, 0x01, 0x01, 0x02, 0x00, 0xfd, 0xff, 0x00, 0x00, 0x00, 0x02, 0x00, 0x01});
  constexpr size_t end_length = 12;
  if (size > out.size() + 2 * end_length) {
    AppendPNGChunk(out, "prVt", MakeNoise(size - out.size() - 2 * end_length, 7));
  }
  AppendPNGChunk(out, "IEND", {});
  out.resize(size);
  return out;
}

Bytes MakePNGHeader(unsigned width, unsigned height) {
  Bytes header;
  AppendBE(header, width, 4);
  AppendBE(header, height, 4);
  header.insert(header.end(), {8, 6, 0, 0, 0});  // 8 bits of each color and of alpha
  Bytes out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  AppendPNGChunk(out, "IHDR", header);
  AppendPNGChunk(out, "IDAT", {0x78, 0x01});
  AppendPNGChunk(out, "IEND", {});
  return out;
}

Bytes MakeFont(size_t size) {
  Bytes out = {'O', 'T', 'T', 'O', 0, 1, 0, 16, 0, 0, 0, 0};
  const Bytes noise = MakeNoise(size, 11);
  out.insert(out.end(), noise.begin(), noise.end());
  out.resize(size);
  return out;
}

std::string MakeTextDocument(const std::string& id, const std::vector<std::string>& font_ids,
                             const std::vector<std::string>& image_ids, const Rational& rate) {
  std::string xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<SubtitleReel xmlns="http://www.smpte-ra.org/schemas/428-7/2010/DCST">
  <Id>urn:uuid:)" + id +
                    R"(</Id>
  <ContentTitleText>Test</ContentTitleText>
  <IssueDate>2026-01-01T00:00:00</IssueDate>
  <ReelNumber>1</ReelNumber>
  <Language>en</Language>
  <EditRate>)" + rate.EncodeString() +
                    R"(</EditRate>
  <TimeCodeRate>)" + std::to_string((rate.Numerator + rate.Denominator - 1) / rate.Denominator) +
                    R"(</TimeCodeRate>
)";
  for (size_t i = 0; i < font_ids.size(); ++i) {
    xml += "  <LoadFont ID=\"font" + std::to_string(i) + "\">urn:uuid:" + font_ids[i] + "</LoadFont>\n";
  }
  xml += "  <SubtitleList>\n    <Font Color=\"FFFFFFFF\" Size=\"42\">\n";
  xml +=
      "      <Subtitle SpotNumber=\"1\" TimeIn=\"00:00:00:01\" TimeOut=\"00:00:01:00\">\n"
      "        <Text Valign=\"bottom\" Vposition=\"8\">Hello</Text>\n      </Subtitle>\n";
  for (size_t i = 0; i < image_ids.size(); ++i) {
    xml += "      <Subtitle SpotNumber=\"" + std::to_string(i + 2) +
           "\" TimeIn=\"00:00:01:01\" TimeOut=\"00:00:02:00\">\n"
           "        <Image Valign=\"bottom\" Vposition=\"8\">urn:uuid:" +
           image_ids[i] + "</Image>\n      </Subtitle>\n";
  }
  return xml + "    </Font>\n  </SubtitleList>\n</SubtitleReel>\n";
}

Bytes MakeWAV(const PCM::AudioDescriptor& sound, const Bytes& samples) {
  Bytes out;
  AppendText(out, "RIFF");
  AppendLE(out, 36 + samples.size(), 4);
  AppendText(out, "WAVEfmt ");
  AppendLE(out, 16, 4);
  AppendLE(out, 1, 2);
  AppendLE(out, sound.ChannelCount, 2);
  AppendLE(out, static_cast<ui64_t>(sound.AudioSamplingRate.Numerator), 4);
  AppendLE(out, sound.AvgBps, 4);
  AppendLE(out, sound.BlockAlign, 2);
  AppendLE(out, sound.QuantizationBits, 2);
  AppendText(out, "data");
  AppendLE(out, samples.size(), 4);
  out.insert(out.end(), samples.begin(), samples.end());
  return out;
}

}  // namespace testsupport
