// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "base/OpenSSLPointer.h"

#include <Sigil/PrivateKey.h>

#include <utility>

namespace Sigil {

/// What a private key shares with its copies.
struct PrivateKeyState {
  KeyPointer Key;

  [[nodiscard]] static PrivateKey Wrap(std::shared_ptr<const PrivateKeyState> state) {
    return PrivateKey(std::move(state));
  }
  /// Not const, because much of OpenSSL's interface is not; nothing modifies it.
  [[nodiscard]] static EVP_PKEY* KeyOf(const PrivateKey& key) { return key.m_State->Key.get(); }
};

}  // namespace Sigil
