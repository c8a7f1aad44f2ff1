// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/ILogSink.h>

#include <set>
#include <string>
#include <thread>

namespace Tool {

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
