// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>
#include <Ferro/UUID.h>

#include <string>
#include <vector>

namespace Tool {

/// The fonts and images that a timed-text document refers to, in document order.
struct TextReferences {
  std::vector<Ferro::UUID> Fonts;
  std::vector<Ferro::UUID> Images;
};

/// Reads from a timed-text document's text what it refers to (ST 428-7: LoadFont and Image).
/// @return RESULT_OK; Cairn::RESULT_XML_PARSE, logged, for a text that is not well-formed XML.
[[nodiscard]] Ferro::Result_t ReadTextReferences(const std::string& xml, TextReferences& references);

}  // namespace Tool
