// SPDX-License-Identifier: BSD-3-Clause
#include "Transport.h"

#include <algorithm>

namespace Tool {

using namespace Strata;

void Transport::Execute(const Command& command) {
  m_Last = command.type;
  switch (command.type) {
    case CMD_PLAY:
      m_Moving = true;
      m_Stopped = false;
      m_Direction = command.direction;
      m_Rate = 1;
      break;
    case CMD_SHUTTLE:
      m_Moving = command.rate != 0;
      m_Stopped = false;
      m_Rate = std::max<Ferro::ui32_t>(1, command.rate);
      break;
    case CMD_LOCATE:
      m_Playlist.MoveToEditUnit(command.position);
      break;
    case CMD_JOG:
      m_Moving = false;
      Jump(command.direction == DIR_REVERSE ? -1 : 1);
      break;
    case CMD_PAUSE:
      m_Moving = false;
      break;
    case CMD_STOP:
      m_Moving = false;
      m_Stopped = true;
      break;
    default:
      break;
  }
}

void Transport::Jump(Ferro::i64_t edit_units) {
  if (edit_units < 0)
    m_Playlist.MoveBackward(static_cast<Ferro::ui32_t>(-edit_units));
  else
    m_Playlist.MoveForward(static_cast<Ferro::ui32_t>(edit_units));
}

void Transport::TogglePause() {
  m_Moving = !m_Moving;
  m_Last = m_Moving ? CMD_PLAY : CMD_PAUSE;
}

std::optional<Ferro::ui32_t> Transport::NextPosition() const {
  if (!m_Moving) return std::nullopt;
  const Ferro::ui32_t position = m_Playlist.GetPosition();
  const Ferro::ui32_t left = m_Direction == DIR_REVERSE
                                 ? position
                                 : m_Playlist.GetDuration() - 1 - std::min(position, m_Playlist.GetDuration() - 1);
  if (left == 0) return std::nullopt;
  const Ferro::ui32_t step = std::min(m_Rate, left);
  return m_Direction == DIR_REVERSE ? position - step : position + step;
}

bool Transport::Advance() {
  const auto next = NextPosition();
  if (!next) {
    m_Moving = false;
    return false;
  }
  m_Playlist.MoveToEditUnit(*next);
  return true;
}

std::string Transport::StateText() const {
  if (m_Stopped) return "stop";
  if (!m_Moving) return "pause";
  const std::string way = m_Direction == DIR_REVERSE ? "reverse" : "play";
  return m_Rate == 1 ? way
                     : "shuttle " + std::string(m_Direction == DIR_REVERSE ? "-" : "") + std::to_string(m_Rate) + "x";
}

}  // namespace Tool
