// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

#include <string>

namespace StrataTest {

/// Takes what is logged to the default sink while it lives.
class LogCapture {
 public:
  LogCapture() : m_Before(Ferro::SetDefaultLogSink(&m_Sink)) {}
  ~LogCapture() { Ferro::SetDefaultLogSink(m_Before); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  /// All messages one after the other, each behind the letter of its level and a blank.
  [[nodiscard]] std::string Text() const {
    std::string text;
    for (const Ferro::LogEntry& entry : m_Sink.Entries())
      text += std::string(1, "DIWE"[static_cast<size_t>(entry.Level)]) + " " + entry.Message;
    return text;
  }

 private:
  Ferro::MemoryLogSink m_Sink;
  Ferro::ILogSink* m_Before;
};

}  // namespace StrataTest
