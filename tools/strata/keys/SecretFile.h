// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/PrivateKey.h>
#include <Sigil/SecretBytes.h>

#include <string>

namespace Tool {

// Files that hold secrets. Nothing of what is in them is ever shown.

/// Reads a file of at most 64 KiB. RESULT_OK; as Ferro::FileReader; RESULT_TOOLARGE; RESULT_ALLOC.
[[nodiscard]] Ferro::Result_t ReadSecrets(const std::string& filename, Sigil::SecretBytes& out);
/// The same; throws CommandError. `option` is what the user gave the file with.
[[nodiscard]] Sigil::SecretBytes ReadSecretFile(const char* option, const std::string& filename);

/// Reads a private key. Throws CommandError.
/// @param passphrase_file  the passphrase is its first line; empty: it is asked for on the terminal where one is needed.
[[nodiscard]] Sigil::PrivateKey ReadPrivateKey(const char* option, const std::string& filename,
                                               const std::string& passphrase_file);

}  // namespace Tool
