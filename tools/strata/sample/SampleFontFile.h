// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <vector>

namespace Tool {

/// The figures of SampleGlyphOf as a TrueType font (ISO/IEC 14496-22) named "Strata Sample": digits, capital letters, ":"
/// and the blank; small letters look like capitals. The bytes are always the same.
[[nodiscard]] std::vector<Ferro::ui8_t> MakeSampleFontFile();

}  // namespace Tool
