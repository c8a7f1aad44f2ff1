// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Export.h>
#include <Sigil/KeyMessage.h>
#include <Sigil/PrivateKey.h>
#include <Sigil/SecretBytes.h>

#include <vector>

namespace Sigil {

/// A key that encrypts a track's essence: AES-128 (ST 429-6). Moved, never copied.
struct ContentKey {
  KeyEntry Entry;
  SecretBytes Key;  ///< 16 bytes
};

/// The keys of one message, each valid for that composition in that window.
struct SIGIL_API ContentKeys {
  static constexpr size_t KeySize = 16;  // bytes

  UUID CompositionID;
  Timestamp NotBefore;
  Timestamp NotAfter;
  std::vector<ContentKey> Keys;

  /// The key of that identifier; null when there is none.
  [[nodiscard]] const ContentKey* Find(const UUID& id) const;

  /// Opens a message whose signature is valid, with its recipient's private key. Each key's plaintext must agree with what
  /// the message says in public, else nothing is opened.
  /// @return RESULT_OK; RESULT_SG_UNVERIFIED where the signature is not valid; RESULT_SG_MESSAGE for plaintexts of both
  /// lengths; Ferro::RESULT_ALLOC; RESULT_SG_CONTENT for all else: it tells no wrong key from wrong content, and whatever
  /// is wrong, every key is decrypted. All are logged; `out` is then unchanged.
  [[nodiscard]] static Result_t Open(const KeyMessage& message, const PrivateKey& key, ContentKeys& out,
                                     Ferro::ILogSink& log);
};

/// What a message is made of. Identifier of message and device list are made anew where they have no value.
struct MessageRequest {
  UUID MessageID;
  std::string Annotation;
  Timestamp IssueDate;
  std::optional<Certificate> Recipient;  ///< required; its key is RSA of 2048 bits
  UUID CompositionID;
  std::string ContentTitle;
  std::optional<SHA1> ContentAuthenticator;  ///< certificate thumbprint of the composition's signer; none in Interop
  Timestamp NotBefore;                       ///< whole seconds; what is beyond them is cut off
  Timestamp NotAfter;
  UUID DeviceListID;
  std::string DeviceListDescription;
  std::vector<SHA1> Devices;  ///< none: any trusted device
  std::vector<ContentKey> Keys;
  std::vector<std::string> ForensicMarkFlags;
};

/// Makes a message for a recipient and signs it.
/// @return RESULT_OK; RESULT_PARAM, logged, where something is missing, malformed or twice; RESULT_SG_SIGNER, logged, as of
/// SignDocument; RESULT_SG_SIGN, logged. On failure `xml` is unchanged.
[[nodiscard]] SIGIL_API Result_t MakeKeyMessage(const MessageRequest& request, const SignerIdentity& signer,
                                                std::string& xml, Ferro::ILogSink& log);

}  // namespace Sigil
