// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/TimedTextDescriptor.h>
#include <QUIRE/TrackFileReader.h>

#include <string>

namespace QUIRE::TimedText {

/// Reads timed-text track files (ST 429-5): the document, and each font or image that goes with it.
///
/// The capacity of the buffers given is only a hint: a reader makes them as large as the document or resource is, which
/// is never more than the file's size. Parameters and results beyond those named below are those of the other kinds'
/// ReadFrame; RESULT_SMALLBUF does not occur, RESULT_ALLOC may.
class QUIRE_API MXFReader : public TrackFileReader {
 public:
  MXFReader();

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillTimedTextDescriptor(TimedTextDescriptor& descriptor) const;

  /// Reads the document as it is stored, encrypted or not.
  [[nodiscard]] Result_t ReadTimedTextResource(FrameBuffer& frame, AESDecContext* decryption = nullptr,
                                               HMACContext* integrity = nullptr);
  /// Reads the document's text. An encrypted document needs `decryption`: RESULT_DECRYPT_CTX without it.
  [[nodiscard]] Result_t ReadTimedTextResource(std::string& text, AESDecContext* decryption = nullptr,
                                               HMACContext* integrity = nullptr);
  /// Reads a resource by its identifier, one of the descriptor's resource list. RESULT_NOT_FOUND for any other.
  [[nodiscard]] Result_t ReadAncillaryResource(const Ferro::UUID& id, FrameBuffer& frame,
                                               AESDecContext* decryption = nullptr, HMACContext* integrity = nullptr);
};

}  // namespace QUIRE::TimedText
