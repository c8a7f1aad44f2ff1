// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CertificateMaker.h"

#include <Sigil/CertificateChain.h>

#include <string>
#include <vector>

namespace SigilTest {

/// The certificates of the recipes, leaf first, as this library reads them.
Sigil::CertificateList Certificates(const std::vector<testsupport::CertificateRecipe>& recipes);
/// "2026-03-01T12:00:00Z"
Sigil::Timestamp Time(const std::string& text);
/// Within the validity of what SoundRecipes make.
inline constexpr char Noon[] = "2026-03-01T12:00:00Z";

/// One finding a line: "W cert-role: text".
std::string Lines(const Sigil::FindingList& findings);

}  // namespace SigilTest
