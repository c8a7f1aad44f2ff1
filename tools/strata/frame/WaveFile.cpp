// SPDX-License-Identifier: BSD-3-Clause
#include "WaveFile.h"

#include "FrameSource.h"
#include "terminal/CommandError.h"

#include <array>
#include <limits>
#include <string_view>

namespace Tool {

namespace {

using Ferro::ui32_t;
using Ferro::ui64_t;

struct Speaker {
  std::string_view Symbol;
  ui32_t Bit;
};

constexpr std::array Speakers = {
    Speaker{"L", 0x1},     Speaker{"R", 0x2},    Speaker{"C", 0x4},   Speaker{"LFE", 0x8},  Speaker{"Ls", 0x10},
    Speaker{"Rs", 0x20},   Speaker{"Lc", 0x40},  Speaker{"Rc", 0x80}, Speaker{"Cs", 0x100}, Speaker{"Lss", 0x200},
    Speaker{"Rss", 0x400}, Speaker{"Lrs", 0x10}, Speaker{"Rrs", 0x20}};

ui32_t BitOf(std::string_view symbol) {
  for (const Speaker& speaker : Speakers)
    if (speaker.Symbol == symbol) return speaker.Bit;
  return 0;
}

/// `size` bytes, the least significant first.
std::string Number(ui64_t value, unsigned size) {
  std::string bytes;
  for (unsigned i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xff);
  return bytes;
}

// KSDATAFORMAT_SUBTYPE_PCM as it is stored.
constexpr std::string_view PCMSubFormat("\x01\0\0\0\0\0\x10\0\x80\0\0\xaa\0\x38\x9b\x71", 16);

constexpr ui64_t LargestRIFF = std::numeric_limits<ui32_t>::max();  // the sizes of RIFF chunks have 32 bits

}  // namespace

WaveFile::WaveFile(const std::string& filename, const SoundFormat& format)
    : m_Filename(filename),
      m_SampleRate(format.SampleRate),
      m_Bits(format.Bits),
      m_Channels(format.Channels),
      m_SpeakerMask(SpeakerMask(format.Configuration)) {
  Check(m_File.OpenWrite(filename));
  Check(m_File.Write(Header()));
}

void WaveFile::Write(std::span<const Ferro::ui8_t> samples) {
  Check(m_File.Write(samples));
  m_Length += samples.size();
}

void WaveFile::Finish() {
  if (m_Length % 2 != 0) Check(m_File.Write(std::string_view("\0", 1)));
  Check(m_File.Seek(0));
  Check(m_File.Write(Header()));
  Check(m_File.Commit());
}

void WaveFile::Check(const Ferro::Result_t& result) const {
  CheckWritten(m_Filename, result, m_File.FailureReason());
}

// A chunk of filler holds the place of the one with the sizes of 64 bits.
std::string WaveFile::Header() const {
  const ui32_t block = m_Channels * ((m_Bits + 7) / 8);
  std::string format = Number(0xfffe, 2) + Number(m_Channels, 2) + Number(m_SampleRate, 4) +
                       Number(ui64_t{m_SampleRate} * block, 4) + Number(block, 2) + Number((m_Bits + 7) / 8 * 8, 2) +
                       Number(22, 2) + Number(m_Bits, 2) + Number(m_SpeakerMask, 4);
  format += PCMSubFormat;
  constexpr ui64_t SizesLength = 28;
  constexpr ui64_t HeaderLength = 12 + 8 + SizesLength + 8 + 40 + 8;
  const ui64_t riff_size = HeaderLength - 8 + m_Length + m_Length % 2;
  const bool is_large = riff_size > LargestRIFF;
  const std::string sizes =
      is_large ? Number(riff_size, 8) + Number(m_Length, 8) + Number(m_Length / block, 8) + Number(0, 4)
               : std::string(SizesLength, '\0');
  return (is_large ? "RF64" : "RIFF") + Number(is_large ? LargestRIFF : riff_size, 4) + "WAVE" +
         (is_large ? "ds64" : "JUNK") + Number(SizesLength, 4) + sizes + "fmt " + Number(format.size(), 4) + format +
         "data" + Number(is_large ? LargestRIFF : m_Length, 4);
}

ui32_t SpeakerMask(const std::string& configuration) {
  ui32_t mask = 0;
  size_t start = configuration.find('(');
  while (start != std::string::npos) {
    const size_t end = configuration.find_first_of(",)", ++start);
    const ui32_t bit = BitOf(std::string_view(configuration).substr(start, end - start));
    if (bit <= mask) break;  // none, or one before the highest so far
    mask |= bit;
    start = end;
  }
  return mask;
}

}  // namespace Tool
