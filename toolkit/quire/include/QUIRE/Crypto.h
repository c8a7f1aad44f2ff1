// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/LabelSet.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <Ferro/mem_ptr.h>

#include <array>
#include <span>

namespace QUIRE {

// Essence encryption and integrity of D-Cinema track files (ST 429-6): AES-128 in cipher block chaining mode
// (NIST SP 800-38A, 6.2) and HMAC-SHA1 (RFC 2104). The contexts hold secrets, which are wiped when they end. They are
// not copied; one thread at a time uses a context.

inline constexpr ui32_t KeyLen = 16;          // bytes in a content key and in an integrity key
inline constexpr ui32_t CBC_BLOCK_SIZE = 16;  // bytes in an AES block and in an initialization vector
inline constexpr ui32_t HMAC_SIZE = 20;       // bytes in an HMAC-SHA1 value

using CipherBlock = std::array<ui8_t, CBC_BLOCK_SIZE>;

/// AES-128 CBC encryption. After SetIVec any number of EncryptBlock calls continue one chain.
class QUIRE_API AESEncContext {
 public:
  AESEncContext();
  ~AESEncContext();
  AESEncContext(AESEncContext&&) noexcept;
  AESEncContext& operator=(AESEncContext&&) noexcept;

  /// Takes the content key; the chain is then unset.
  /// @return RESULT_OK; RESULT_CRYPT_INIT when the cipher library refuses.
  [[nodiscard]] Result_t InitKey(std::span<const ui8_t, KeyLen> key);
  /// Starts a new chain. @return RESULT_OK; RESULT_INIT before InitKey; RESULT_CRYPT_INIT.
  [[nodiscard]] Result_t SetIVec(std::span<const ui8_t, CBC_BLOCK_SIZE> ivec);
  /// Encrypts whole blocks. `out` is as long as `in` and either the same bytes or apart from them.
  /// @return RESULT_OK; RESULT_INIT before SetIVec; RESULT_PARAM for a length that is no multiple of 16 or lengths that
  /// differ; RESULT_CRYPT_INIT.
  [[nodiscard]] Result_t EncryptBlock(std::span<const ui8_t> in, std::span<ui8_t> out);

 private:
  struct State;
  Ferro::mem_ptr<State> m_State;
};

/// AES-128 CBC decryption; the counterpart of AESEncContext.
class QUIRE_API AESDecContext {
 public:
  AESDecContext();
  ~AESDecContext();
  AESDecContext(AESDecContext&&) noexcept;
  AESDecContext& operator=(AESDecContext&&) noexcept;

  /// As AESEncContext::InitKey.
  [[nodiscard]] Result_t InitKey(std::span<const ui8_t, KeyLen> key);
  /// As AESEncContext::SetIVec.
  [[nodiscard]] Result_t SetIVec(std::span<const ui8_t, CBC_BLOCK_SIZE> ivec);
  /// As AESEncContext::EncryptBlock.
  [[nodiscard]] Result_t DecryptBlock(std::span<const ui8_t> in, std::span<ui8_t> out);

 private:
  struct State;
  Ferro::mem_ptr<State> m_State;
};

/// Derives the integrity key from the content key: SMPTE by the second block of the generator of RFC 4187, Appendix A
/// (ST 429-6, 9.11); Interop by SHA-1 of the content key and a constant.
/// @return RESULT_OK; RESULT_PARAM for LS_MXF_UNKNOWN.
[[nodiscard]] QUIRE_API Result_t DeriveMICKey(std::span<const ui8_t, KeyLen> content_key, LabelSet_t label_set,
                                              std::array<ui8_t, KeyLen>& out);

/// HMAC-SHA1 under the integrity key that belongs to a content key.
class QUIRE_API HMACContext {
 public:
  HMACContext();
  ~HMACContext();
  HMACContext(HMACContext&&) noexcept;
  HMACContext& operator=(HMACContext&&) noexcept;

  /// Derives the integrity key from the content key and starts a computation.
  /// @return RESULT_OK; RESULT_PARAM for LS_MXF_UNKNOWN; RESULT_CRYPT_INIT when the library refuses.
  [[nodiscard]] Result_t InitKey(std::span<const ui8_t, KeyLen> content_key, LabelSet_t label_set);
  /// Starts a new computation under the same key. @return RESULT_OK; RESULT_INIT before InitKey; RESULT_CRYPT_INIT.
  [[nodiscard]] Result_t Reset();
  /// Adds bytes. @return RESULT_OK; RESULT_INIT before InitKey or after Finalize; RESULT_CRYPT_INIT.
  [[nodiscard]] Result_t Update(std::span<const ui8_t> bytes);
  /// Ends the computation; its value stays until Reset. @return RESULT_OK; RESULT_INIT; RESULT_CRYPT_INIT.
  [[nodiscard]] Result_t Finalize();
  /// The value of the finished computation. @return RESULT_OK; RESULT_INIT before Finalize.
  [[nodiscard]] Result_t GetHMACValue(std::span<ui8_t, HMAC_SIZE> out) const;
  /// Compares in constant time. @return RESULT_OK when equal; RESULT_HMACFAIL; RESULT_INIT before Finalize.
  [[nodiscard]] Result_t TestHMACValue(std::span<const ui8_t, HMAC_SIZE> expected) const;

 private:
  struct State;
  Ferro::mem_ptr<State> m_State;
};

// The encrypted source value of one frame (ST 429-6, 9.7): initialization vector 16, encrypted check value 16, the
// frame's first `plaintext_offset` bytes in clear, then the rest encrypted in the check value's chain and padded to
// whole blocks with 1 to 16 bytes.

/// Bytes in the encrypted source value: 48 + p + 16 * floor((s - p) / 16). `plaintext_offset` is at most
/// `source_length`, which is below 2^63.
[[nodiscard]] QUIRE_API ui64_t EncryptedSourceLength(ui64_t source_length, ui64_t plaintext_offset);

/// Encrypts one frame.
/// @param ivec  the chain's start; never twice the same under one key.
/// @param out   exactly EncryptedSourceLength bytes, apart from `source`; on failure its contents are unspecified.
/// @return RESULT_OK; RESULT_LARGE_PTO when the offset exceeds the frame; RESULT_SMALLBUF for another size of `out`;
/// RESULT_INIT before InitKey; RESULT_CRYPT_INIT.
[[nodiscard]] QUIRE_API Result_t EncryptFrame(std::span<const ui8_t> source, ui64_t plaintext_offset,
                                              std::span<const ui8_t, CBC_BLOCK_SIZE> ivec, AESEncContext& context,
                                              std::span<ui8_t> out);

/// Decrypts one frame; the check value comes first, so that a wrong key hands out nothing.
/// @param value  the encrypted source value as stored.
/// @param out    exactly `source_length` bytes, apart from `value`. Unchanged by every result but RESULT_OK and
///               RESULT_CRYPT_INIT.
/// @return RESULT_OK; RESULT_FORMAT when the offset exceeds the source length or the size of `value` does not follow
/// from both; RESULT_SMALLBUF for another size of `out`; RESULT_CHECKFAIL for a wrong key; RESULT_INIT before InitKey;
/// RESULT_CRYPT_INIT.
[[nodiscard]] QUIRE_API Result_t DecryptFrame(std::span<const ui8_t> value, ui64_t source_length,
                                              ui64_t plaintext_offset, AESDecContext& context, std::span<ui8_t> out);

}  // namespace QUIRE
