// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/TrackFileReader.h>

namespace QUIRE::PCM {

/// Reads PCM sound track files (ST 382, ST 429-3).
class QUIRE_API MXFReader : public TrackFileReader {
 public:
  MXFReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillAudioDescriptor(AudioDescriptor& descriptor) const;

  /// Reads one edit unit, with one positioned read, into `frame`.
  /// @param frame_number  edit units from the start of the track file, below the container duration.
  /// @param decryption    with it, encrypted essence is delivered in clear; without, as it is stored.
  /// @param integrity     with it and `decryption`, the integrity code of encrypted essence is verified.
  /// @return RESULT_OK; RESULT_INIT when no file is open; RESULT_RANGE beyond the end; RESULT_SMALLBUF, with `frame`
  /// unchanged, when the frame exceeds its capacity; RESULT_CHECKFAIL for a wrong key; RESULT_HMACFAIL for an altered
  /// frame; RESULT_FORMAT where the file is broken; RESULT_READFAIL. After a failure other than the first three and
  /// RESULT_SMALLBUF, `frame` holds no frame.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption = nullptr,
                                   HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::PCM
