// SPDX-License-Identifier: BSD-3-Clause
#include "SecretFile.h"

#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"

#include <Ferro/FileReader.h>

#include <fcntl.h>
#include <poll.h>
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
      if (size == LongestPassphrase || !WaitForKey()) return std::nullopt;
      if (read(m_Descriptor, line.Bytes().data() + size, 1) != 1) return std::nullopt;
      more = line.Bytes()[size] != '\n';
      size += more ? 1 : 0;
    }
    line.Truncate(size);
    return line;
  }

 private:
  /// False where a signal came first. It may come at any moment, so it is asked for again and again.
  [[nodiscard]] bool WaitForKey() const {
    constexpr int PollInterval = 100;  // milliseconds
    pollfd terminal{m_Descriptor, POLLIN, 0};
    int ready = 0;
    while (ready == 0 && !Interrupt::Requested()) ready = poll(&terminal, 1, PollInterval);
    return ready == 1;
  }

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

Ferro::Result_t ReadSecrets(const std::string& filename, Sigil::SecretBytes& out) {
  Ferro::FileReader file;
  if (const Ferro::Result_t result = file.OpenRead(filename); result.Failure()) return result;
  if (file.Size() > LargestSecret) return Ferro::RESULT_TOOLARGE;
  if (!out.Resize(static_cast<size_t>(file.Size()))) return Ferro::RESULT_ALLOC;
  return file.ReadAt(0, out.Bytes());
}

Sigil::SecretBytes ReadSecretFile(const char* option, const std::string& filename) {
  Sigil::SecretBytes bytes;
  if (const Ferro::Result_t result = ReadSecrets(filename, bytes); result.Failure())
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
