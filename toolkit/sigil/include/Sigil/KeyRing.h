// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/ContentKeys.h>
#include <Sigil/Export.h>
#include <Sigil/Result.h>
#include <Sigil/SecretBytes.h>

#include <Ferro/LogSink.h>
#include <QUIRE/FrameDecryption.h>

#include <map>
#include <span>
#include <string>

namespace Sigil {

/// Content keys by their identifier, from key messages and key files: what a host asks for the key of a track. The keys lie
/// in memory for secrets. Filled by one thread; then any thread may ask. Moved, never copied.
///
/// It knows of no windows and no compositions: who adds a message has chosen it (KeyMessageStore, CheckKeyMessage).
class SIGIL_API KeyRing {
 public:
  static constexpr size_t MaxKeyFile = 65'536;  // bytes

  KeyRing();
  ~KeyRing();
  KeyRing(KeyRing&&) noexcept;
  KeyRing& operator=(KeyRing&&) noexcept;

  /// Opens a message with its recipient's private key and adds its keys, all or none.
  /// @return as ContentKeys::Open; RESULT_SG_KEY_CONFLICT, logged, where another key has an identifier already.
  [[nodiscard]] Result_t AddMessage(const KeyMessage& message, const PrivateKey& key, Ferro::ILogSink& log);
  /// Adds one key. The same again changes nothing. Who calls wipes the bytes it came from.
  /// @return RESULT_OK; RESULT_SG_KEY_CONFLICT, logged; Ferro::RESULT_ALLOC where there is no memory for secrets left.
  [[nodiscard]] Result_t AddKey(const UUID& id, std::span<const ui8_t, ContentKeys::KeySize> key, Ferro::ILogSink& log);
  /// Adds the keys of a text, all or none: lines of an identifier, a colon and a key of 32 hexadecimal digits,
  /// "0b2c1f5e-97a0-4a5c-8f0e-2f1d0c9b8a76:00112233445566778899aabbccddeeff", the identifier with or without "urn:uuid:".
  /// Blank lines and such that begin with "#" are passed over.
  /// @return RESULT_OK with at least one key; RESULT_SG_KEY_FILE, logged with the number of the line and no more of it;
  /// otherwise as AddKey.
  [[nodiscard]] Result_t AddKeyText(std::span<const ui8_t> text, Ferro::ILogSink& log);
  /// The same for a file. Otherwise as Ferro::FileReader; Ferro::RESULT_TOOLARGE above MaxKeyFile. Failures are logged.
  [[nodiscard]] Result_t AddKeyFile(const std::string& filename, Ferro::ILogSink& log);

  [[nodiscard]] bool Has(const UUID& id) const { return m_Keys.contains(id); }
  [[nodiscard]] size_t Size() const { return m_Keys.size(); }

  /// Puts a key into contexts, which one thread may use at a time; ask once for each thread and track.
  /// @param track  whose KeyID and LabelSet tell which key, and how its integrity key is derived.
  /// @return RESULT_OK; QUIRE::RESULT_DECRYPT_CTX where there is no such key; as QUIRE::FrameContexts::InitKey.
  [[nodiscard]] Result_t FillContexts(const QUIRE::TrackEncryption& track, QUIRE::FrameContexts& out) const;
  /// Hands out a key, for whoever makes a key message of it. @return RESULT_OK; QUIRE::RESULT_DECRYPT_CTX where there is no
  /// such key; Ferro::RESULT_ALLOC where there is no memory for secrets left; on failure `out` is unspecified.
  [[nodiscard]] Result_t CopyKey(const UUID& id, SecretBytes& out) const;

 private:
  using Keys = std::map<UUID, SecretBytes>;

  [[nodiscard]] Result_t Prepare(const UUID& id, std::span<const ui8_t> key, Keys& added, Ferro::ILogSink& log) const;

  Keys m_Keys;  // of ContentKeys::KeySize bytes
};

}  // namespace Sigil
