// SPDX-License-Identifier: BSD-3-Clause
#include "StrataProgram.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace {

std::string ContentsOf(const std::string& filename) {
  std::ostringstream text;
  text << std::ifstream(filename, std::ios::binary).rdbuf();
  return text.str();
}

}  // namespace

StrataProgram::StrataProgram(const std::vector<std::string>& arguments, const std::string& input,
                             const std::string& output_device, const std::vector<std::string>& runner) {
  const std::string output = output_device.empty() ? m_Folder.Path("out") : output_device;
  std::ofstream(m_Folder.Path("in")) << input;
  std::vector<std::string> words = runner;
  words.emplace_back(STRATA_PROGRAM);
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, m_Folder.Path("in").c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, m_Folder.Path("err").c_str(), O_WRONLY | O_CREAT, 0600);
  posix_spawnattr_t attributes;  // a suite that runs under nohup, or in the background, gives its signals to nobody
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGINT, SIGHUP, SIGQUIT}) sigaddset(&signals, number);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  const int failure = posix_spawnp(&m_Process, argv.front(), &actions, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  EXPECT_EQ(failure, 0) << words.front() << " cannot be started";
}

StrataProgram::~StrataProgram() {
  if (m_Process <= 0) return;
  Signal(SIGKILL);
  Wait();
}

bool StrataProgram::WaitForOutput(const std::string& text) {
  for (int i = 0; i < 1000; ++i) {
    if (Output().find(text) != std::string::npos) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

void StrataProgram::Signal(int number) const {
  if (m_Process > 0) kill(m_Process, number);
}

int StrataProgram::Wait() {
  int status = 0;
  if (m_Process <= 0 || waitpid(m_Process, &status, 0) != m_Process) return -1;
  m_Process = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string StrataProgram::Output() const {
  return ContentsOf(m_Folder.Path("out"));
}

std::string StrataProgram::Errors() const {
  return ContentsOf(m_Folder.Path("err"));
}
