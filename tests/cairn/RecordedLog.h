// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

#include <string>
#include <vector>

namespace CairnTest {

/// Takes the place of the default log sink for the length of a scope and keeps what is logged.
class RecordedLog {
 public:
  RecordedLog() : m_Before(Ferro::SetDefaultLogSink(&Sink)) {}
  ~RecordedLog() { Ferro::SetDefaultLogSink(m_Before); }
  RecordedLog(const RecordedLog&) = delete;
  RecordedLog& operator=(const RecordedLog&) = delete;

  [[nodiscard]] std::vector<std::string> Lines(Ferro::LogLevel level) const {
    std::vector<std::string> lines;
    for (const Ferro::LogEntry& entry : Sink.Entries())
      if (entry.Level == level) lines.push_back(entry.Message);
    return lines;
  }
  [[nodiscard]] std::vector<std::string> Errors() const { return Lines(Ferro::LogLevel::Error); }
  [[nodiscard]] std::vector<std::string> Warnings() const { return Lines(Ferro::LogLevel::Warning); }

  Ferro::MemoryLogSink Sink;

 private:
  Ferro::ILogSink* m_Before;
};

}  // namespace CairnTest
