// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Json.h"

#include <string>

namespace Tool {

/// A document that begins with the schema's name and version, "strata-<command>-<version>".
[[nodiscard]] Json NewJsonReport(const std::string& command, int version = 1);

/// Adds a text under a key; nothing where the text is empty.
void AddUnlessEmpty(Json& json, const char* key, const std::string& text);

/// The document as text with a line end, indented or in one line. What is not UTF-8 becomes U+FFFD; all control characters
/// are escaped, those beyond ASCII as well, so that no terminal obeys them.
[[nodiscard]] std::string JsonText(const Json& report, bool is_indented = true);

}  // namespace Tool
