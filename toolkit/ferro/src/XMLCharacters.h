// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace Ferro {

/// Stands for bytes that are no character of the encoding.
inline constexpr char32_t NoCharacter = 0xffffffff;

/// Takes the first character off `text`, which must not be empty; NoCharacter, and one byte taken, when it is not
/// well-formed UTF-8 (RFC 3629: no overlong forms, no surrogates, nothing beyond U+10FFFF).
[[nodiscard]] char32_t TakeUTF8(std::string_view& text);
void AppendUTF8(std::string& text, char32_t c);

/// XML 1.0 (Fifth Edition), productions 2 to 5; Namespaces in XML 1.0, production 7.
[[nodiscard]] bool IsXMLCharacter(char32_t c);
[[nodiscard]] bool IsXMLSpace(char32_t c);
[[nodiscard]] bool IsNameStart(char32_t c);
[[nodiscard]] bool IsNameCharacter(char32_t c);
/// A local name, or a prefix, one colon and a local name.
[[nodiscard]] bool IsQualifiedName(std::string_view name);

}  // namespace Ferro
