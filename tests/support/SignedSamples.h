// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TestCertificates.h"

#include <Sigil/DocumentSignature.h>

#include <string>

namespace SigilTest {

/// Unsigned documents, issued at Noon.
std::string Composition(Cairn::DCPFormat_t format);
std::string PackingList(Cairn::DCPFormat_t format);

/// The key of that name, as this library reads it.
Sigil::PrivateKey Key(const std::string& name);
/// Who signs with the leaf of the recipes.
Sigil::SignerIdentity Signer(const std::vector<testsupport::CertificateRecipe>& recipes = testsupport::SoundRecipes());
/// A document signed by Signer.
std::string Signed(std::string xml, const Sigil::SignerIdentity& signer = Signer());
/// A composition in SMPTE's flavour, signed; made once.
const std::string& SignedComposition();

/// State and findings: "valid\n", "invalid\nE sign-form: ...\n", "not signed\n"; the result's symbol where it is a failure.
std::string Verdict(const std::string& xml, const Sigil::SignatureContext& context = {});

/// The text with the first `what` replaced; a test failure where there is none.
std::string Replaced(std::string text, const std::string& what, const std::string& by);
/// What stands between the first `begin` and the next `end`, both included; a test failure where there is none.
std::string Part(const std::string& text, const std::string& begin, const std::string& end);

}  // namespace SigilTest
