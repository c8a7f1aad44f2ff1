// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Certificate.h>
#include <Sigil/Finding.h>

#include <Cairn/DCPFormat.h>

#include <optional>
#include <span>

namespace Sigil {

/// What a chain is judged by.
struct ChainContext {
  Timestamp At;                                 ///< the moment that counts: a document's issue date, not today
  std::optional<Timestamp> Today;               ///< given: certificates that ran out since are noted
  CertificateList TrustedRoots;                 ///< empty: any self-signed root is taken as it comes
  Cairn::DCPFormat_t Format = Cairn::DFT_NONE;  ///< DFT_Interop allows sha1WithRSA; all others do not
  bool IsSigner = true;  ///< the leaf signs documents; otherwise it is a device's, with roles of its own
};

/// Certificates put in order, and what is to be said of them.
struct ChainReport {
  CertificateList Chain;    ///< leaf first, each followed by its issuer, as far as they are there
  CertificateList Strays;   ///< outside the chain
  bool HasRepeats = false;  ///< some certificate was given twice
  FindingList Findings;     ///< leaf's first

  /// True when the leaf may be relied on.
  [[nodiscard]] bool Holds() const { return !Chain.empty() && !HasErrors(Findings); }
};

/// Puts certificates in order and checks the rules for D-Cinema certificates (ST 430-2:2017, 6.2) and those for any X.509
/// chain (RFC 5280). They may come in any order. Fetches nothing and reads no clock. Any thread
/// may call it.
[[nodiscard]] SIGIL_API ChainReport CheckChain(std::span<const Certificate> certificates, const ChainContext& context);

}  // namespace Sigil
