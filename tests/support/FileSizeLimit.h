// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

namespace Ferro::Test {

/// While it lives, the process cannot write beyond `bytes` of any file: a full disk that needs no disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : m_Handler(signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_Before), 0);
    rlimit limit = m_Before;
    limit.rlim_cur = bytes;
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &m_Before);
    signal(SIGXFSZ, m_Handler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit m_Before{};
  void (*m_Handler)(int);
};

}  // namespace Ferro::Test
