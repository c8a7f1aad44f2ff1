// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

#include <set>
#include <string>
#include <thread>
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

/// While it lives, holds back the errors of all threads but the one that made it, for a command that counts what its reader
/// threads fail to read, unless the user asked for all messages. Of equal lines of its own thread the first is shown: the
/// engine tries a file that is missing again at every edit unit. The engine's threads may write to it: it outlives them.
class OwnThreadLog : public Ferro::ILogSink {
 public:
  OwnThreadLog();
  ~OwnThreadLog() override;
  void WriteEntry(const Ferro::LogEntry& entry) override;

 private:
  const std::thread::id m_Owner = std::this_thread::get_id();
  Ferro::ILogSink* m_Before;
  std::set<std::string> m_Shown;  // touched by m_Owner alone
  bool m_ShowsAll;
};

}  // namespace Tool
