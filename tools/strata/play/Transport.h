// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Command.h>
#include <Strata/IPlaylist.h>

#include <optional>
#include <string>

namespace Tool {

/// The state of a transport over one playlist: whether it plays, which way and how fast. It moves; reading frames and
/// keeping time are others' work. A show stops by itself at its ends.
class Transport {
 public:
  explicit Transport(Strata::IPlaylist& playlist) : m_Playlist(playlist) {}

  /// Does what a command asks for.
  void Execute(const Strata::Command& command);
  /// Moves by edit units, or to the nearest end.
  void Jump(Ferro::i64_t edit_units);
  void TogglePause();

  /// Where the next step leads; no value when it stands, or the show ends here.
  [[nodiscard]] std::optional<Ferro::ui32_t> NextPosition() const;
  /// Goes there; at an end it stands still. False when it did.
  bool Advance();

  [[nodiscard]] bool IsMoving() const { return m_Moving; }
  [[nodiscard]] bool IsStopped() const { return m_Stopped; }
  [[nodiscard]] Strata::CommandType_t LastCommand() const { return m_Last; }
  /// "play", "reverse", "shuttle 4x", "pause", "stop".
  [[nodiscard]] std::string StateText() const;

 private:
  Strata::IPlaylist& m_Playlist;
  bool m_Moving = false;
  bool m_Stopped = false;
  Strata::Direction_t m_Direction = Strata::DIR_FORWARD;
  Ferro::ui32_t m_Rate = 1;  // edit units per step
  Strata::CommandType_t m_Last = Strata::CMD_NONE;
};

}  // namespace Tool
