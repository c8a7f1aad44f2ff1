// SPDX-License-Identifier: BSD-3-Clause
#include "OwnThreadLog.h"

#include "LogView.h"

namespace Tool {

OwnThreadLog::OwnThreadLog() : m_Before(Ferro::SetDefaultLogSink(this)) {
  const auto* view = dynamic_cast<const LogView*>(m_Before);
  m_ShowsAll = view != nullptr && view->ShowsAll();
}

OwnThreadLog::~OwnThreadLog() {
  Ferro::SetDefaultLogSink(m_Before);
}

void OwnThreadLog::WriteEntry(const Ferro::LogEntry& entry) {
  constexpr size_t most_remembered = 1000;
  const bool is_own = std::this_thread::get_id() == m_Owner;
  const bool is_counted = entry.Level == Ferro::LogLevel::Error && !is_own;
  const bool is_known = is_own && m_Shown.size() < most_remembered && !m_Shown.insert(entry.Message).second;
  if (m_ShowsAll || !(is_counted || is_known)) m_Before->WriteEntry(entry);
}

}  // namespace Tool
