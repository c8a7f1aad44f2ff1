// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/FrameBuffer.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/TrackFileWriter.h>

namespace QUIRE::JP2K {

/// Writes JPEG 2000 picture track files (ST 429-4).
class QUIRE_API MXFWriter : public TrackFileWriter {
 public:
  /// Creates the file. ParseCodestream fills the descriptor from a codestream; the caller adds the edit rate. The
  /// container duration is counted, and a stereoscopic flag is RESULT_PARAM.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename, const WriterInfo& info,
                                   const PictureDescriptor& descriptor, const WriterOptions& options = {});
  /// Writes one edit unit: one codestream, whose bytes are not looked at.
  [[nodiscard]] Result_t WriteFrame(const FrameBuffer& frame, AESEncContext* encryption = nullptr,
                                    HMACContext* integrity = nullptr);
};

enum StereoscopicPhase_t : ui8_t { SP_LEFT = 0, SP_RIGHT = 1 };

/// Writes stereoscopic JPEG 2000 picture track files (ST 429-10).
class QUIRE_API MXFSWriter : public TrackFileWriter {
 public:
  /// As MXFWriter::OpenWrite. The edit rate counts pairs; a sample rate of 0/0 becomes twice the edit rate.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename, const WriterInfo& info,
                                   const PictureDescriptor& descriptor, const WriterOptions& options = {});
  /// Writes both eyes of one edit unit. RESULT_SPHASE when a single left eye was written before.
  [[nodiscard]] Result_t WriteFrame(const SFrameBuffer& frame, AESEncContext* encryption = nullptr,
                                    HMACContext* integrity = nullptr);
  /// Writes one eye; left and right take turns, left first. RESULT_SPHASE for the wrong one.
  [[nodiscard]] Result_t WriteFrame(const FrameBuffer& frame, StereoscopicPhase_t phase,
                                    AESEncContext* encryption = nullptr, HMACContext* integrity = nullptr);
  /// RESULT_SPHASE, with the file still open, when the last right eye is missing.
  [[nodiscard]] Result_t Finalize();

 private:
  StereoscopicPhase_t m_NextPhase = SP_LEFT;
};

}  // namespace QUIRE::JP2K
