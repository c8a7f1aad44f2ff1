// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/LogEntry.h>
#include <Ferro/TextEncoding.h>

#include <array>
#include <ostream>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace Ferro {
namespace {

const char* NameOf(LogLevel level) {
  switch (level) {
    case LogLevel::Debug:
      return "DEBUG";
    case LogLevel::Info:
      return "INFO";
    case LogLevel::Warning:
      return "WARNING";
    case LogLevel::Error:
      return "ERROR";
  }
  return "UNKNOWN";
}

// U+0080 to U+009F in UTF-8, which some terminals obey as they do escape sequences.
bool IsC1Control(std::string_view text) {
  return text.size() > 1 && text[0] == '\xC2' && static_cast<ui8_t>(text[1]) >= 0x80 &&
         static_cast<ui8_t>(text[1]) < 0xA0;
}

// Messages quote texts from outside: what would break the line or steer a terminal is shown, not obeyed.
void AppendVisibly(std::string& line, std::string_view message) {
  for (size_t i = 0; i < message.size(); ++i) {
    const char c = message[i];
    const auto byte = static_cast<ui8_t>(c);
    if (c == '\n')
      line += "\\n";
    else if (c == '\r')
      line += "\\r";
    else if (IsC1Control(message.substr(i)))
      line += "\\x" + bin2hex(std::array{byte}) + "\\x" + bin2hex(std::array{static_cast<ui8_t>(message[++i])});
    else if ((byte < 0x20 && c != '\t') || byte == 0x7f)
      line += "\\x" + bin2hex(std::array{byte});
    else
      line += c;
  }
}

}  // namespace

LogEntry::LogEntry(LogLevel level, std::string message)
    : PID(static_cast<ui32_t>(getpid())), Level(level), Message(std::move(message)) {}

std::string LogEntry::EncodeLine() const {
  std::string line = EventTime.EncodeString() + " [" + std::to_string(PID) + "] " + NameOf(Level) + ": ";
  std::string_view message = Message;
  if (message.ends_with('\n')) message.remove_suffix(1);
  AppendVisibly(line, message);
  return line;
}

bool LogEntry::HasValue() const {
  return !Message.empty();
}

ui32_t LogEntry::ArchiveLength() const {
  return static_cast<ui32_t>(3 * sizeof(ui32_t) + Message.size()) + EventTime.ArchiveLength();
}

bool LogEntry::Archive(MemIOWriter* Writer) const {
  return Writer != nullptr && Writer->WriteUi32BE(PID) && EventTime.Archive(Writer) &&
         Writer->WriteUi32BE(static_cast<ui32_t>(Level)) && Writer->WriteString(Message);
}

bool LogEntry::Unarchive(MemIOReader* Reader) {
  ui32_t level = 0;
  if (Reader == nullptr || !Reader->ReadUi32BE(&PID) || !EventTime.Unarchive(Reader) || !Reader->ReadUi32BE(&level))
    return false;
  Level = static_cast<LogLevel>(level);
  return Reader->ReadString(&Message);
}

std::ostream& operator<<(std::ostream& stream, const LogEntry& entry) {
  return stream << entry.EncodeLine() << '\n';
}

}  // namespace Ferro
