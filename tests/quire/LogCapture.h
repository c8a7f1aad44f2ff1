// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

#include <string>
#include <vector>

namespace QUIRE {

/// Keeps what is logged while it lives.
class LogCapture {
 public:
  LogCapture() : m_Before(Ferro::SetDefaultLogSink(&m_Sink)) {}
  ~LogCapture() { Ferro::SetDefaultLogSink(m_Before); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (const Ferro::LogEntry& entry : m_Sink.Entries()) lines.push_back(entry.Message);
    return lines;
  }
  void Clear() { m_Sink.Clear(); }

 private:
  Ferro::MemoryLogSink m_Sink;
  Ferro::ILogSink* m_Before;
};

}  // namespace QUIRE
