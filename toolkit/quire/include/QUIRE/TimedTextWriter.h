// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/FrameBuffer.h>
#include <QUIRE/TimedTextDescriptor.h>
#include <QUIRE/TrackFileWriter.h>

#include <string>
#include <vector>

namespace QUIRE::TimedText {

/// Writes timed-text track files (ST 429-5): the document first, then each font and image in a partition of its own.
class QUIRE_API MXFWriter : public TrackFileWriter {
 public:
  /// Creates the file. The descriptor's resource list names all resources that will follow, each once; its container
  /// duration is the display time. An empty encoding name becomes "UTF-8". RESULT_PARAM also for an asset ID without
  /// value, a resource named twice, and for Interop labels, which have no such files.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename, const WriterInfo& info,
                                   const TimedTextDescriptor& descriptor, const WriterOptions& options = {});
  /// Writes the document's XML text. RESULT_STATE when it was written before.
  [[nodiscard]] Result_t WriteTimedTextResource(const std::string& text, AESEncContext* encryption = nullptr,
                                                HMACContext* integrity = nullptr);
  /// Writes one resource, told by the buffer's asset ID. RESULT_NOT_FOUND when the descriptor does not name it;
  /// RESULT_STATE before the document or when it was written before.
  [[nodiscard]] Result_t WriteAncillaryResource(const FrameBuffer& frame, AESEncContext* encryption = nullptr,
                                                HMACContext* integrity = nullptr);
  /// RESULT_STATE, with the file still open, when the document or a resource is missing.
  [[nodiscard]] Result_t Finalize();

 private:
  TimedTextDescriptor m_Descriptor;
  std::vector<bool> m_Written;  // by place in the resource list
};

}  // namespace QUIRE::TimedText
