// SPDX-License-Identifier: BSD-3-Clause
#include "SecretFile.h"

#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"

#include <Ferro/FileReader.h>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>

namespace Tool {

namespace {

constexpr Ferro::fsize_t LargestSecret = 65'536;  // bytes
constexpr size_t LongestPassphrase = 1024;        // bytes

/// The terminal that the program was started on, which does not show what is typed while this lives.
class SilentTerminal {
 public:
  SilentTerminal() : m_Descriptor(open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)) {
    m_IsSilent = m_Descriptor >= 0 && tcgetattr(m_Descriptor, &m_Before) == 0;
    if (!m_IsSilent) return;
    termios silent = m_Before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    m_IsSilent = tcsetattr(m_Descriptor, TCSAFLUSH, &silent) == 0;
  }
  ~SilentTerminal() {
    if (m_IsSilent) tcsetattr(m_Descriptor, TCSAFLUSH, &m_Before);
    if (m_Descriptor >= 0) close(m_Descriptor);
  }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

  [[nodiscard]] bool IsThere() const { return m_IsSilent; }
  void Say(const std::string& text) const { static_cast<void>(!write(m_Descriptor, text.data(), text.size())); }
  /// A line without its end; no value where none was typed, or a signal came.
  [[nodiscard]] std::optional<Sigil::SecretBytes> ReadLine() const {
    Sigil::SecretBytes line;
    if (!line.Resize(LongestPassphrase)) return std::nullopt;
    size_t size = 0;
    for (bool more = true; more;) {
      if (size == LongestPassphrase || read(m_Descriptor, line.Bytes().data() + size, 1) != 1) return std::nullopt;
      more = line.Bytes()[size] != '\n';
      size += more ? 1 : 0;
    }
    line.Truncate(size);
    return line;
  }

 private:
  const int m_Descriptor;
  termios m_Before{};
  bool m_IsSilent = false;
};

std::optional<Sigil::SecretBytes> AskPassphrase(const std::string& key_file) {
  const SilentTerminal terminal;
  if (!terminal.IsThere())
    throw CommandError(ExitCode::Usage, key_file +
                                            ": this key has a passphrase, and there is no terminal to ask for it: "
                                            "name a file that holds it with --passphrase-file");
  terminal.Say("Passphrase of " + DisplayText(key_file) + ": ");
  auto line = terminal.ReadLine();
  terminal.Say("\n");
  if (Interrupt::Requested()) throw CommandStopped();
  return line;
}

Sigil::SecretBytes FirstLineOf(const std::string& filename) {
  Sigil::SecretBytes text = ReadSecretFile("--passphrase-file", filename);
  const auto end = std::ranges::find_if(text.Bytes(), [](Ferro::ui8_t byte) { return byte == '\n' || byte == '\r'; });
  text.Truncate(static_cast<size_t>(end - text.Bytes().begin()));
  return text;
}

}  // namespace

Sigil::SecretBytes ReadSecretFile(const char* option, const std::string& filename) {
  Ferro::FileReader file;
  Sigil::SecretBytes bytes;
  Ferro::Result_t result = file.OpenRead(filename);
  if (result.Success() && file.Size() > LargestSecret) result = Ferro::RESULT_TOOLARGE;
  if (result.Success() && !bytes.Resize(static_cast<size_t>(file.Size()))) result = Ferro::RESULT_ALLOC;
  if (result.Success()) result = file.ReadAt(0, bytes.Bytes());
  if (result.Failure())
    throw CommandError(ExitCode::Usage,
                       std::string(option) + ' ' + filename + ": it cannot be read: " + result.Label());
  return bytes;
}

Sigil::PrivateKey ReadPrivateKey(const char* option, const std::string& filename, const std::string& passphrase_file) {
  const Sigil::SecretBytes text = ReadSecretFile(option, filename);
  // What the source throws must not pass through a C library's call.
  std::exception_ptr problem;
  const auto source = [&]() -> std::optional<Sigil::SecretBytes> {
    try {
      return passphrase_file.empty() ? AskPassphrase(filename) : std::optional(FirstLineOf(passphrase_file));
    } catch (...) {
      problem = std::current_exception();
      return std::nullopt;
    }
  };
  const QuietLog log;  // the result says it all
  std::optional<Sigil::PrivateKey> key;
  const Sigil::Result_t result = Sigil::PrivateKey::FromPEM(text.Bytes(), source, key, Ferro::DefaultLogSink());
  if (problem) std::rethrow_exception(problem);
  if (result.Failure())
    throw CommandError(ExitCode::NotPlayable, std::string(option) + ' ' + filename + ": " + result.Label());
  return *key;
}

}  // namespace Tool
