// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace Cairn {

/// Looks for what must not reach the parser: NUL characters, unpaired surrogates, a document type declaration, names
/// that are very long, and an element with more attributes than the parser, whose time for them grows with the square,
/// can take.
/// @param text  UTF-8.
/// @return an empty text, or the reason for which the document is refused.
[[nodiscard]] std::string CheckDocumentText(std::string_view text);

}  // namespace Cairn
