// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

/// A run of the built program on a pseudo terminal, with a person's hands: it is typed to, and read from.
class TerminalProgram {
 public:
  explicit TerminalProgram(const std::vector<std::string>& arguments, unsigned short columns = 200,
                           bool shows_colours = false);
  ~TerminalProgram();
  TerminalProgram(const TerminalProgram&) = delete;
  TerminalProgram& operator=(const TerminalProgram&) = delete;

  void Type(const std::string& keys) const;
  void Signal(int number) const;
  /// Waits until `text` appears on the screen after what the last call found; false when it has not come after half a
  /// minute, or the program has ended without it.
  bool WaitFor(const std::string& text);
  /// Waits for the program's end, reading on. The exit code; 128 and the number of the signal that ended it.
  int Wait();
  /// Whether the terminal shows what is typed, as a shell expects; a program that reads single keys turns it off.
  [[nodiscard]] bool Echoes() const;
  /// All that was written to the screen so far, control sequences included.
  [[nodiscard]] const std::string& Screen() const { return m_Screen; }

 private:
  bool ReadMore(int milliseconds);

  pid_t m_Process = -1;
  int m_Terminal = -1;
  std::string m_Screen;
  size_t m_Found = 0;  // where what was waited for last ends
};
