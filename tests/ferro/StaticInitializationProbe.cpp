// SPDX-License-Identifier: BSD-3-Clause
#include "StaticInitializationProbe.h"

#include <unistd.h>

#include <array>

namespace Ferro::Test {
namespace {

// Before every other object of this program.
__attribute__((init_priority(101))) BeforeMain s_Seen;

LogEntry LogToMemory() {
  MemoryLogSink memory;
  SetDefaultLogSink(&memory);
  DefaultLogSink().Warn("%s before main\n", "logged");
  SetDefaultLogSink(nullptr);
  return memory.Entries().at(0);
}

std::string LogToStandardError() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return "no pipe";
  const int saved = dup(STDERR_FILENO);
  dup2(ends[1], STDERR_FILENO);
  DefaultLogSink().Error("standard error before main\n");
  dup2(saved, STDERR_FILENO);
  std::array<char, 512> text{};
  const ssize_t length = read(ends[0], text.data(), text.size());
  for (const int descriptor : {saved, ends[0], ends[1]}) close(descriptor);
  return std::string(text.data(), length > 0 ? static_cast<size_t>(length) : 0);
}

}  // namespace

BeforeMain::BeforeMain()
    : Constant(RESULT_NOT_FOUND),
      Found(Result_t::Find(-21)),
      NotFound(Result_t::Find(-98)),
      ID(UUID::Random()),
      Logged(LogToMemory()),
      StandardError(LogToStandardError()) {}

const BeforeMain& SeenBeforeMain() {
  return s_Seen;
}

}  // namespace Ferro::Test
