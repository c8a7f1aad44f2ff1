// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Types.h>

#include <iosfwd>
#include <span>

namespace Ferro {

/// The result of an operation: a signed code, its symbol and the text a user reads.
///
/// Negative codes are failures, all others successes; RESULT_FALSE is a success whose answer is "no". Results are
/// compared by code alone. Every constant is constant-initialised, so code that runs before main() sees it complete.
/// A value type without ownership: the texts are string literals of the module that defines the code.
class [[nodiscard]] Result_t {
 public:
  /// `symbol` and `label` must outlive the result; string literals do.
  constexpr Result_t(i32_t value, const char* symbol, const char* label) noexcept
      : m_Value(value), m_Symbol(symbol), m_Label(label) {}

  [[nodiscard]] constexpr i32_t Value() const noexcept { return m_Value; }
  [[nodiscard]] constexpr const char* Symbol() const noexcept { return m_Symbol; }
  /// The message text; what a log line prints for the result.
  [[nodiscard]] constexpr const char* Label() const noexcept { return m_Label; }
  [[nodiscard]] constexpr bool Success() const noexcept { return m_Value >= 0; }
  [[nodiscard]] constexpr bool Failure() const noexcept { return m_Value < 0; }

  friend constexpr bool operator==(const Result_t& lhs, const Result_t& rhs) noexcept {
    return lhs.m_Value == rhs.m_Value;
  }

  /// Finds a registered result by its code, over the tables of all loaded modules.
  /// @return the result, or RESULT_UNKNOWN when no module registered the code. Any thread may call it.
  static FERRO_API Result_t Find(i32_t value) noexcept;

 private:
  i32_t m_Value;
  const char* m_Symbol;
  const char* m_Label;
};

/// Inserts symbol and code: "NOT_FOUND (-9)".
FERRO_API std::ostream& operator<<(std::ostream& stream, const Result_t& result);

/// Adds one module's table of results to the registry behind Result_t::Find. Construct it once per module, with static
/// storage duration, beside the table.
class FERRO_API ResultTable {
 public:
  /// `results` must outlive the process's use of Result_t::Find; a table with static storage duration does.
  explicit ResultTable(std::span<const Result_t> results) noexcept;
  ResultTable(const ResultTable&) = delete;
  ResultTable& operator=(const ResultTable&) = delete;

  /// All registered tables, newest first; null ends the chain.
  static const ResultTable* First() noexcept;
  [[nodiscard]] const ResultTable* Next() const noexcept { return m_Next; }
  [[nodiscard]] std::span<const Result_t> Results() const noexcept { return m_Results; }

 private:
  std::span<const Result_t> m_Results;
  const ResultTable* m_Next;
};

// The general results. Codes of this module are 1 to -99; QUIRE has -100 to -199, Cairn -200 to -299, Sigil -300 to
// -399, Assay -400 to -499, the engine -1000 to -1035.
inline constexpr Result_t RESULT_FALSE{1, "FALSE", "Successful, but the answer is no."};
inline constexpr Result_t RESULT_OK{0, "OK", "Success."};
inline constexpr Result_t RESULT_FAIL{-1, "FAIL", "An undefined error was detected."};
inline constexpr Result_t RESULT_PTR{-2, "PTR", "An unexpected null pointer was given."};
inline constexpr Result_t RESULT_NULL_STR{-3, "NULL_STR", "An unexpected empty string was given."};
inline constexpr Result_t RESULT_ALLOC{-4, "ALLOC", "Error allocating memory."};
inline constexpr Result_t RESULT_PARAM{-5, "PARAM", "Invalid parameter."};
inline constexpr Result_t RESULT_NOTIMPL{-6, "NOTIMPL", "Unimplemented feature."};
inline constexpr Result_t RESULT_SMALLBUF{-7, "SMALLBUF", "The given buffer is too small."};
inline constexpr Result_t RESULT_INIT{-8, "INIT", "The object is not yet initialized."};
inline constexpr Result_t RESULT_NOT_FOUND{-9, "NOT_FOUND", "The requested item was not found."};
inline constexpr Result_t RESULT_NO_PERM{-10, "NO_PERM", "Insufficient privilege to perform the operation."};
inline constexpr Result_t RESULT_STATE{-11, "STATE", "Object state error."};
inline constexpr Result_t RESULT_CONFIG{-12, "CONFIG", "Invalid configuration option detected."};
inline constexpr Result_t RESULT_FILEOPEN{-13, "FILEOPEN", "File open failure."};
inline constexpr Result_t RESULT_BADSEEK{-14, "BADSEEK", "An invalid file location was requested."};
inline constexpr Result_t RESULT_READFAIL{-15, "READFAIL", "File read error."};
inline constexpr Result_t RESULT_WRITEFAIL{-16, "WRITEFAIL", "File write error."};
inline constexpr Result_t RESULT_ENDOFFILE{-17, "ENDOFFILE", "Attempt to read past end of file."};
inline constexpr Result_t RESULT_FILEEXISTS{-18, "FILEEXISTS", "Filename already exists."};
inline constexpr Result_t RESULT_NOTAFILE{-19, "NOTAFILE", "Filename is not a regular file."};
inline constexpr Result_t RESULT_TOOLARGE{-20, "TOOLARGE", "The data is larger than the limit set for it."};
inline constexpr Result_t RESULT_CANCELLED{-21, "CANCELLED", "The operation was cancelled."};
inline constexpr Result_t RESULT_UNKNOWN{-99, "UNKNOWN", "Unknown result code."};

}  // namespace Ferro
