// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <string>

namespace QUIRE {

/// What the lines of this thread about a file's format begin with: "MXF", or, while a LogSubject lives, its file's name.
[[nodiscard]] const char* CurrentLogSubject();

/// Names the file that is being read. Lives on the stack; the name must outlive it.
class LogSubject {
 public:
  explicit LogSubject(const std::string& filename);
  ~LogSubject();
  LogSubject(const LogSubject&) = delete;
  LogSubject& operator=(const LogSubject&) = delete;

 private:
  const char* m_Before;
};

/// Logs one line at error level: the subject, the message, then the offset in the file where the fault lies. Returns RESULT_FORMAT.
[[nodiscard]] Result_t FormatError(ui64_t offset, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace QUIRE
