// SPDX-License-Identifier: BSD-3-Clause
#include "KeyOptions.h"

#include "Moment.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"

#include <filesystem>

namespace Tool {

namespace {

namespace fs = std::filesystem;

constexpr Ferro::ui32_t MostTolerance = 86'400;  // seconds

}  // namespace

void KeyOptions::AddMessagesTo(Command& command) {
  command.Add("--kdm", Messages, "A key message, a ZIP archive or a folder of them; may be given several times")
      .Called("FILE");
}

void KeyOptions::AddTo(Command& command) {
  AddMessagesTo(command);
  command.Add("--key-file", KeyFile, "A file of keys: in each line an identifier, a colon and 32 hexadecimal digits")
      .Called("FILE");
  command.Add("--private-key", PrivateKey, "The private key, PEM, that opens the key messages").Called("FILE");
  command
      .Add("--passphrase-file", PassphraseFile,
           "A file with the private key's passphrase in its first line; without it the terminal is asked")
      .Called("FILE");
}

void ShowTimeOptions::AddTo(Command& command) {
  command
      .Add("--at", At,
           "When the show begins: 20:00, \"2026-03-01 20:00\" or 2026-03-01T20:00:00+01:00; local time without an "
           "offset "
           "(default: now)")
      .Called("TIME");
  command.Add("--tolerance", Tolerance, "Seconds by which a key message may be valid too late or not long enough")
      .Called("SECONDS")
      .CheckedBy(WholeNumber(0, MostTolerance));
  command.Add("--recipient", Recipient, "The certificate of the device whose key messages are meant").Called("FILE");
  command
      .Add("--device", Devices,
           "The certificate of a device that is to play it, which key messages should list; may be given several times")
      .Called("FILE");
  command
      .Add("--trust", TrustedRoots,
           "A root certificate to trust; without one, any root is taken as it comes; may be given several times")
      .Called("FILE");
}

std::vector<std::string> FoldersOf(const InputOptions& inputs) {
  std::vector<std::string> folders;
  std::error_code error;
  for (const std::string& name : inputs.Names) {
    if (fs::is_directory(name, error)) {
      folders.push_back(name);
    } else if (fs::exists(name, error)) {
      const std::string folder = fs::path(name).parent_path().string();
      folders.push_back(folder.empty() ? "." : folder);
    }
  }
  folders.insert(folders.end(), inputs.Stores.begin(), inputs.Stores.end());
  return folders;
}

void AddMessages(const std::vector<std::string>& names, Sigil::KeyMessageStore& store) {
  std::error_code error;
  for (const std::string& name : names) {
    if (!fs::exists(name, error)) throw CommandError(ExitCode::Usage, name + ": there is no such file or folder");
    // A problem where it fails.
    static_cast<void>(fs::is_directory(name, error) ? store.AddFolder(name) : store.AddFile(name));
  }
}

Ferro::Timestamp MomentOf(const char* option, const std::string& text) {
  const auto moment = ReadMoment(text, Ferro::Timestamp());
  if (!moment)
    throw CommandError(ExitCode::Usage, std::string(option) + ' ' + text +
                                            ": this is no time like 20:00, \"2026-03-01 20:00\" or "
                                            "2026-03-01T20:00:00+01:00");
  return *moment;
}

}  // namespace Tool
