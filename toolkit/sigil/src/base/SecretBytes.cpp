// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/SecretBytes.h>

#include "base/SecretHeap.h"

#include <Ferro/Assert.h>

#include <openssl/crypto.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>

namespace Sigil {

// OpenSSL puts the private parts of the keys that it reads there, too. A host that set up one of its own keeps it.
void PrepareSecretHeap() {
  static std::once_flag s_Once;
  std::call_once(s_Once, [] {
    constexpr size_t Size = 1024 * 1024;
    constexpr size_t SmallestPiece = 32;
    if (CRYPTO_secure_malloc_initialized() == 0) CRYPTO_secure_malloc_init(Size, SmallestPiece);
  });
}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept
    : m_Bytes(std::exchange(other.m_Bytes, nullptr)),
      m_Size(std::exchange(other.m_Size, 0)),
      m_Capacity(std::exchange(other.m_Capacity, 0)) {}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept {
  std::swap(m_Bytes, other.m_Bytes);
  std::swap(m_Size, other.m_Size);
  std::swap(m_Capacity, other.m_Capacity);
  return *this;
}

SecretBytes::~SecretBytes() {
  OPENSSL_secure_clear_free(m_Bytes, m_Capacity);
}

bool SecretBytes::Resize(size_t size) {
  PrepareSecretHeap();
  OPENSSL_secure_clear_free(std::exchange(m_Bytes, nullptr), m_Capacity);
  m_Size = m_Capacity = 0;
  // Without its heap OpenSSL would hand out ordinary memory.
  if (size == 0) return true;
  if (CRYPTO_secure_malloc_initialized() == 0) return false;
  m_Bytes = static_cast<ui8_t*>(OPENSSL_secure_zalloc(size));
  if (m_Bytes != nullptr) m_Size = m_Capacity = size;
  return m_Bytes != nullptr;
}

bool SecretBytes::Assign(std::span<const ui8_t> bytes) {
  if (!Resize(bytes.size())) return false;
  std::ranges::copy(bytes, m_Bytes);
  return true;
}

void SecretBytes::Truncate(size_t size) {
  FERRO_ASSERT(size <= m_Size);
  if (m_Bytes != nullptr) OPENSSL_cleanse(m_Bytes + size, m_Size - size);
  m_Size = size;
}

}  // namespace Sigil
