// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/KeyRing.h>

#include <Ferro/FileReader.h>

#include <openssl/crypto.h>

#include <algorithm>
#include <optional>
#include <string_view>

namespace Sigil {
namespace {

/// The value of a hexadecimal digit; -1 for anything else.
int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const char lower = static_cast<char>(digit | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Not by Ferro's decoder, whose intermediate text would not be wiped.
bool DecodeKey(std::string_view text, std::span<ui8_t, ContentKeys::KeySize> key) {
  if (text.size() != 2 * key.size()) return false;
  for (size_t i = 0; i < key.size(); ++i) {
    const int high = DigitValue(text[2 * i]);
    const int low = DigitValue(text[2 * i + 1]);
    if (high < 0 || low < 0) return false;
    key[i] = static_cast<ui8_t>(high << 4 | low);
  }
  return true;
}

std::string_view Trimmed(std::string_view line) {
  constexpr std::string_view Blank = " \t\r";
  const size_t first = line.find_first_not_of(Blank);
  return first == line.npos ? std::string_view() : line.substr(first, line.find_last_not_of(Blank) - first + 1);
}

/// Splits "urn:uuid:identifier:key".
bool ReadLine(std::string_view line, UUID& id, SecretBytes& key) {
  constexpr std::string_view Prefix = "urn:uuid:";
  if (line.starts_with(Prefix)) line.remove_prefix(Prefix.size());
  const size_t colon = line.find(':');
  const std::optional<UUID> read = UUID::FromHex(Trimmed(line.substr(0, colon)));
  if (colon == line.npos || !read) return false;
  id = *read;
  return DecodeKey(Trimmed(line.substr(colon + 1)), key.Bytes().first<ContentKeys::KeySize>());
}

}  // namespace

KeyRing::KeyRing() = default;
KeyRing::~KeyRing() = default;
KeyRing::KeyRing(KeyRing&&) noexcept = default;
KeyRing& KeyRing::operator=(KeyRing&&) noexcept = default;

// Collects a key in `added`; what is there is added once all keys fit.
Result_t KeyRing::Prepare(const UUID& id, std::span<const ui8_t> key, Keys& added, Ferro::ILogSink& log) const {
  for (const Keys* keys : {&m_Keys, static_cast<const Keys*>(&added)}) {
    const auto known = keys->find(id);
    if (known == keys->end()) continue;
    if (CRYPTO_memcmp(known->second.Bytes().data(), key.data(), key.size()) == 0) return Ferro::RESULT_OK;
    log.Error("Key %s: %s\n", id.EncodeString().c_str(), RESULT_SG_KEY_CONFLICT.Label());
    return RESULT_SG_KEY_CONFLICT;
  }
  return added[id].Assign(key) ? Ferro::RESULT_OK : Ferro::RESULT_ALLOC;
}

Result_t KeyRing::AddMessage(const KeyMessage& message, const PrivateKey& key, Ferro::ILogSink& log) {
  ContentKeys opened;
  Keys added;
  Result_t result = ContentKeys::Open(message, key, opened, log);
  for (const ContentKey& entry : opened.Keys)
    if (result.Success()) result = Prepare(entry.Entry.ID, entry.Key.Bytes(), added, log);
  if (result.Success()) m_Keys.merge(added);
  return result;
}

Result_t KeyRing::AddKey(const UUID& id, std::span<const ui8_t, ContentKeys::KeySize> key, Ferro::ILogSink& log) {
  Keys added;
  const Result_t result = Prepare(id, key, added, log);
  if (result.Success()) m_Keys.merge(added);
  return result;
}

Result_t KeyRing::AddKeyText(std::span<const ui8_t> text, Ferro::ILogSink& log) {
  std::string_view rest(reinterpret_cast<const char*>(text.data()), text.size());
  Keys added;
  bool has_keys = false;
  for (unsigned number = 1; !rest.empty(); ++number) {
    const std::string_view line = Trimmed(rest.substr(0, rest.find('\n')));
    rest.remove_prefix(std::min(rest.find('\n'), rest.size() - 1) + 1);
    if (line.empty() || line.front() == '#') continue;
    UUID id;
    SecretBytes key;
    if (!key.Resize(ContentKeys::KeySize)) return Ferro::RESULT_ALLOC;
    if (!ReadLine(line, id, key)) {
      log.Error("Key file: line %u is not an identifier, a colon and a key of 32 hexadecimal digits\n", number);
      return RESULT_SG_KEY_FILE;
    }
    if (const Result_t result = Prepare(id, key.Bytes(), added, log); result.Failure()) return result;
    has_keys = true;
  }
  if (!has_keys) {
    log.Error("Key file: there is no key in it\n");
    return RESULT_SG_KEY_FILE;
  }
  m_Keys.merge(added);
  return Ferro::RESULT_OK;
}

Result_t KeyRing::AddKeyFile(const std::string& filename, Ferro::ILogSink& log) {
  Ferro::FileReader reader;
  SecretBytes text;
  Result_t result = reader.OpenRead(filename);
  if (result.Success() && reader.Size() > MaxKeyFile) result = Ferro::RESULT_TOOLARGE;
  if (result.Success() && !text.Resize(static_cast<size_t>(reader.Size()))) result = Ferro::RESULT_ALLOC;
  if (result.Success()) result = reader.ReadAt(0, text.Bytes());
  if (result.Success()) result = AddKeyText(text.Bytes(), log);
  if (result.Failure()) log.Error("%s: %s\n", filename.c_str(), result.Label());
  return result;
}

Result_t KeyRing::CopyKey(const UUID& id, SecretBytes& out) const {
  const auto found = m_Keys.find(id);
  if (found == m_Keys.end()) return QUIRE::RESULT_DECRYPT_CTX;
  return out.Assign(found->second.Bytes()) ? Ferro::RESULT_OK : Ferro::RESULT_ALLOC;
}

Result_t KeyRing::FillContexts(const QUIRE::TrackEncryption& track, QUIRE::FrameContexts& out) const {
  const auto found = m_Keys.find(track.KeyID);
  if (found == m_Keys.end()) return QUIRE::RESULT_DECRYPT_CTX;
  return out.InitKey(found->second.Bytes().first<ContentKeys::KeySize>(), track.LabelSet);
}

}  // namespace Sigil
