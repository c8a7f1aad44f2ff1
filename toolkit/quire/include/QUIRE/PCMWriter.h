// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/MCALabel.h>
#include <QUIRE/SampleCadence.h>
#include <QUIRE/TrackFileWriter.h>

#include <optional>
#include <vector>

namespace QUIRE::PCM {

/// Writes PCM sound track files (ST 382, ST 429-3). Edit units of equal size take an index of constant size; where the
/// rates do not divide evenly the edit units follow SampleCadence and are indexed one by one.
class QUIRE_API MXFWriter : public TrackFileWriter {
 public:
  /// Creates the file. The container duration is counted; average bytes per second are computed where the descriptor says
  /// 0. The channel format becomes the channel-configuration label (CF_NONE: none); `labels` become the sub-descriptors.
  /// RESULT_PARAM also when block align is not channels times whole bytes per sample, there is no SampleCadence for the
  /// rates, or a label refers to a place in the list where no fitting group is.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename, const WriterInfo& info,
                                   const AudioDescriptor& descriptor, const MCALabelList& labels = {},
                                   const WriterOptions& options = {});
  /// Writes one edit unit: as many samples as the cadence says. One with fewer is filled up with silence and is the last;
  /// RESULT_PARAM for any other size, RESULT_STATE after the last.
  [[nodiscard]] Result_t WriteFrame(const FrameBuffer& frame, AESEncContext* encryption = nullptr,
                                    HMACContext* integrity = nullptr);

 private:
  std::optional<SampleCadence> m_Cadence;
  ui32_t m_BlockAlign = 0;
  bool m_HasShortFrame = false;
};

}  // namespace QUIRE::PCM
