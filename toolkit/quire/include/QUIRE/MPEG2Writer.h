// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/FrameBuffer.h>
#include <QUIRE/TrackFileWriter.h>
#include <QUIRE/VideoDescriptor.h>

#include <vector>

namespace QUIRE::MPEG2 {

/// Writes MPEG-2 picture track files (ST 381-1), as Interop packages have them. The index (ST 377-1, 11.2) carries the
/// picture types, the distance to the last intra picture (128 at most), and from display to stored order.
class QUIRE_API MXFWriter : public TrackFileWriter {
 public:
  /// Creates the file. ParseSequence fills the descriptor from the stream; the container duration is counted.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename, const WriterInfo& info,
                                   const VideoDescriptor& descriptor, const WriterOptions& options = {});
  /// Writes one access unit, in stored order (FindAccessUnit). RESULT_RAW_FORMAT when it holds no picture; the frame
  /// buffer's own index flags and temporal offset are not used.
  [[nodiscard]] Result_t WriteFrame(const FrameBuffer& frame, AESEncContext* encryption = nullptr,
                                    HMACContext* integrity = nullptr);
  [[nodiscard]] Result_t Finalize();

 private:
  ui32_t m_GroupStart = 0;                 // stored position of the current group's first picture
  ui32_t m_LastIntra = 0;                  // stored position
  std::vector<ui32_t> m_DisplayPositions;  // by stored position
};

}  // namespace QUIRE::MPEG2
