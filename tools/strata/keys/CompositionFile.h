// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DocumentSignatures.h"

#include <Cairn/DCPFormat.h>
#include <Sigil/KeyMessage.h>

#include <string>
#include <vector>

namespace Tool {

/// What a key message has to do with of a composition.
struct CompositionFile {
  Sigil::MessageContext::CompositionFacts Facts;
  std::string Title;
  Cairn::DCPFormat_t Format = Cairn::DFT_NONE;
  std::vector<Sigil::KeyEntry> Keys;  ///< in the order of their first use
  double Seconds = 0;
};

/// Reads a composition playlist, and verifies its signature. Throws CommandError.
[[nodiscard]] CompositionFile ReadCompositionFile(const std::string& filename, DocumentSignatures& signatures);

}  // namespace Tool
