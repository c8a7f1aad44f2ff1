// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

/// Shows the libraries' messages on standard error, one plain line each: warnings and errors, or all of them.
class LogView : public Ferro::ILogSink {
 public:
  void ShowAll(bool all) { m_All = all; }
  void WriteEntry(const Ferro::LogEntry& entry) override;

 private:
  bool m_All = false;
};
