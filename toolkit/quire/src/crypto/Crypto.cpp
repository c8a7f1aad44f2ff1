// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Crypto.h>

#include "CheckValue.h"

#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/params.h>
#include <openssl/sha.h>

#include <algorithm>
#include <memory>

namespace QUIRE {

namespace {

constexpr size_t MaxCipherPiece = size_t{1} << 30;  // the cipher library counts in int

struct CipherDeleter {
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};

// One direction of AES-128 CBC without padding; the directions differ in one flag.
class CipherChain {
 public:
  explicit CipherChain(bool encrypt) : m_Encrypt(encrypt) {}

  Result_t InitKey(std::span<const ui8_t, KeyLen> key) {
    m_HasKey = m_HasIVec = false;
    if (!m_Context) m_Context.reset(EVP_CIPHER_CTX_new());
    if (!m_Context) return Ferro::RESULT_ALLOC;
    if (EVP_CipherInit_ex2(m_Context.get(), EVP_aes_128_cbc(), key.data(), nullptr, m_Encrypt, nullptr) != 1 ||
        EVP_CIPHER_CTX_set_padding(m_Context.get(), 0) != 1) {
      return RESULT_CRYPT_INIT;
    }
    m_HasKey = true;
    return Ferro::RESULT_OK;
  }

  Result_t SetIVec(std::span<const ui8_t, CBC_BLOCK_SIZE> ivec) {
    if (!m_HasKey) return Ferro::RESULT_INIT;
    if (EVP_CipherInit_ex2(m_Context.get(), nullptr, nullptr, ivec.data(), m_Encrypt, nullptr) != 1) {
      return RESULT_CRYPT_INIT;
    }
    m_HasIVec = true;
    return Ferro::RESULT_OK;
  }

  Result_t Run(std::span<const ui8_t> in, std::span<ui8_t> out) {
    if (!m_HasIVec) return Ferro::RESULT_INIT;
    if (in.size() != out.size() || in.size() % CBC_BLOCK_SIZE != 0) return Ferro::RESULT_PARAM;
    for (size_t done = 0; done < in.size();) {
      const size_t piece = std::min(in.size() - done, MaxCipherPiece);
      int written = 0;
      if (EVP_CipherUpdate(m_Context.get(), out.data() + done, &written, in.data() + done, static_cast<int>(piece)) !=
              1 ||
          static_cast<size_t>(written) != piece) {
        return RESULT_CRYPT_INIT;
      }
      done += piece;
    }
    return Ferro::RESULT_OK;
  }

