// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/CertificateChain.h>
#include <Sigil/Export.h>
#include <Sigil/Finding.h>
#include <Sigil/PrivateKey.h>
#include <Sigil/Result.h>

#include <Cairn/SignatureMode.h>
#include <Ferro/LogSink.h>

#include <optional>
#include <string>

namespace Sigil {

/// What is known of a document's signature once it was looked at.
enum class SignatureState : ui8_t { NotSigned, Valid, Invalid };

/// The state as document models have it (Cairn::CompositionPlaylist::SignatureMode), for whoever verified one.
[[nodiscard]] SIGIL_API Cairn::SignatureMode_t SignatureModeOf(SignatureState state);

/// What a verifier may take into account beside the document.
struct SignatureContext {
  std::optional<Timestamp> Today;  ///< given: certificates that ran out since are noted
  CertificateList TrustedRoots;    ///< empty: any self-signed root is taken as it comes
};

struct SignatureReport {
  SignatureState State = SignatureState::NotSigned;
  FindingList Findings;  ///< of the signature, then of the chain
  ChainReport Chain;     ///< of the signer, judged at the document's issue date; empty where it was not come to

  /// The first error's text; empty unless the state is Invalid.
  [[nodiscard]] SIGIL_API std::string Reason() const;
};

/// Verifies the signature of a composition playlist, a packing list (both flavours) or a key delivery message over the
/// document's own bytes (ST 429-7, 6.13; ST 429-8, 5.10; ST 430-3; RFC 3275).
///
/// One signature is accepted, a child of the document element, which covers all of the document, or in key messages both
/// of its signed parts. Whatever points elsewhere is refused, not followed: nothing is fetched. The key is that of the
/// chain's leaf, once the chain holds at the document's issue date. The document is parsed once, by Cairn's parsing
/// frame: what is signed is what Cairn's readers see. Any thread may call it.
/// @return RESULT_OK whatever the state; Cairn::RESULT_XML_PARSE or Ferro::RESULT_TOOLARGE, logged, where there is no
/// document; RESULT_SG_DOCUMENT, logged, for a document of another kind. On failure `out` is unchanged.
[[nodiscard]] SIGIL_API Result_t VerifySignature(const std::string& xml, const SignatureContext& context,
                                                 SignatureReport& out, Ferro::ILogSink& log);

/// Who signs: a private key and the certificates from its own to the root, in any order.
struct SignerIdentity {
  PrivateKey Key;
  CertificateList Chain;
};

/// Signs a composition playlist or a packing list: puts Signer and Signature behind its last element. All other bytes stay
/// as they are. rsa-sha256 in SMPTE documents, rsa-sha1 in Interop ones.
/// @return RESULT_OK; RESULT_SG_SIGNER, logged, where the chain does not hold at the issue date or is not the key's;
/// RESULT_SG_SIGN, logged, where the document has a Signer or a Signature already, or has no place for them;
/// RESULT_SG_DOCUMENT for another kind of document; those of parsing. On failure `xml` is unchanged.
[[nodiscard]] SIGIL_API Result_t SignDocument(std::string& xml, const SignerIdentity& signer, Ferro::ILogSink& log);

}  // namespace Sigil
