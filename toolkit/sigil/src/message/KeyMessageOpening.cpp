// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/ContentKeys.h>

#include "base/OpenSSLPointer.h"
#include "key/PrivateKeyState.h"
#include "message/MessageVocabulary.h"
#include "message/PlainKey.h"

#include <openssl/rsa.h>

#include <algorithm>
#include <set>

namespace Sigil {
namespace {

Result_t Refuse(Ferro::ILogSink& log, Result_t result) {
  ERR_clear_error();
  log.Error("Key message not opened: %s\n", result.Label());
  return result;
}

/// Decrypts all keys, even after one has failed; the plaintext of that one is empty. False when there is no memory for
/// secrets.
bool Decrypt(const KeyMessage& message, const PrivateKey& key, std::vector<SecretBytes>& plains) {
  for (const std::vector<ui8_t>& encrypted : message.EncryptedKeys) {
    const KeyContextPointer context(EVP_PKEY_CTX_new(PrivateKeyState::KeyOf(key), nullptr));
    SecretBytes& plain = plains.emplace_back();
    if (!plain.Resize(EncryptedKeySize)) return false;
    size_t size = plain.Size();
    const bool is_plain =
        EVP_PKEY_decrypt_init(context.get()) == 1 &&
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_OAEP_PADDING) == 1 &&
        EVP_PKEY_CTX_set_rsa_oaep_md(context.get(), EVP_sha1()) == 1 &&
        EVP_PKEY_CTX_set_rsa_mgf1_md(context.get(), EVP_sha1()) == 1 &&
        EVP_PKEY_decrypt(context.get(), plain.Bytes().data(), &size, encrypted.data(), encrypted.size()) == 1;
    plain.Truncate(is_plain ? size : 0);
  }
  return true;
}

/// The entry of the key list that a plaintext is for; null when there is none.
const KeyEntry* EntryOf(const KeyMessage& message, const SecretBytes& plain) {
  const UUID id = PlainKey::IDOf(plain.Bytes());
  const auto found = std::ranges::find(message.Keys, id, &KeyEntry::ID);
  return found == message.Keys.end() ? nullptr : &*found;
}

enum class Outcome { Agrees, Disagrees, NoMemory };

/// Compares each plaintext with what the message says in public and keeps its key. Goes on after a difference.
Outcome Compare(const KeyMessage& message, const std::vector<SecretBytes>& plains, std::vector<ContentKey>& keys) {
  PlainKey expected;
  expected.Signer = message.Signature.Chain.Chain.front().Thumbprint();
  expected.CompositionID = message.CompositionID;
  expected.NotBefore = message.NotBefore;
  expected.NotAfter = message.NotAfter;
  bool agrees = true;
  std::set<UUID> seen;
  for (const SecretBytes& plain : plains) {
    if (plain.Size() != PlainKey::TypedSize && plain.Size() != PlainKey::UntypedSize) {
      agrees = false;
      continue;
    }
    const KeyEntry* entry = EntryOf(message, plain);
    expected.Entry = entry == nullptr ? KeyEntry{} : *entry;
    agrees = expected.AgreesWith(plain.Bytes()) && agrees;
    agrees = entry != nullptr && seen.insert(entry->ID).second && agrees;
    ContentKey& key = keys.emplace_back();
    key.Entry = expected.Entry;
    if (!key.Key.Assign(PlainKey::KeyOf(plain.Bytes()))) return Outcome::NoMemory;
  }
  return agrees ? Outcome::Agrees : Outcome::Disagrees;
}

/// True for plaintexts of both lengths, and of no other.
bool AreOfBothLengths(const std::vector<SecretBytes>& plains) {
  const auto typed = std::ranges::count(plains, PlainKey::TypedSize, &SecretBytes::Size);
  const auto untyped = std::ranges::count(plains, PlainKey::UntypedSize, &SecretBytes::Size);
  return typed > 0 && untyped > 0 && static_cast<size_t>(typed + untyped) == plains.size();
}

}  // namespace

const ContentKey* ContentKeys::Find(const UUID& id) const {
  const auto found = std::ranges::find_if(Keys, [&](const ContentKey& key) { return key.Entry.ID == id; });
  return found == Keys.end() ? nullptr : &*found;
}

Result_t ContentKeys::Open(const KeyMessage& message, const PrivateKey& key, ContentKeys& out, Ferro::ILogSink& log) {
  if (message.Signature.State != SignatureState::Valid) return Refuse(log, RESULT_SG_UNVERIFIED);
  std::vector<SecretBytes> plains;
  std::vector<ContentKey> keys;
  if (!Decrypt(message, key, plains)) return Refuse(log, Ferro::RESULT_ALLOC);
  const Outcome outcome = Compare(message, plains, keys);
  if (outcome == Outcome::NoMemory) return Refuse(log, Ferro::RESULT_ALLOC);
  if (AreOfBothLengths(plains)) return Refuse(log, RESULT_SG_MESSAGE);
  if (outcome == Outcome::Disagrees) return Refuse(log, RESULT_SG_CONTENT);
  ERR_clear_error();
  out.CompositionID = message.CompositionID;
  out.NotBefore = message.NotBefore;
  out.NotAfter = message.NotAfter;
  out.Keys = std::move(keys);
  return Ferro::RESULT_OK;
}

}  // namespace Sigil
