// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AtmosDescriptor.h>
#include <QUIRE/TrackFileReader.h>

namespace QUIRE::ATMOS {

/// Reads immersive-audio track files (ST 429-18).
class QUIRE_API MXFReader : public TrackFileReader {
 public:
  MXFReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillAtmosDescriptor(AtmosDescriptor& descriptor) const;

  /// Reads one edit unit, with one positioned read, into `frame`.
  /// Parameters and results are those of TrackFileReader.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, DCData::FrameBuffer& frame, AESDecContext* decryption = nullptr,
                                   HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::ATMOS
