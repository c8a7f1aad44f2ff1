// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/DCDataDescriptor.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/TrackFileWriter.h>

namespace QUIRE::DCData {

/// Writes auxiliary data track files (ST 429-14).
class QUIRE_API MXFWriter : public TrackFileWriter {
 public:
  /// Creates the file. The container duration is counted; the asset UUID is the writer information's.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename, const WriterInfo& info,
                                   const DCDataDescriptor& descriptor, const WriterOptions& options = {});
  /// Writes one edit unit, whose bytes are not looked at.
  [[nodiscard]] Result_t WriteFrame(const FrameBuffer& frame, AESEncContext* encryption = nullptr,
                                    HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::DCData
