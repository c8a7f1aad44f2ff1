// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/Export.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/Result.h>
#include <QUIRE/SampleCadence.h>

#include <Ferro/FileReader.h>

#include <optional>
#include <string>

namespace QUIRE::PCM {

/// Reads PCM sound from a WAVE file (RIFF, and RF64 or BW64 of ITU-R BS.2088 past 4 GiB) in edit units, as they go into a
/// track file. Integer samples of 16 to 32 bits, 1 to 64 channels. One thread at a time.
class QUIRE_API WAVReader {
 public:
  /// Opens the file and reads its format. A data chunk that claims more than the file holds, as recorders leave it, ends
  /// with the file.
  /// @param edit_rate  edit units per second.
  /// @return RESULT_OK; what Ferro::FileReader::OpenRead returns; RESULT_RAW_ESS when it is no WAVE file;
  /// RESULT_RAW_FORMAT when it is malformed or its samples are of another kind; RESULT_PARAM when there is
  /// no SampleCadence for the rates. After a failure nothing is open.
  [[nodiscard]] Result_t OpenRead(const std::string& filename, const Rational& edit_rate);
  void Close();

  /// Rates, channels, sample size and duration; a last edit unit that is not full counts. Channel format none.
  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillAudioDescriptor(AudioDescriptor& descriptor) const;

  /// Samples of each channel; 0 when no file is open. What they lack to whole edit units ReadFrame fills up.
  [[nodiscard]] ui64_t SampleCount() const {
    return m_Descriptor.BlockAlign == 0 ? 0 : m_DataLength / m_Descriptor.BlockAlign;
  }
  /// Reads one edit unit, filled up with silence at the end of the file.
  /// @return RESULT_OK; RESULT_INIT when no file is open; RESULT_RANGE beyond the end; RESULT_SMALLBUF when the frame
  /// exceeds the capacity; RESULT_READFAIL.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, FrameBuffer& frame) const;

 private:
  struct Chunk;
  [[nodiscard]] Result_t ReadChunks();
  [[nodiscard]] Result_t ReadFormat(const Chunk& chunk);
  [[nodiscard]] Result_t FindDuration();

  Ferro::FileReader m_File;
  AudioDescriptor m_Descriptor;
  std::optional<SampleCadence> m_Cadence;
  fsize_t m_DataStart = 0;
  ui64_t m_DataLength = 0;  // whole samples of all channels
};

}  // namespace QUIRE::PCM
