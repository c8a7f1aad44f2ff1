// SPDX-License-Identifier: BSD-3-Clause
#include "Terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <string_view>

namespace Tool {

namespace {

termios s_Before;
volatile std::sig_atomic_t s_IsRaw = 0;

// What follows the escape character: of ECMA-48's CSI, and of SS3 where the terminal is in its application mode.
struct EscapeSequence {
  std::string_view Bytes;
  const char* Name;
};

constexpr std::array Arrows = {EscapeSequence{"[D", "left"},  EscapeSequence{"OD", "left"},
                               EscapeSequence{"[C", "right"}, EscapeSequence{"OC", "right"},
                               EscapeSequence{"[A", "up"},    EscapeSequence{"OA", "up"},
                               EscapeSequence{"[B", "down"},  EscapeSequence{"OB", "down"}};

constexpr char Escape = '\x1b';
constexpr size_t LongestSequence = 64;  // bytes; real ones are far shorter
// For the rest of a sequence to arrive. When it has not come by then, the user hit the escape key.
constexpr auto SequenceTimeout = std::chrono::milliseconds(50);

bool IsIn(char character, char first, char last) {
  return character >= first && character <= last;
}

/// Length of the escape sequence that `text` begins with: 1 for the escape key alone, 0 while the rest is to come.
size_t SequenceLength(std::string_view text) {
  if (text.size() < 2) return 0;
  if (text[1] == Escape) return 1;
  if (text[1] != '[' && text[1] != 'O') return 2;  // a key with Alt
  if (text.size() < 3) return 0;
  if (text[1] == 'O') return 3;
  if (text[2] == '[') return text.size() < 4 ? 0 : 4;  // function keys of the Linux console
  // CSI: parameters, intermediates, and a final byte.
  size_t end = 2;
  while (end < text.size() && end < LongestSequence && IsIn(text[end], ' ', '?')) ++end;
  if (end == text.size()) return 0;
  return IsIn(text[end], '@', '~') ? end + 1 : end;
}

}  // namespace

Terminal::Terminal() : m_IsTerminal(isatty(STDIN_FILENO) != 0) {
  if (!m_IsTerminal) return;
  tcgetattr(STDIN_FILENO, &s_Before);
  termios raw = s_Before;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  s_IsRaw = 1;
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
}

Terminal::~Terminal() {
  Restore();
}

void Terminal::Restore() {
  if (s_IsRaw) tcsetattr(STDIN_FILENO, TCSANOW, &s_Before);
  s_IsRaw = 0;
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
  m_ReadAt = std::chrono::steady_clock::now();
  return next();
}

std::optional<std::string> Terminal::NextKey() {
  const auto take = [this](size_t length) {
    std::string bytes = m_Pending.substr(0, length);
    m_Pending.erase(0, length);
    return bytes;
  };
  while (!m_Pending.empty()) {
    if (m_Pending.front() != Escape) return take(1);
    size_t length = SequenceLength(m_Pending);
    if (length == 0) {
      if (!m_AtEnd && std::chrono::steady_clock::now() - m_ReadAt < SequenceTimeout) return std::nullopt;
      length = m_Pending.size();
    }
    const std::string sequence = take(length).substr(1);
    if (sequence.empty()) return "escape";
    for (const EscapeSequence& arrow : Arrows)
      if (sequence == arrow.Bytes) return arrow.Name;
  }
  return std::nullopt;
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

}  // namespace Tool
