// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "document/Composition.h"
#include "document/Package.h"

#include <Assay/Finding.h>
#include <Assay/KeyAnswer.h>

#include <Sigil/DocumentSignature.h>
#include <Sigil/KeyMessageStore.h>

#include <optional>
#include <vector>

namespace Sigil {
class PrivateKey;
}

namespace Assay {

/// True where some track file of the composition is encrypted.
[[nodiscard]] bool IsEncrypted(const Composition& composition);
/// True where a composition of the package is.
[[nodiscard]] bool HoldsEncrypted(const Package& package);

/// Looks at a document's signature: sign-*, cert-*. A document without one is not parsed again.
/// @param place         the document's.
/// @param is_encrypted  what it lists.
/// @return the thumbprint of who signed; no value unless the signature is valid.
std::optional<SHA1> FindInSignature(const DocumentFile& document, const FindingPlace& place, bool is_encrypted,
                                    const Sigil::SignatureContext& context, FindingList& findings);

/// The same for a package's packing lists.
void FindInListSignatures(const Package& package, const Sigil::SignatureContext& context, FindingList& findings);

/// What key messages are judged by; see CheckRequest.
struct KeyQuestion {
  const Sigil::KeyMessageStore* Messages = nullptr;
  Ferro::Timestamp Now;
  std::optional<Ferro::Timestamp> At;
  ui32_t Tolerance = 0;  ///< seconds
  std::optional<Sigil::Certificate> Recipient;
  const Sigil::PrivateKey* PrivateKey = nullptr;
  std::vector<SHA1> Devices;
};

/// Asks which key message serves a composition: kdm-*.
/// @param signer  the composition's.
/// @param starts  where it stands in the show, in seconds from its beginning.
/// @return as CheckedComposition::Keys.
[[nodiscard]] std::vector<KeyAnswer> FindInKeys(const Composition& composition, const std::optional<SHA1>& signer,
                                                const KeyQuestion& question, const std::vector<double>& starts,
                                                FindingList& findings);

/// Says what of the user's key messages cannot be read.
/// @param is_needed  some composition has none that serves.
void FindInMessageProblems(const std::vector<Sigil::KeyMessageStore::Problem>& problems, bool is_needed,
                           FindingList& findings);

/// Findings about certificates alone are told once: one chain signs many documents. Those of later documents are taken
/// out; causes still point to the same findings.
void TellCertificatesOnce(FindingList& findings);

}  // namespace Assay
