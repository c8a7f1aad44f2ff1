// SPDX-License-Identifier: BSD-3-Clause
#include "LogView.h"

#include <cstdio>
#include <string>

void LogView::WriteEntry(const Ferro::LogEntry& entry) {
  if (!m_All && entry.Level < Ferro::LogLevel::Warning) return;
  static constexpr const char* Names[] = {"debug", "info", "warning", "error"};
  const size_t level = static_cast<size_t>(entry.Level);
  std::string line = std::string(level < 4 ? Names[level] : "log") + ": " + entry.Message;
  if (line.empty() || line.back() != '\n') line += '\n';
  std::fputs(line.c_str(), stderr);
}
