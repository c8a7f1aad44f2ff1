// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace Cairn {

/// Why a text is refused that holds half of a surrogate pair.
inline constexpr char UnpairedSurrogate[] = "it has an unpaired surrogate";

/// Brings a document's text to UTF-8 without byte order mark. Accepted are UTF-8, UTF-16 with a byte order mark,
/// US-ASCII and ISO-8859-1, when the declaration, if there is one, agrees with the bytes (XML 1.0, appendix F).
/// @param buffer  holds the converted text where a conversion was necessary.
/// @param out     the text: `document` itself or `buffer`.
/// @return an empty text, or the reason for which the document is refused.
[[nodiscard]] std::string DecodeDocumentText(std::string_view document, std::string& buffer, std::string_view& out);

}  // namespace Cairn
