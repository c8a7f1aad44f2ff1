// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/DCDataDescriptor.h>
#include <QUIRE/TrackFileReader.h>

namespace QUIRE::DCData {

/// Reads auxiliary-data track files (ST 429-14), immersive audio included.
class QUIRE_API MXFReader : public TrackFileReader {
 public:
  MXFReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillDCDataDescriptor(DCDataDescriptor& descriptor) const;

  /// Reads one edit unit, with one positioned read, into `frame`.
  /// Parameters and results are those of TrackFileReader.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption = nullptr,
                                   HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::DCData
