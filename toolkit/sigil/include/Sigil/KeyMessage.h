// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/DocumentSignature.h>
#include <Sigil/Export.h>
#include <Sigil/Finding.h>
#include <Sigil/Result.h>
#include <Sigil/Types.h>

#include <Ferro/LogSink.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sigil {

/// The forms in which messages tell whom they are for. All are in the field.
enum class Formulation : ui8_t {
  RecipientAlone,             ///< no content authenticator; the device list has one entry, the recipient
  AnyDevice,                  ///< no content authenticator; any trusted device
  NamedDevices,               ///< no content authenticator; two or more devices
  AuthenticatedAnyDevice,     ///< content authenticator; any trusted device
  AuthenticatedNamedDevices,  ///< content authenticator; devices
};

/// A form's name for users: "any device, authenticated". Never null.
[[nodiscard]] SIGIL_API const char* FormulationName(Formulation formulation);

/// A key that a message delivers, without the key.
struct KeyEntry {
  UUID ID;
  std::string Type;   ///< "MDIK"; empty in messages without key types
  std::string Scope;  ///< of the type; empty: the standard's default

  friend bool operator==(const KeyEntry&, const KeyEntry&) = default;
};

/// A key delivery message (ST 430-1:2023, ST 430-3): what it says in public, and its encrypted keys. A plain value.
struct SIGIL_API KeyMessage {
  static constexpr size_t MaxSize = 1024 * 1024;  // bytes of the document

  struct RecipientName {
    std::string IssuerName;  ///< of the certificate's issuer, RFC 4514 form, as written
    std::string SerialNumber;
    std::string SubjectName;

    friend bool operator==(const RecipientName&, const RecipientName&) = default;
  };

  UUID ID;
  std::string Annotation;
  Timestamp IssueDate;
  RecipientName Recipient;
  UUID CompositionID;
  std::string ContentTitle;
  std::optional<SHA1> ContentAuthenticator;  ///< certificate thumbprint of the composition's signer
  Timestamp NotBefore;                       ///< the first moment of the window, with the offset as written
  Timestamp NotAfter;                        ///< the last one
  std::string DeviceListID;                  ///< as written
  std::string DeviceListDescription;
  std::vector<SHA1> Devices;  ///< certificate thumbprints; AnyTrustedDevice stands for all
  std::vector<KeyEntry> Keys;
  std::vector<std::string> ForensicMarkFlags;     ///< URIs as written
  std::vector<std::vector<ui8_t>> EncryptedKeys;  ///< 256 bytes each, as many as Keys, in any order
  SignatureReport Signature;

  [[nodiscard]] bool IsForAnyDevice() const;
  [[nodiscard]] Sigil::Formulation Formulation() const;

  /// Reads a message of any formulation and verifies its signature. An invalid signature is no failure: see Signature.
  /// @return RESULT_OK; Ferro::RESULT_TOOLARGE above MaxSize; RESULT_SG_MESSAGE, logged with the reason, for what is no such
  /// message or departs from its form; those of parsing. On failure `out` is unchanged.
  [[nodiscard]] static Result_t Read(const std::string& xml, const SignatureContext& context, KeyMessage& out,
                                     Ferro::ILogSink& log);
};

/// The SHA-1 digest of nothing: in device lists, any trusted device (ST 430-1).
[[nodiscard]] SIGIL_API const SHA1& AnyTrustedDevice();

/// What a message is checked against. What is not given is not checked.
struct MessageContext {
  struct CompositionFacts {
    UUID ID;
    std::optional<SHA1> SignerThumbprint;  ///< of the leaf whose signature is valid; none: not signed
    std::vector<UUID> KeyIDs;              ///< that its tracks need
  };

  std::optional<Timestamp> From;   ///< playing begins
  std::optional<Timestamp> Until;  ///< and ends
  std::optional<CompositionFacts> Composition;
  std::optional<Certificate> Recipient;  ///< whose private key is to open it
  std::vector<SHA1> Devices;             ///< thumbprints of the devices of ours that will play it
};

/// Checks a message against its context: signature, chain, window, composition, recipient, devices. What fails at the signature
/// is told once; Signature has the details.
[[nodiscard]] SIGIL_API FindingList CheckKeyMessage(const KeyMessage& message, const MessageContext& context);

}  // namespace Sigil
