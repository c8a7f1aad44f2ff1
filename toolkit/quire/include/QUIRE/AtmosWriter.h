// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AtmosDescriptor.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/TrackFileWriter.h>

namespace QUIRE::ATMOS {

/// Writes immersive audio track files (ST 429-18).
class QUIRE_API MXFWriter : public TrackFileWriter {
 public:
  /// Creates the file. The container duration is counted; the asset UUID is the writer information's; a data essence
  /// coding without value becomes that of immersive audio.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename, const WriterInfo& info,
                                   const AtmosDescriptor& descriptor, const WriterOptions& options = {});
  /// Writes one edit unit: one bitstream frame (ST 2098-2), whose bytes are not looked at.
  [[nodiscard]] Result_t WriteFrame(const DCData::FrameBuffer& frame, AESEncContext* encryption = nullptr,
                                    HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::ATMOS