 private:
  const bool m_Encrypt;
  std::unique_ptr<EVP_CIPHER_CTX, CipherDeleter> m_Context;
  bool m_HasKey = false;
  bool m_HasIVec = false;
};

struct MACDeleter {
  void operator()(EVP_MAC* mac) const { EVP_MAC_free(mac); }
  void operator()(EVP_MAC_CTX* context) const { EVP_MAC_CTX_free(context); }
};

// The SHA-1 compression function over one block, starting from the standard initial state: FIPS 186-2's function G.
std::array<ui8_t, SHA_DIGEST_LENGTH> CompressOneBlock(const std::array<ui8_t, SHA_CBLOCK>& block) {
  SHA_CTX state;
  SHA1_Init(&state);
  SHA1_Transform(&state, block.data());
  std::array<ui8_t, SHA_DIGEST_LENGTH> out{};
  const SHA_LONG words[] = {state.h0, state.h1, state.h2, state.h3, state.h4};
  for (size_t i = 0; i < out.size(); ++i) out[i] = static_cast<ui8_t>(words[i / 4] >> (24 - 8 * (i % 4)));
  OPENSSL_cleanse(&state, sizeof state);
  return out;
}

// x = w0 | w1 with w0 = G(XKEY), XKEY <- (1 + XKEY + w0) mod 2^160, w1 = G(XKEY); the key starts w1.
void DeriveSMPTE(std::span<const ui8_t, KeyLen> content_key, std::array<ui8_t, KeyLen>& out) {
  std::array<ui8_t, SHA_CBLOCK> xkey{};
  std::copy(content_key.begin(), content_key.end(), xkey.begin());
  auto word = CompressOneBlock(xkey);
  unsigned carry = 1;
  for (size_t i = word.size(); i-- > 0;) {
    carry += unsigned{xkey[i]} + word[i];
    xkey[i] = static_cast<ui8_t>(carry);
    carry >>= 8;
  }
  word = CompressOneBlock(xkey);
  std::copy_n(word.begin(), out.size(), out.begin());
  OPENSSL_cleanse(xkey.data(), xkey.size());
  OPENSSL_cleanse(word.data(), word.size());
}

void DeriveInterop(std::span<const ui8_t, KeyLen> content_key, std::array<ui8_t, KeyLen>& out) {
  std::array<ui8_t, 2 * KeyLen> input{};
  std::copy(content_key.begin(), content_key.end(), input.begin());
  for (size_t i = 0; i < KeyLen; ++i) input[KeyLen + i] = static_cast<ui8_t>(0x11 * i);
  std::array<ui8_t, SHA_DIGEST_LENGTH> digest{};
  SHA1(input.data(), input.size(), digest.data());
  std::copy_n(digest.begin(), out.size(), out.begin());
  OPENSSL_cleanse(input.data(), input.size());
  OPENSSL_cleanse(digest.data(), digest.size());
}

}  // namespace

struct AESEncContext::State : CipherChain {
  State() : CipherChain(true) {}
};
AESEncContext::AESEncContext() : m_State(new State) {}
AESEncContext::~AESEncContext() = default;
AESEncContext::AESEncContext(AESEncContext&&) noexcept = default;
AESEncContext& AESEncContext::operator=(AESEncContext&&) noexcept = default;
Result_t AESEncContext::InitKey(std::span<const ui8_t, KeyLen> key) {
  return m_State->InitKey(key);
}
Result_t AESEncContext::SetIVec(std::span<const ui8_t, CBC_BLOCK_SIZE> ivec) {
  return m_State->SetIVec(ivec);
}
Result_t AESEncContext::EncryptBlock(std::span<const ui8_t> in, std::span<ui8_t> out) {
  return m_State->Run(in, out);
}

struct AESDecContext::State : CipherChain {
  State() : CipherChain(false) {}
};
AESDecContext::AESDecContext() : m_State(new State) {}
AESDecContext::~AESDecContext() = default;
AESDecContext::AESDecContext(AESDecContext&&) noexcept = default;
AESDecContext& AESDecContext::operator=(AESDecContext&&) noexcept = default;
Result_t AESDecContext::InitKey(std::span<const ui8_t, KeyLen> key) {
  return m_State->InitKey(key);
}
Result_t AESDecContext::SetIVec(std::span<const ui8_t, CBC_BLOCK_SIZE> ivec) {
  return m_State->SetIVec(ivec);
}
Result_t AESDecContext::DecryptBlock(std::span<const ui8_t> in, std::span<ui8_t> out) {
  return m_State->Run(in, out);
}

Result_t DeriveMICKey(std::span<const ui8_t, KeyLen> content_key, LabelSet_t label_set,
                      std::array<ui8_t, KeyLen>& out) {
  switch (label_set) {
    case LS_MXF_SMPTE:
      DeriveSMPTE(content_key, out);
      return Ferro::RESULT_OK;
    case LS_MXF_INTEROP:
      DeriveInterop(content_key, out);
      return Ferro::RESULT_OK;
    case LS_MXF_UNKNOWN:
      break;
  }
  return Ferro::RESULT_PARAM;
}

struct HMACContext::State {
  std::unique_ptr<EVP_MAC_CTX, MACDeleter> Context;
  std::array<ui8_t, HMAC_SIZE> Value{};
  bool Started = false;
  bool Finished = false;
};

HMACContext::HMACContext() : m_State(new State) {}
HMACContext::~HMACContext() = default;
HMACContext::HMACContext(HMACContext&&) noexcept = default;
HMACContext& HMACContext::operator=(HMACContext&&) noexcept = default;

Result_t HMACContext::InitKey(std::span<const ui8_t, KeyLen> content_key, LabelSet_t label_set) {
  *m_State = State{};
  std::array<ui8_t, KeyLen> key{};
  if (const Result_t result = DeriveMICKey(content_key, label_set, key); result.Failure()) return result;

  const std::unique_ptr<EVP_MAC, MACDeleter> mac(EVP_MAC_fetch(nullptr, "HMAC", nullptr));
  std::unique_ptr<EVP_MAC_CTX, MACDeleter> context(mac ? EVP_MAC_CTX_new(mac.get()) : nullptr);
  char digest[] = "SHA1";
  const OSSL_PARAM parameters[] = {OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest, 0),
                                   OSSL_PARAM_construct_end()};
  const bool ready = context && EVP_MAC_init(context.get(), key.data(), key.size(), parameters) == 1;
  OPENSSL_cleanse(key.data(), key.size());
  if (!ready) return RESULT_CRYPT_INIT;
  m_State->Context = std::move(context);
  m_State->Started = true;
  return Ferro::RESULT_OK;
}

Result_t HMACContext::Reset() {
  if (!m_State->Context) return Ferro::RESULT_INIT;
  m_State->Finished = false;
  m_State->Started = EVP_MAC_init(m_State->Context.get(), nullptr, 0, nullptr) == 1;
  return m_State->Started ? Ferro::RESULT_OK : RESULT_CRYPT_INIT;
}

