// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Contents.h>
#include <Assay/Figures.h>
#include <Assay/Finding.h>

#include <Ferro/MemIO.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Assay {

/// What a file was when it was looked at: it counts as the same as long as this is.
struct FileState {
  ui64_t Size = 0;     ///< bytes
  i64_t Modified = 0;  ///< nanoseconds, of the system's clock for files
  friend bool operator==(const FileState&, const FileState&) = default;
};

/// What is kept of a file.
struct KeptFile {
  FileState State;
  DepthSet LookedAt;
  SHA1 Digest;
  FindingList Findings;  ///< of their places, edit unit, rate and channel alone
  std::optional<FileFigures> Figures;
  bool IsAskedFor = false;  ///< by this check; not stored
};

/// How kept results are stored:
///
///   "ASSAYKPT", number of this form, digest of the table of findings          a file with others is not taken
///   count { path, state, depths, digest, findings, figures }
///   SHA-1 of all of that
///
/// Numbers are big-endian; texts and lists are preceded by a count of 32 bits; what may be missing by a byte, 0 or 1.
namespace KeptForm {

class Writer {
 public:
  void WriteHead();
  void Write(ui8_t value) { Number(value, 1); }
  void Write(ui32_t value) { Number(value, 4); }
  void Write(ui64_t value) { Number(value, 8); }
  void Write(double value);
  void Write(const std::string& text);
  void Write(const KeptFile& file);
  /// All of it, with its digest.
  [[nodiscard]] std::vector<ui8_t> Finish();

 private:
  void Number(ui64_t value, int size);
  void Write(const Finding& finding);
  void Write(const FileFigures& figures);
  void Write(const QUIRE::Rational& rate);

  std::vector<ui8_t> m_Bytes;
};

/// Reads any bytes: false where they are not as they should be.
class Reader {
 public:
  explicit Reader(std::span<const ui8_t> bytes);
  /// Used, Damaged or Older.
  [[nodiscard]] KeptState ReadHead();
  [[nodiscard]] bool ReadCount(ui32_t& count);
  [[nodiscard]] bool Read(std::string& text);
  [[nodiscard]] bool Read(KeptFile& file);
  [[nodiscard]] bool IsAtEnd() const { return m_Input.Remainder() == 0; }

 private:
  [[nodiscard]] bool Read(double& value);
  [[nodiscard]] bool Read(QUIRE::Rational& rate);
  [[nodiscard]] bool Read(Finding& finding, size_t number);
  [[nodiscard]] bool ReadFindings(FindingList& findings);
  [[nodiscard]] bool Read(FileFigures& figures);
  [[nodiscard]] bool Read(PictureFigures& picture);
  [[nodiscard]] bool ReadFlag(bool& flag);

  std::span<const ui8_t> m_Bytes;
  Ferro::MemIOReader m_Input;
};

}  // namespace KeptForm
}  // namespace Assay
