// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace Tool {

/// The user's keys and lines. On a terminal keys come singly and unechoed until this is destroyed; otherwise lines are
/// read. At most one at a time.
class Terminal {
 public:
  Terminal();
  ~Terminal();
  /// Gives the terminal back as it was found; a signal handler may call it. The destructor does so too.
  static void Restore();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// How wide the terminal behind a descriptor is; 80 where that is not known.
  [[nodiscard]] static unsigned Columns(int descriptor);

  [[nodiscard]] bool IsTerminal() const { return m_IsTerminal; }
  /// True when no more input will come.
  [[nodiscard]] bool AtEnd() const { return m_AtEnd; }

  /// Waits for input until `limit` has passed. On a terminal answers one key: a character, or "left", "right", "up",
  /// "down", "escape", while other keys that send a sequence of characters are passed over; otherwise one line without
  /// its end. No value when nothing came, or a signal did.
  [[nodiscard]] std::optional<std::string> Read(std::chrono::duration<double> limit);

 private:
  [[nodiscard]] std::optional<std::string> NextKey();
  [[nodiscard]] std::optional<std::string> NextLine();

  const bool m_IsTerminal;
  bool m_AtEnd = false;
  std::string m_Pending;  // read, but not yet answered
  std::chrono::steady_clock::time_point m_ReadAt;
};

}  // namespace Tool
