// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>
#include <Ferro/UUID.h>

#include <string>
#include <vector>

namespace Tool {

/// Reads from a timed-text document's text which fonts and images it refers to (ST 428-7: LoadFont and Image).
/// @return RESULT_OK; Cairn::RESULT_XML_PARSE, logged, for a text that is no well-formed XML.
[[nodiscard]] Ferro::Result_t ReadTextReferences(const std::string& xml, std::vector<Ferro::UUID>& references);

}  // namespace Tool
