// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/PrivateKey.h>
#include <Sigil/SecretBytes.h>

#include <string>

namespace Tool {

// Files that hold secrets. Nothing of what is in them is ever shown. All throw CommandError.

/// Reads a file of at most 64 KiB. `option` is what the user gave it with.
[[nodiscard]] Sigil::SecretBytes ReadSecretFile(const char* option, const std::string& filename);

/// Reads a private key.
/// @param passphrase_file  the passphrase is its first line; empty: it is asked for on the terminal where one is needed.
[[nodiscard]] Sigil::PrivateKey ReadPrivateKey(const char* option, const std::string& filename,
                                               const std::string& passphrase_file);

}  // namespace Tool
