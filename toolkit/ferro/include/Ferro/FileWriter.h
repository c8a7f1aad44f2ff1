// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Result.h>
#include <Ferro/Types.h>

#include <span>
#include <string>
#include <string_view>

namespace Ferro {

/// Writes a file that is either complete under its name or not there: bytes go to a temporary name in the same folder,
/// Commit flushes and renames it, and destruction without Commit removes it. One thread at a time.
class FERRO_API FileWriter {
 public:
  FileWriter() = default;
  ~FileWriter();
  FileWriter(FileWriter&& other) noexcept;
  FileWriter& operator=(FileWriter&& other) noexcept;

  /// Begins a file. A regular file of that name stays until Commit, and the new one takes its permissions over; symbolic
  /// links are followed, and stay.
  /// @return RESULT_OK; RESULT_NULL_STR; RESULT_STATE when a file is open already; RESULT_NOT_FOUND when the folder is
  /// missing; RESULT_NOTAFILE when a folder, device or pipe stands under the name; RESULT_NO_PERM; RESULT_FILEOPEN.
  [[nodiscard]] Result_t OpenWrite(const std::string& filename);
  [[nodiscard]] bool IsOpen() const { return m_Descriptor >= 0; }
  /// Writes at the cursor and moves it behind the bytes. RESULT_WRITEFAIL on any error of the system (a full disk), after
  /// which Commit fails too; RESULT_INIT when not open.
  [[nodiscard]] Result_t Write(std::span<const ui8_t> bytes);
  [[nodiscard]] Result_t Write(std::string_view text);
  /// Overwrites bytes at `position`; the cursor stays.
  [[nodiscard]] Result_t WriteAt(fsize_t position, std::span<const ui8_t> bytes);
  /// Moves the cursor. Bytes written beyond the end leave a hole before them that reads as zeros. RESULT_BADSEEK beyond
  /// what a file can hold, RESULT_INIT when not open.
  [[nodiscard]] Result_t Seek(fsize_t position);
  [[nodiscard]] fsize_t Tell() const { return m_Position; }
  /// Completes the file under its name, replacing what stood there, and closes it. RESULT_WRITEFAIL removes what was
  /// written and leaves what stood there; RESULT_INIT when not open.
  [[nodiscard]] Result_t Commit();
  /// Removes what was written; nothing happens when no file is open.
  void Abandon();
  /// Why the system refused what failed since OpenWrite was called last, in its words: "No space left on device". Stays
  /// when the file is closed. Empty when nothing failed, or something that the system was not asked for.
  [[nodiscard]] std::string FailureReason() const;

 private:
  std::string m_Filename;
  std::string m_TemporaryName;
  int m_Descriptor = -1;
  fsize_t m_Position = 0;
  int m_Error = 0;  // errno of the first failure
};

}  // namespace Ferro
