// SPDX-License-Identifier: BSD-3-Clause
#include "KeyOpening.h"

#include "SecretFile.h"
#include "terminal/CommandError.h"
#include "terminal/LogView.h"

namespace Tool {

namespace {

void AddKeyFile(const std::string& filename, Sigil::KeyRing& keys) {
  const Sigil::SecretBytes text = ReadSecretFile("--key-file", filename);
  QuietLog log;  // it says which line is wrong, and no more of it
  const Sigil::Result_t result = keys.AddKeyText(text.Bytes(), Ferro::DefaultLogSink());
  if (result.Success()) return;
  const auto entries = log.Take();
  throw CommandError(ExitCode::Usage,
                     "--key-file " + filename + ": " + (entries.empty() ? result.Label() : entries.front().Message));
}

void AddMessages(const Sigil::KeyMessageStore& messages, const Sigil::PrivateKey& key, Sigil::KeyRing& keys) {
  const QuietLog log;  // what does not open is another's
  size_t opened = 0;
  for (const Sigil::KeyMessageStore::Entry& entry : messages.Entries()) {
    const Sigil::Result_t result = keys.AddMessage(entry.Message, key, Ferro::DefaultLogSink());
    if (result == Sigil::RESULT_SG_KEY_CONFLICT)
      throw CommandError(ExitCode::NotPlayable, entry.Source + ": " + result.Label());
    opened += result.Success() ? 1 : 0;
  }
  if (opened > 0) return;
  const size_t count = messages.Entries().size();
  throw CommandError(ExitCode::NotPlayable,
                     count == 0 ? "--private-key: there is no key message for it to open: name one with --kdm"
                     : count == 1
                         ? "--private-key: it does not open the key message " + messages.Entries().front().Source
                         : "--private-key: it opens none of the " + std::to_string(count) + " key messages at hand");
}

}  // namespace

Sigil::KeyRing OpenKeys(const KeyOptions& options, const Sigil::KeyMessageStore& messages) {
  Sigil::KeyRing keys;
  if (options.PrivateKey.empty() && !options.PassphraseFile.empty())
    throw CommandError(ExitCode::Usage, "--passphrase-file: there is no --private-key that it belongs to");
  if (!options.KeyFile.empty()) AddKeyFile(options.KeyFile, keys);
  if (!options.PrivateKey.empty())
    AddMessages(messages, ReadPrivateKey("--private-key", options.PrivateKey, options.PassphraseFile), keys);
  return keys;
}

Sigil::KeyRing OpenKeys(const KeyOptions& options, const std::vector<std::string>& folders) {
  if (options.PrivateKey.empty() && !options.Messages.empty())
    throw CommandError(ExitCode::Usage, "--kdm: a key message opens nothing without its --private-key");
  Sigil::KeyMessageStore messages;
  AddMessages(options.Messages, messages);
  if (!options.Messages.empty() && messages.Entries().empty() && !messages.Problems().empty()) {
    const Sigil::KeyMessageStore::Problem& problem = messages.Problems().front();
    throw CommandError(ExitCode::NotPlayable, problem.Source + ": " + problem.What.Text);
  }
  if (!options.PrivateKey.empty())
    for (const std::string& folder : folders) static_cast<void>(messages.AddFolder(folder));
  return OpenKeys(options, messages);
}

TrackKey* TrackKeys::Of(const std::string& filename) {
  if (m_Keys.Size() == 0) return nullptr;
  const auto [place, is_new] = m_Files.try_emplace(filename);
  if (!is_new) return place->second.get();
  const QuietLog log;  // a file that cannot be opened is reported where it is read
  auto key = std::make_unique<TrackKey>();
  if (QUIRE::ReadTrackEncryption(filename, key->Track).Success() && key->Track.IsEncrypted &&
      m_Keys.FillContexts(key->Track, key->Contexts).Success())
    place->second = std::move(key);
  return place->second.get();
}

}  // namespace Tool
