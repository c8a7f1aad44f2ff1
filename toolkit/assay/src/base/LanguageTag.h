// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string_view>

namespace Assay {

/// Whether a text has the form of a language tag (RFC 5646, 2.1), whatever its letter case. Subtags are not looked up.
[[nodiscard]] bool IsLanguageTag(std::string_view tag);

}  // namespace Assay
