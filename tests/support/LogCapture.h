// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

#include <string>
#include <vector>

namespace testsupport {

/// Takes the place of the default log sink as long as it exists, and keeps what was logged.
class LogCapture : public Ferro::MemoryLogSink {
 public:
  LogCapture() : m_Before(Ferro::SetDefaultLogSink(this)) {}
  ~LogCapture() override { Ferro::SetDefaultLogSink(m_Before); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  /// All messages one after another.
  [[nodiscard]] std::string Text() const {
    std::string text;
    for (const auto& entry : Entries()) text += entry.Message;
    return text;
  }
  /// The same, each behind the letter of its level and a blank: "W message".
  [[nodiscard]] std::string TextWithLevels() const {
    std::string text;
    for (const auto& entry : Entries())
      text += std::string(1, "DIWE"[static_cast<size_t>(entry.Level)]) + ' ' + entry.Message;
    return text;
  }
  [[nodiscard]] std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (const auto& entry : Entries()) lines.push_back(entry.Message);
    return lines;
  }
  [[nodiscard]] std::vector<std::string> Lines(Ferro::LogLevel level) const {
    std::vector<std::string> lines;
    for (const auto& entry : Entries())
      if (entry.Level == level) lines.push_back(entry.Message);
    return lines;
  }
  [[nodiscard]] std::vector<std::string> Errors() const { return Lines(Ferro::LogLevel::Error); }
  [[nodiscard]] std::vector<std::string> Warnings() const { return Lines(Ferro::LogLevel::Warning); }
  /// How many messages have this level.
  [[nodiscard]] size_t Count(Ferro::LogLevel level) const {
    size_t count = 0;
    for (const auto& entry : Entries()) count += entry.Level == level ? 1 : 0;
    return count;
  }

 private:
  Ferro::ILogSink* m_Before;
};

}  // namespace testsupport
