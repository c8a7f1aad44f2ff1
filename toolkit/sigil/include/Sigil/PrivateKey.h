// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Certificate.h>
#include <Sigil/Export.h>
#include <Sigil/Result.h>
#include <Sigil/SecretBytes.h>

#include <Ferro/LogSink.h>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace Sigil {

/// Supplies the passphrase of a private key; called at most once per key. No value means: give up.
using PassphraseSource = std::function<std::optional<SecretBytes>()>;

/// An RSA private key of 2048 bits: a signer's, or that of a recipient of key messages. Cheap to copy; any thread may use
/// it. It is never written anywhere.
class SIGIL_API PrivateKey {
 public:
  /// Reads the first key of a PEM text: PKCS#1 or PKCS#8, encrypted or not. Other blocks of the text are skipped.
  /// @param passphrase  asked only where the key is encrypted; may be empty.
  /// @return RESULT_OK; RESULT_SG_PASSPHRASE, where there is none or a wrong one; RESULT_SG_PRIVATE_KEY for anything else.
  /// Failures are logged without a word of what was read; `out` is then unchanged.
  [[nodiscard]] static Result_t FromPEM(std::span<const ui8_t> text, const PassphraseSource& passphrase,
                                        std::optional<PrivateKey>& out, Ferro::ILogSink& log);
  /// The same for a file of at most 64 KiB. Otherwise as Ferro::FileReader; RESULT_TOOLARGE.
  [[nodiscard]] static Result_t FromFile(const std::string& filename, const PassphraseSource& passphrase,
                                         std::optional<PrivateKey>& out, Ferro::ILogSink& log);

  /// True when the certificate is for this key.
  [[nodiscard]] bool Matches(const Certificate& certificate) const;

 private:
  friend struct PrivateKeyState;
  explicit PrivateKey(std::shared_ptr<const struct PrivateKeyState> state) : m_State(std::move(state)) {}

  std::shared_ptr<const PrivateKeyState> m_State;  // never null
};

}  // namespace Sigil
