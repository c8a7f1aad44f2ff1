// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/TrackFileReader.h>

namespace QUIRE::JP2K {

/// Reads JPEG 2000 picture track files (ST 429-4). Of a stereoscopic file it delivers the left eye.
class QUIRE_API MXFReader : public TrackFileReader {
 public:
  MXFReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillPictureDescriptor(PictureDescriptor& descriptor) const;

  /// Reads one edit unit, with one positioned read, into `frame`.
  /// Parameters and results are those of TrackFileReader.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption = nullptr,
                                   HMACContext* integrity = nullptr);
};

/// Reads stereoscopic JPEG 2000 picture track files (ST 429-10), and flat ones as two equal eyes.
class QUIRE_API MXFSReader : public TrackFileReader {
 public:
  MXFSReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillPictureDescriptor(PictureDescriptor& descriptor) const;

  /// Reads both eyes of one edit unit; one that holds a single codestream is delivered in both. Parameters and results
  /// are those of MXFReader::ReadFrame, for each eye; after a failure other than RESULT_INIT and RESULT_RANGE neither eye
  /// holds a frame, RESULT_SMALLBUF excepted, which leaves the eye that is too small unchanged.
  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, SFrameBuffer& frame, AESDecContext* decryption = nullptr,
                                   HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::JP2K
