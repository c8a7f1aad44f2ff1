// SPDX-License-Identifier: BSD-3-Clause
#include "Terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace {

termios s_Before;

struct EscapeSequence {
  const char* Bytes;
  const char* Name;
};

constexpr std::array Arrows = {EscapeSequence{"\x1b[D", "left"}, EscapeSequence{"\x1b[C", "right"},
                               EscapeSequence{"\x1b[A", "up"}, EscapeSequence{"\x1b[B", "down"}};

}  // namespace

Terminal::Terminal() : m_IsTerminal(isatty(STDIN_FILENO) != 0) {
  if (!m_IsTerminal) return;
  tcgetattr(STDIN_FILENO, &s_Before);
  termios raw = s_Before;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
}

Terminal::~Terminal() {
  if (m_IsTerminal) tcsetattr(STDIN_FILENO, TCSANOW, &s_Before);
}

unsigned Terminal::Columns(int descriptor) {
  winsize size = {};
  return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::optional<std::string> Terminal::Read(std::chrono::duration<double> limit) {
  const auto next = [&] { return m_IsTerminal ? NextKey() : NextLine(); };
  if (auto input = next()) return input;
  const int milliseconds = static_cast<int>(std::clamp(limit.count() * 1000, 0.0, 1e6));
  pollfd input{STDIN_FILENO, POLLIN, 0};
  if (m_AtEnd) {
    poll(nullptr, 0, milliseconds);
    return std::nullopt;
  }
  if (poll(&input, 1, milliseconds) <= 0) return std::nullopt;
  std::array<char, 512> bytes{};
  const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
  if (count <= 0) m_AtEnd = true;
  if (count > 0) m_Pending.append(bytes.data(), static_cast<size_t>(count));
  return next();
}

std::optional<std::string> Terminal::NextKey() {
  if (m_Pending.empty()) return std::nullopt;
  for (const EscapeSequence& arrow : Arrows)
    if (m_Pending.starts_with(arrow.Bytes)) {
      m_Pending.erase(0, 3);
      return arrow.Name;
    }
  std::string key = m_Pending.substr(0, 1);
  m_Pending.erase(0, 1);
  return key == "\x1b" ? "escape" : key;
}

std::optional<std::string> Terminal::NextLine() {
  size_t end = m_Pending.find('\n');
  if (end == std::string::npos) {
    if (!m_AtEnd || m_Pending.empty()) return std::nullopt;
    end = m_Pending.size();
  }
  std::string line = m_Pending.substr(0, end);
  m_Pending.erase(0, end + 1);
  return line;
}
