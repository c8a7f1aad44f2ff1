// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "base/OpenSSLPointer.h"

#include <Sigil/Certificate.h>

#include <utility>
#include <vector>

namespace Sigil {

/// What a certificate shares with its copies.
struct CertificateState {
  X509Pointer X;
  std::vector<ui8_t> DER;
  DistinguishedName Subject;
  DistinguishedName Issuer;
  std::string SerialNumber;
  Timestamp NotBefore;
  Timestamp NotAfter;
  SHA1 Thumbprint;
  SHA1 PublicKeyThumbprint;
  bool IsCA = false;

  [[nodiscard]] static Certificate Wrap(std::shared_ptr<const CertificateState> state) {
    return Certificate(std::move(state));
  }
  /// Not const, because much of OpenSSL's interface is not; nothing modifies it.
  [[nodiscard]] static X509* X509Of(const Certificate& certificate) { return certificate.m_State->X.get(); }
};

/// A name as OpenSSL has it. Values that are no text come out empty.
[[nodiscard]] DistinguishedName NameFrom(const X509_NAME* name);

}  // namespace Sigil
