// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ContentsPass.h"

#include <chrono>
#include <mutex>

namespace Assay {

/// Adds up what the threads of a pass have done, and reports it. Any thread.
class PassMeter {
 public:
  /// @param report  must live as long.
  PassMeter(const std::function<bool(const PassProgress&)>& report, size_t files, ui64_t bytes) : m_Report(report) {
    m_Progress.FileCount = files;
    m_Progress.BytesTotal = bytes;
  }

  /// @param path  the file that they are of. @return false: the pass is to end.
  bool Add(const std::string& path, ui64_t bytes) {
    const std::lock_guard lock(m_Mutex);
    m_Progress.BytesDone += bytes;
    return Report(path, false);
  }
  /// One file was looked at to its end.
  bool AddFile(const std::string& path) {
    const std::lock_guard lock(m_Mutex);
    ++m_Progress.FilesDone;
    return Report(path, m_Progress.FilesDone == m_Progress.FileCount);
  }
  [[nodiscard]] bool IsCancelled() {
    const std::lock_guard lock(m_Mutex);
    return m_IsCancelled;
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds Interval{100};

  bool Report(const std::string& path, bool is_last) {
    if (!m_Report || m_IsCancelled) return !m_IsCancelled;
    const Clock::time_point now = Clock::now();
    if (!is_last && now - m_Reported < Interval) return true;
    m_Reported = now;
    m_Progress.File = path;
    m_IsCancelled = !m_Report(m_Progress);
    return !m_IsCancelled;
  }

  const std::function<bool(const PassProgress&)>& m_Report;
  std::mutex m_Mutex;
  PassProgress m_Progress;  // guarded by m_Mutex, as all below
  Clock::time_point m_Reported;
  bool m_IsCancelled = false;
};

}  // namespace Assay
