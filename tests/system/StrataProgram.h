// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TemporaryFolder.h"

#include <sys/types.h>

#include <string>
#include <vector>

/// A run of the built program, with standard input from a text and both outputs captured; or standard output into a
/// device. `runner` is a program, with its arguments, to run it through.
class StrataProgram {
 public:
  explicit StrataProgram(const std::vector<std::string>& arguments, const std::string& input = "",
                         const std::string& output_device = "", const std::vector<std::string>& runner = {});
  ~StrataProgram();
  StrataProgram(const StrataProgram&) = delete;
  StrataProgram& operator=(const StrataProgram&) = delete;

  /// Waits until standard output holds `text`; false when it has not come after ten seconds.
  bool WaitForOutput(const std::string& text);
  void Signal(int number) const;
  /// Waits for its end. The exit code; 128 and the number of the signal that ended it.
  int Wait();

  [[nodiscard]] pid_t Process() const { return m_Process; }
  [[nodiscard]] std::string Output() const;
  [[nodiscard]] std::string Errors() const;

 private:
  testsupport::TemporaryFolder m_Folder;
  pid_t m_Process = -1;
};
