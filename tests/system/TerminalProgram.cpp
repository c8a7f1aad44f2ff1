// SPDX-License-Identifier: BSD-3-Clause
#include "TerminalProgram.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>

TerminalProgram::TerminalProgram(const std::vector<std::string>& arguments, unsigned short columns,
                                 bool shows_colours) {
  std::vector<std::string> words = {STRATA_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  winsize size = {24, columns, 0, 0};
  m_Process = forkpty(&m_Terminal, nullptr, nullptr, &size);
  if (m_Process == 0) {
    if (!shows_colours) setenv("NO_COLOR", "1", 1);
    execv(STRATA_PROGRAM, argv.data());
    _exit(127);
  }
  EXPECT_GT(m_Process, 0) << "no pseudo terminal";
}

TerminalProgram::~TerminalProgram() {
  if (m_Process > 0) {
    kill(m_Process, SIGKILL);
    waitpid(m_Process, nullptr, 0);
  }
  if (m_Terminal >= 0) close(m_Terminal);
}

void TerminalProgram::Type(const std::string& keys) const {
  EXPECT_EQ(write(m_Terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

void TerminalProgram::Signal(int number) const {
  EXPECT_EQ(kill(m_Process, number), 0);
}

bool TerminalProgram::Echoes() const {
  termios settings = {};
  EXPECT_EQ(tcgetattr(m_Terminal, &settings), 0);
  return (settings.c_lflag & ECHO) != 0;
}

// At the program's end the terminal answers with an error.
bool TerminalProgram::ReadMore(int milliseconds) {
  pollfd terminal{m_Terminal, POLLIN, 0};
  if (poll(&terminal, 1, milliseconds) <= 0) return true;
  std::array<char, 4096> bytes{};
  const ssize_t count = read(m_Terminal, bytes.data(), bytes.size());
  if (count > 0) m_Screen.append(bytes.data(), static_cast<size_t>(count));
  return count > 0;
}

bool TerminalProgram::WaitFor(const std::string& text) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  for (bool goes_on = true;;) {
    const size_t at = m_Screen.find(text, m_Found);
    if (at != std::string::npos) {
      m_Found = at + text.size();
      return true;
    }
    if (!goes_on || std::chrono::steady_clock::now() > end) return false;
    goes_on = ReadMore(100);
  }
}

int TerminalProgram::Wait() {
  while (ReadMore(100)) {
  }
  int status = 0;
  if (m_Process <= 0 || waitpid(m_Process, &status, 0) != m_Process) return -1;
  m_Process = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
