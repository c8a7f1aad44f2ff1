// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>
#include <string>

namespace Sigil {

/// Calls a function to free what a pointer owns.
template <auto Free>
struct FreeWith {
  template <class T>
  void operator()(T* object) const {
    Free(object);
  }
};

using BIOPointer = std::unique_ptr<BIO, FreeWith<BIO_free_all>>;
using BNPointer = std::unique_ptr<BIGNUM, FreeWith<BN_free>>;
using KeyPointer = std::unique_ptr<EVP_PKEY, FreeWith<EVP_PKEY_free>>;
using KeyContextPointer = std::unique_ptr<EVP_PKEY_CTX, FreeWith<EVP_PKEY_CTX_free>>;
using X509Pointer = std::unique_ptr<X509, FreeWith<X509_free>>;
using StorePointer = std::unique_ptr<X509_STORE, FreeWith<X509_STORE_free>>;
using StoreContextPointer = std::unique_ptr<X509_STORE_CTX, FreeWith<X509_STORE_CTX_free>>;
using AuthorityKeyPointer = std::unique_ptr<AUTHORITY_KEYID, FreeWith<AUTHORITY_KEYID_free>>;

/// What a BIO in memory holds.
[[nodiscard]] inline std::string TextOf(BIO* memory) {
  char* text = nullptr;
  const long length = BIO_get_mem_data(memory, &text);
  return length > 0 ? std::string(text, static_cast<size_t>(length)) : std::string();
}

}  // namespace Sigil
