// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <Ferro/FileReader.h>
#include <Ferro/FunctionRef.h>
#include <Ferro/SHA1Digest.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Assay {

/// Reads a file front to back, once, for its digest and for those who look at pieces of it. What is read goes through the
/// digest while it is in the processor's cache. One thread.
class FileScan {
 public:
  /// The longest piece, in bytes.
  static constexpr size_t MaxPiece = 16 * 1024 * 1024;
  /// Receives how many bytes of the file have gone by; false ends the scan.
  using OnBytes = Ferro::FunctionRef<bool(ui64_t)>;

  /// @param progress  must live as long as the scan.
  FileScan(bool with_digest, OnBytes progress);

  /// As Ferro::FileReader::OpenRead.
  [[nodiscard]] Ferro::Result_t Open(const std::string& path);
  [[nodiscard]] ui64_t Size() const { return m_File.Size(); }

  /// Bytes of the file, at most MaxPiece; valid until the next call. What lies before them and was not read yet goes through
  /// the digest first; what went by already is read again, and counts in ReadAgain.
  /// @return RESULT_OK; RESULT_CANCELLED; as Ferro::FileReader::ReadAt.
  [[nodiscard]] Ferro::Result_t Take(ui64_t offset, size_t length, std::span<const ui8_t>& bytes);
  /// Reads the rest and ends the digest. @return RESULT_OK; RESULT_CANCELLED; RESULT_ALLOC; as ReadAt.
  [[nodiscard]] Ferro::Result_t Finish(SHA1& digest);
  /// Bytes that were read a second time.
  [[nodiscard]] ui64_t ReadAgain() const { return m_ReadAgain; }

 private:
  [[nodiscard]] Ferro::Result_t Pass(size_t at, size_t length);
  [[nodiscard]] Ferro::Result_t PassUpTo(ui64_t offset);
  [[nodiscard]] bool Report(ui64_t bytes) const { return !m_Progress || m_Progress(bytes); }

  Ferro::FileReader m_File;
  std::optional<Ferro::SHA1Digest> m_Digest;
  OnBytes m_Progress;
  std::vector<ui8_t> m_Buffer;
  ui64_t m_Passed = 0;  // bytes that went through the digest, or before which all that was wanted was read
  ui64_t m_ReadAgain = 0;
};

}  // namespace Assay