Result_t HMACContext::Update(std::span<const ui8_t> bytes) {
  if (!m_State->Started) return Ferro::RESULT_INIT;
  return EVP_MAC_update(m_State->Context.get(), bytes.data(), bytes.size()) == 1 ? Ferro::RESULT_OK : RESULT_CRYPT_INIT;
}

Result_t HMACContext::Finalize() {
  if (!m_State->Started) return Ferro::RESULT_INIT;
  size_t length = 0;
  m_State->Started = false;
  m_State->Finished =
      EVP_MAC_final(m_State->Context.get(), m_State->Value.data(), &length, m_State->Value.size()) == 1 &&
      length == HMAC_SIZE;
  return m_State->Finished ? Ferro::RESULT_OK : RESULT_CRYPT_INIT;
}

Result_t HMACContext::GetHMACValue(std::span<ui8_t, HMAC_SIZE> out) const {
  if (!m_State->Finished) return Ferro::RESULT_INIT;
  std::copy(m_State->Value.begin(), m_State->Value.end(), out.begin());
  return Ferro::RESULT_OK;
}

Result_t HMACContext::TestHMACValue(std::span<const ui8_t, HMAC_SIZE> expected) const {
  if (!m_State->Finished) return Ferro::RESULT_INIT;
  return CRYPTO_memcmp(m_State->Value.data(), expected.data(), HMAC_SIZE) == 0 ? Ferro::RESULT_OK : RESULT_HMACFAIL;
}

ui64_t EncryptedSourceLength(ui64_t source_length, ui64_t plaintext_offset) {
  return 3 * CBC_BLOCK_SIZE + plaintext_offset + (source_length - plaintext_offset) / CBC_BLOCK_SIZE * CBC_BLOCK_SIZE;
}

Result_t EncryptFrame(std::span<const ui8_t> source, ui64_t plaintext_offset,
                      std::span<const ui8_t, CBC_BLOCK_SIZE> ivec, AESEncContext& context, std::span<ui8_t> out) {
  if (plaintext_offset > source.size()) return RESULT_LARGE_PTO;
  if (out.size() != EncryptedSourceLength(source.size(), plaintext_offset)) return Ferro::RESULT_SMALLBUF;

  const auto clear = source.first(static_cast<size_t>(plaintext_offset));
  const auto secret = source.subspan(clear.size());
  const size_t whole = secret.size() / CBC_BLOCK_SIZE * CBC_BLOCK_SIZE;
  CipherBlock last;  // the bytes past the last whole block, then as many padding bytes as their value says
  last.fill(static_cast<ui8_t>(CBC_BLOCK_SIZE - (secret.size() - whole)));
  std::copy(secret.begin() + static_cast<std::ptrdiff_t>(whole), secret.end(), last.begin());

  std::copy(ivec.begin(), ivec.end(), out.begin());
  const auto check = out.subspan(CBC_BLOCK_SIZE, CBC_BLOCK_SIZE);
  const auto body = out.subspan(2 * CBC_BLOCK_SIZE + clear.size());
  std::copy(clear.begin(), clear.end(), out.begin() + 2 * CBC_BLOCK_SIZE);

  Result_t result = context.SetIVec(ivec);
  if (result.Success()) result = context.EncryptBlock(CheckValue, check);
  if (result.Success()) result = context.EncryptBlock(secret.first(whole), body.first(whole));
  if (result.Success()) result = context.EncryptBlock(last, body.subspan(whole));
  return result;
}

Result_t DecryptFrame(std::span<const ui8_t> value, ui64_t source_length, ui64_t plaintext_offset,
                      AESDecContext& context, std::span<ui8_t> out) {
  if (plaintext_offset > source_length || source_length > value.size() ||
      value.size() != EncryptedSourceLength(source_length, plaintext_offset)) {
    return RESULT_FORMAT;
  }
  if (out.size() != source_length) return Ferro::RESULT_SMALLBUF;

  Result_t result = TestKey(value.first<CheckedStart>(), context);
  if (result.Failure()) return result;

  const auto clear = value.subspan(2 * CBC_BLOCK_SIZE, static_cast<size_t>(plaintext_offset));
  const auto body = value.subspan(2 * CBC_BLOCK_SIZE + clear.size());
  const auto secret = out.subspan(clear.size());
  const size_t whole = secret.size() / CBC_BLOCK_SIZE * CBC_BLOCK_SIZE;
  CipherBlock last;
  result = context.DecryptBlock(body.first(whole), secret.first(whole));
  if (result.Success()) result = context.DecryptBlock(body.subspan(whole), last);
  if (result.Failure()) return result;
  std::copy(clear.begin(), clear.end(), out.begin());
  std::copy_n(last.begin(), secret.size() - whole, secret.begin() + static_cast<std::ptrdiff_t>(whole));
  OPENSSL_cleanse(last.data(), last.size());
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE
