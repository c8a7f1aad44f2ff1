// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Result.h>
#include <Ferro/Types.h>

#include <span>
#include <string>

namespace Ferro {

/// A file opened for reading by position: ReadAt moves no shared cursor, so any number of threads may read one open
/// reader at once (pread of POSIX.1-2008). Opening and closing belong to the owner. Never writes.
class FERRO_API FileReader {
 public:
  FileReader() = default;
  ~FileReader();
  FileReader(FileReader&& other) noexcept;
  FileReader& operator=(FileReader&& other) noexcept;

  /// Opens a regular file; one that is open already is closed first.
  /// @return RESULT_OK; RESULT_NULL_STR for an empty name; RESULT_NOT_FOUND, RESULT_NO_PERM, RESULT_NOTAFILE (folders,
  /// devices, pipes), or RESULT_FILEOPEN for any other reason.
  [[nodiscard]] Result_t OpenRead(const std::string& filename);
  void Close();
  [[nodiscard]] bool IsOpen() const { return m_Descriptor >= 0; }
  [[nodiscard]] const std::string& Filename() const { return m_Filename; }
  /// Size in bytes when the file was opened.
  [[nodiscard]] fsize_t Size() const { return m_Size; }

  /// Fills `out` with the bytes from `position` on.
  /// @return RESULT_OK when all bytes were read; RESULT_ENDOFFILE when the file ends before (`out` is then unspecified);
  /// RESULT_READFAIL on an error of the system; RESULT_INIT when no file is open.
  [[nodiscard]] Result_t ReadAt(fsize_t position, std::span<ui8_t> out) const;
  /// Fills the parts, at most 16, one after another with the consecutive bytes from `position` on, in one request to the
  /// system. Results are those of ReadAt; RESULT_PARAM for more parts.
  [[nodiscard]] Result_t ReadPartsAt(fsize_t position, std::span<const std::span<ui8_t>> parts) const;
  /// Reads as many bytes as there are, at most out.size(); `count` receives how many. RESULT_OK also for none.
  [[nodiscard]] Result_t ReadUpTo(fsize_t position, std::span<ui8_t> out, size_t& count) const;
  /// Tells the system that the file will be read front to back.
  void AdviseSequential() const;

 private:
  std::string m_Filename;
  int m_Descriptor = -1;
  fsize_t m_Size = 0;
};

}  // namespace Ferro
