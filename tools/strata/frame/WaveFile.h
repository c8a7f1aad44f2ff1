// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/FileWriter.h>
#include <Ferro/Types.h>

#include <span>
#include <string>

namespace Tool {

struct SoundFormat;

/// Writes integer PCM as a WAVE file: RIFF, or RF64 (ITU-R BS.2088) beyond 4 GiB. The file stands under its name when
/// Finish has returned. Every call throws CommandError where the file cannot be written.
class WaveFile {
 public:
  WaveFile(const std::string& filename, const SoundFormat& format);

  /// Adds interleaved little-endian samples.
  void Write(std::span<const Ferro::ui8_t> samples);
  void Finish();

 private:
  void Check(const Ferro::Result_t& result) const;
  [[nodiscard]] std::string Header() const;

  std::string m_Filename;
  Ferro::ui32_t m_SampleRate;
  Ferro::ui32_t m_Bits;
  Ferro::ui32_t m_Channels;
  Ferro::ui32_t m_SpeakerMask;
  Ferro::ui64_t m_Length = 0;  // bytes of samples
  Ferro::FileWriter m_File;
};

/// Which loudspeakers the channels of "51(L,R,C,LFE,Ls,Rs)" belong to, as dwChannelMask of WAVEFORMATEXTENSIBLE has it. Its
/// bits name channels in a fixed order, so that the first channel that is out of it, or has no bit, and all that follow
/// have no loudspeaker.
[[nodiscard]] Ferro::ui32_t SpeakerMask(const std::string& configuration);

}  // namespace Tool
