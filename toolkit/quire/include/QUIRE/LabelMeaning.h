// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/UL.h>

#include <string>

namespace QUIRE {

/// What an operational pattern, essence container, picture coding or algorithm label means, for people, in English: "OP1a",
/// "JPEG 2000, clip-wrapped", "ProRes", "AES-128 CBC". Knows also what D-Cinema does not use but broadcast and IMF
/// files have (SMPTE registry of labels, RP 224). Empty for a label that it does not know.
[[nodiscard]] QUIRE_API std::string LabelMeaning(const UL& label);

}  // namespace QUIRE
