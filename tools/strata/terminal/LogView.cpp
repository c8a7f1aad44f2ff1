// SPDX-License-Identifier: BSD-3-Clause
#include "LogView.h"

#include "DisplayText.h"
#include "Messages.h"

#include <cstdio>
#include <string>

namespace Tool {

void LogView::WriteEntry(const Ferro::LogEntry& entry) {
  if (!m_All && entry.Level < Ferro::LogLevel::Warning) return;
  static constexpr const char* Names[] = {"debug", "info", "warning", "error"};
  const size_t level = static_cast<size_t>(entry.Level);
  const std::string name = std::string(level < 4 ? Names[level] : "log") + ':';
  std::string line = (entry.Level < Ferro::LogLevel::Warning
                          ? name
                          : InTone(name, entry.Level == Ferro::LogLevel::Error ? Tone::Error : Tone::Warning, stderr)) +
                     ' ' + DisplayLines(entry.Message);
  if (line.empty() || line.back() != '\n') line += '\n';
  std::fputs(line.c_str(), stderr);
}

QuietLog::QuietLog() : m_Before(Ferro::SetDefaultLogSink(this)) {
  const auto* view = dynamic_cast<const LogView*>(m_Before);
  const auto* outer = dynamic_cast<const QuietLog*>(m_Before);
  m_ShowsAll = (view != nullptr && view->ShowsAll()) || (outer != nullptr && outer->m_ShowsAll);
}

QuietLog::~QuietLog() {
  Ferro::SetDefaultLogSink(m_Before);
}

void QuietLog::WriteEntry(const Ferro::LogEntry& entry) {
  if (m_ShowsAll) m_Before->WriteEntry(entry);
  if (entry.Level >= Ferro::LogLevel::Warning) m_Kept.WriteEntry(entry);
}

std::vector<Ferro::LogEntry> QuietLog::Take() {
  std::vector<Ferro::LogEntry> entries = m_Kept.Entries();
  m_Kept.Clear();
  for (Ferro::LogEntry& entry : entries) entry.Message.erase(entry.Message.find_last_not_of('\n') + 1);
  return entries;
}

}  // namespace Tool
