// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/ILogSink.h>
#include <Ferro/LogEntry.h>
#include <Ferro/Mutex.h>
#include <Ferro/mem_ptr.h>

#include <string>
#include <vector>

namespace Ferro {

/// Writes each message as one line to standard error, but none below the level that is set for all of these sinks:
/// LogLevel::Info until SetStdErrLogLevel is called.
class FERRO_API StdErrLogSink : public ILogSink {
 public:
  void WriteEntry(const LogEntry& entry) override;
};

/// Sets the least level that goes to standard error: LogLevel::Debug lets all messages through. Any thread may call it.
FERRO_API void SetStdErrLogLevel(LogLevel least);

/// Appends each message as one line to a file, which is created when missing. Messages that cannot be written are
/// counted, never thrown.
class FERRO_API FileLogSink : public ILogSink {
 public:
  explicit FileLogSink(const std::string& filename);
  ~FileLogSink() override;
  [[nodiscard]] bool IsOpen() const;
  [[nodiscard]] ui64_t LostCount() const;
  void WriteEntry(const LogEntry& entry) override;

 private:
  struct State;
  mem_ptr<State> m_State;
};

/// Keeps the messages, for tests and for showing them later.
class FERRO_API MemoryLogSink : public ILogSink {
 public:
  void WriteEntry(const LogEntry& entry) override;
  [[nodiscard]] std::vector<LogEntry> Entries() const;
  /// True when some message has this level and exactly this text (line end included).
  [[nodiscard]] bool Contains(LogLevel level, const std::string& message) const;
  void Clear();

 private:
  mutable Mutex m_Lock;
  std::vector<LogEntry> m_Entries;  // guarded by m_Lock
};

/// Passes each message on to several sinks, which must outlive it.
class FERRO_API TeeLogSink : public ILogSink {
 public:
  explicit TeeLogSink(std::vector<ILogSink*> sinks);
  void WriteEntry(const LogEntry& entry) override;

 private:
  const std::vector<ILogSink*> m_Sinks;
};

}  // namespace Ferro
