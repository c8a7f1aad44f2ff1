// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DisplayText.h"
#include "ExitCode.h"

#include <Ferro/Result.h>

#include <stdexcept>
#include <string>

/// Ends a command: the message is for the user, the exit code for scripts.
class CommandError : public std::runtime_error {
 public:
  CommandError(ExitCode code, const std::string& message) : std::runtime_error(DisplayLines(message)), m_Code(code) {}
  [[nodiscard]] ExitCode Code() const { return m_Code; }

 private:
  ExitCode m_Code;
};

/// Thrown when the user stopped the work.
struct CommandStopped {};

/// Throws CommandError, with the reason, where writing `filename` failed.
void CheckWritten(const std::string& filename, const Ferro::Result_t& result);
