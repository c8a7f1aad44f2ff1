// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DisplayText.h"
#include "ExitCode.h"

#include <Ferro/Result.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace Tool {

/// Ends a command: the message is for the user, the exit code for scripts.
class CommandError : public std::runtime_error {
 public:
  CommandError(ExitCode code, const std::string& message) : std::runtime_error(DisplayLines(message)), m_Code(code) {}
  [[nodiscard]] ExitCode Code() const { return m_Code; }

 private:
  ExitCode m_Code;
};

/// Thrown when the user stopped the work. `LeftBehind` is told behind "interrupted".
struct CommandStopped {
  const char* LeftBehind = "; nothing was left behind";
};

/// Throws CommandError with the problem where writing `filename` failed. `reason` is the system's, as
/// FileWriter::FailureReason has it.
void CheckWritten(const std::string& filename, const Ferro::Result_t& result, const std::string& reason);
/// Writes a whole file, which is complete or as it was before. Returns why it cannot be written, without its name: "this
/// file cannot be written: No space left on device". Empty: it is written.
[[nodiscard]] std::string TryToWriteFile(const std::string& filename, std::string_view content);
/// The same with the name before the problem.
[[nodiscard]] std::string WriteWholeFile(const std::string& filename, std::string_view content);

}  // namespace Tool
