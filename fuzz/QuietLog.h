// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>

/// Takes the messages of refused inputs, which would fill the disk.
class QuietLog : public Ferro::ILogSink {
 public:
  QuietLog() { Ferro::SetDefaultLogSink(this); }
  ~QuietLog() override { Ferro::SetDefaultLogSink(nullptr); }
  void WriteEntry(const Ferro::LogEntry& /*entry*/) override {}
};
