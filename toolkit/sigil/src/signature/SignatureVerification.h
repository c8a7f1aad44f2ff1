// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "signature/SignedDocument.h"

#include <Sigil/DocumentSignature.h>

namespace Sigil {

/// Verifies the signature of a document that was parsed. Its KeyInfo is removed from the tree. May throw what Xerces-C throws.
[[nodiscard]] SignatureReport VerifyParsed(const SignedDocument& document, const SignatureContext& context,
                                           Ferro::ILogSink& log);

}  // namespace Sigil
