// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>

namespace Ferro {

class LogEntry;

/// Where messages go. The printf-style operations build the whole message, then hand it over in one piece; any thread
/// may call them. Messages end in "\n" by convention. One that there is no memory for is lost, without an exception.
class FERRO_API ILogSink {
 public:
  virtual ~ILogSink();
  virtual void WriteEntry(const LogEntry& entry) = 0;

  void Debug(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Info(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Warn(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Error(const char* format, ...) __attribute__((format(printf, 2, 3)));

 protected:
  ILogSink() = default;
  ILogSink(const ILogSink&) = default;
  ILogSink& operator=(const ILogSink&) = default;
};

/// The sink used where none is passed. Until SetDefaultLogSink is called: standard error, without debug messages, which
/// SetStdErrLogLevel lets through.
[[nodiscard]] FERRO_API ILogSink& DefaultLogSink();
/// Makes `sink` the default, or the first one again when null. The sink must outlive its use. Returns the one before
/// (null for the first). Any thread may call it.
FERRO_API ILogSink* SetDefaultLogSink(ILogSink* sink);

}  // namespace Ferro
