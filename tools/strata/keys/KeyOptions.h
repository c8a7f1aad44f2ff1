// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "show/Inputs.h"

#include <Ferro/Timestamp.h>
#include <Sigil/KeyMessageStore.h>

#include <string>
#include <vector>

namespace Tool {

class Command;

/// What opens encrypted essence: key messages with a private key, or a file of keys.
struct KeyOptions {
  std::vector<std::string> Messages;  ///< files, folders and archives
  std::string KeyFile;
  std::string PrivateKey;
  std::string PassphraseFile;

  /// Adds the options --kdm, --key-file, --private-key and --passphrase-file.
  void AddTo(Command& command);
  /// Adds the option --kdm alone.
  void AddMessagesTo(Command& command);
};

/// When a show begins, and what its key messages are judged by.
struct ShowTimeOptions {
  std::string At;
  Ferro::ui32_t Tolerance = 0;            ///< seconds
  std::string Recipient;                  ///< a certificate file
  std::vector<std::string> Devices;       ///< certificate files of devices that play it
  std::vector<std::string> TrustedRoots;  ///< certificate files

  /// Adds the options --at, --tolerance, --recipient, --device and --trust.
  void AddTo(Command& command);
};

/// The folders that the user named, or in which the files lie that he named: key messages may lie there too.
[[nodiscard]] std::vector<std::string> FoldersOf(const InputOptions& inputs);

/// Adds what the options name to a store of messages. Throws CommandError where there is no such thing; what cannot be read
/// is a problem of the store.
void AddMessages(const std::vector<std::string>& names, Sigil::KeyMessageStore& store);

/// The moment that the user means. Throws CommandError. `option` is what it was given with.
[[nodiscard]] Ferro::Timestamp MomentOf(const char* option, const std::string& text);

}  // namespace Tool
