// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace Cairn {

/// Appends the UTF-8 form of UTF-16 text; an unpaired surrogate becomes U+FFFD.
void AppendUTF8(std::string& out, std::u16string_view text);

/// UTF-8 of UTF-16 text; an unpaired surrogate becomes U+FFFD.
[[nodiscard]] std::string UTF16ToUTF8(std::u16string_view text);

/// True when each surrogate stands in a pair.
[[nodiscard]] bool IsPaired(std::u16string_view text);

/// Appends the UTF-8 form of a code point up to U+10FFFF.
void AppendUTF8(std::string& out, char32_t code_point);

}  // namespace Cairn
