// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/IArchive.h>
#include <Ferro/Timestamp.h>
#include <Ferro/Types.h>

#include <iosfwd>
#include <string>

namespace Ferro {

/// How much a message matters.
enum class LogLevel : ui32_t { Debug = 0, Info = 1, Warning = 2, Error = 3 };

/// One log message with its time, process and level.
///
/// Made with a level and a message it has this process's ID and the present time.
/// Archive form, in order: process ID u32, time (archived string, ISO 8601), level u32, message string.
class FERRO_API LogEntry : public IArchive {
 public:
  LogEntry() = default;
  LogEntry(LogLevel level, std::string message);

  ui32_t PID = 0;
  Timestamp EventTime;
  LogLevel Level = LogLevel::Info;
  std::string Message;

  /// "2026-03-01T12:00:00+00:00 [1234] ERROR: message", without the message's own line end. The levels are DEBUG, INFO,
  /// WARNING and ERROR. Line ends and control characters within the message show as "\n", "\r", "\x1b" and, from U+0080 on,
  /// "\xc2\x9b".
  [[nodiscard]] std::string EncodeLine() const;

  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(MemIOReader* Reader) override;
};

/// Inserts EncodeLine and a line end.
FERRO_API std::ostream& operator<<(std::ostream& stream, const LogEntry& entry);

}  // namespace Ferro
