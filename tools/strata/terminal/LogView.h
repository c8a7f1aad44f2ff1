// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

#include <vector>

namespace Tool {

/// Shows the libraries' messages on standard error, one plain line each: warnings and errors, or all of them.
class LogView : public Ferro::ILogSink {
 public:
  void ShowAll(bool all) { m_All = all; }
  [[nodiscard]] bool ShowsAll() const { return m_All; }
  void WriteEntry(const Ferro::LogEntry& entry) override;

 private:
  bool m_All = false;
};

/// While it lives, keeps the libraries' messages instead of showing them, for a command that tells what is wrong in its
/// own words. Messages are shown as well where the user asked for all of them. The last one made goes first.
class QuietLog : public Ferro::ILogSink {
 public:
  QuietLog();
  ~QuietLog() override;
  void WriteEntry(const Ferro::LogEntry& entry) override;

  /// The warnings and errors since the last call, without line ends.
  [[nodiscard]] std::vector<Ferro::LogEntry> Take();

 private:
  Ferro::MemoryLogSink m_Kept;
  Ferro::ILogSink* m_Before;
  bool m_ShowsAll = false;
};

}  // namespace Tool
