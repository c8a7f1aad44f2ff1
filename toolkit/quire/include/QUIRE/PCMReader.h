// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/MCALabel.h>
#include <QUIRE/TrackFileReader.h>

namespace QUIRE::PCM {

/// Reads PCM sound track files (ST 382, ST 429-3).
class QUIRE_API MXFReader : public TrackFileReader {
 public:
  MXFReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillAudioDescriptor(AudioDescriptor& descriptor) const;

  /// The labels of channels and groups, in stored order; none in most files. A link to a group that is not there is left
  /// out.
  /// @param labels  unchanged on failure.
  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillMCALabels(MCALabelList& labels) const;

  /// Reads one edit unit, with one positioned read, into `frame`.
  /// Parameters and results are those of TrackFileReader.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption = nullptr,
                                   HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::PCM
