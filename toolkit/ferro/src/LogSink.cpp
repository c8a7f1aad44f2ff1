// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Ferro {
namespace {

constinit std::atomic<ILogSink*> s_DefaultSink = nullptr;
constinit std::mutex s_StdErrMutex;
constinit std::atomic<LogLevel> s_StdErrLevel = LogLevel::Info;

std::string Format(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string message = format;  // what is left to say when the arguments cannot be formatted
  if (length >= 0) {
    message.resize(static_cast<size_t>(length));
    std::vsnprintf(message.data(), message.size() + 1, format, again);
  }
  va_end(again);
  return message;
}

// Who has something to tell, of memory that ran out for one, must not be left with an exception instead.
void Send(ILogSink& sink, LogLevel level, const char* format, va_list arguments) {
  try {
    sink.WriteEntry(LogEntry(level, Format(format, arguments)));
  } catch (const std::bad_alloc&) {
    // There is no memory for the message: it is lost.
  }
}

/// The number of bytes written, which is less than all of them after an error of the system.
size_t WriteText(int descriptor, std::string_view text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = write(descriptor, text.data() + done, text.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    done += static_cast<size_t>(count);
  }
  return done;
}

}  // namespace

ILogSink::~ILogSink() = default;

void ILogSink::Debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Send(*this, LogLevel::Debug, format, arguments);
  va_end(arguments);
}

void ILogSink::Info(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Send(*this, LogLevel::Info, format, arguments);
  va_end(arguments);
}

void ILogSink::Warn(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Send(*this, LogLevel::Warning, format, arguments);
  va_end(arguments);
}

void ILogSink::Error(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Send(*this, LogLevel::Error, format, arguments);
  va_end(arguments);
}

ILogSink& DefaultLogSink() {
  if (ILogSink* sink = s_DefaultSink.load()) return *sink;
  // Never destroyed: destructors of static objects may still log. Not on the heap, which may be full.
  alignas(StdErrLogSink) static std::array<std::byte, sizeof(StdErrLogSink)> s_Storage;
  static StdErrLogSink& first = *new (s_Storage.data()) StdErrLogSink;
  return first;
}

ILogSink* SetDefaultLogSink(ILogSink* sink) {
  return s_DefaultSink.exchange(sink);
}

void SetStdErrLogLevel(LogLevel least) {
  s_StdErrLevel = least;
}

void StdErrLogSink::WriteEntry(const LogEntry& entry) {
  if (entry.Level < s_StdErrLevel.load()) return;
  const std::string line = entry.EncodeLine() + '\n';
  const std::lock_guard lock(s_StdErrMutex);
  WriteText(STDERR_FILENO, line);
}

struct FileLogSink::State {
  explicit State(const std::string& filename)
      : Descriptor(open(filename.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666)) {}
  ~State() {
    if (Descriptor >= 0) close(Descriptor);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  const int Descriptor;

  Mutex Lock;
  ui64_t Lost = 0;         // guarded by Lock
  bool LineIsCut = false;  // guarded by Lock
};

FileLogSink::FileLogSink(const std::string& filename) : m_State(new State(filename)) {}
FileLogSink::~FileLogSink() = default;

bool FileLogSink::IsOpen() const {
  return m_State->Descriptor >= 0;
}

ui64_t FileLogSink::LostCount() const {
  const AutoMutex lock(m_State->Lock);
  return m_State->Lost;
}

void FileLogSink::WriteEntry(const LogEntry& entry) {
  std::string line = entry.EncodeLine() + '\n';
  const AutoMutex lock(m_State->Lock);
  if (m_State->LineIsCut) line.insert(0, 1, '\n');
  const size_t count = IsOpen() ? WriteText(m_State->Descriptor, line) : 0;
  if (count < line.size()) ++m_State->Lost;
  if (count > 0) m_State->LineIsCut = count < line.size();
}

void MemoryLogSink::WriteEntry(const LogEntry& entry) {
  const AutoMutex lock(m_Lock);
  m_Entries.push_back(entry);
}

std::vector<LogEntry> MemoryLogSink::Entries() const {
  const AutoMutex lock(m_Lock);
  return m_Entries;
}

bool MemoryLogSink::Contains(LogLevel level, const std::string& message) const {
  const AutoMutex lock(m_Lock);
  return std::any_of(m_Entries.begin(), m_Entries.end(),
                     [&](const LogEntry& entry) { return entry.Level == level && entry.Message == message; });
}

void MemoryLogSink::Clear() {
  const AutoMutex lock(m_Lock);
  m_Entries.clear();
}

TeeLogSink::TeeLogSink(std::vector<ILogSink*> sinks) : m_Sinks(std::move(sinks)) {
  for (const ILogSink* sink : m_Sinks) FERRO_ASSERT(sink != nullptr);
}

void TeeLogSink::WriteEntry(const LogEntry& entry) {
  for (ILogSink* sink : m_Sinks) sink->WriteEntry(entry);
}

}  // namespace Ferro
