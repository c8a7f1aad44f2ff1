// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/TrackFileReader.h>
#include <QUIRE/VideoDescriptor.h>

namespace QUIRE::MPEG2 {

/// Reads MPEG-2 picture track files (ST 381-1), pictures in stored order.
class QUIRE_API MXFReader : public TrackFileReader {
 public:
  MXFReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillVideoDescriptor(VideoDescriptor& descriptor) const;

  /// Reads one edit unit, with one positioned read, into `frame`.
  /// Parameters and results are those of TrackFileReader.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption = nullptr,
                                   HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::MPEG2
