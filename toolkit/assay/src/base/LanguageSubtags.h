// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string_view>

namespace Assay {

/// Looks up the language, script and region of a language tag (RFC 5646, 2.2), whatever their letter case. Variants,
/// extensions and private use have their form alone; so have tags from before there were rules.
/// @param tag  one that IsLanguageTag accepts.
/// @return the first subtag that neither ISO 639, 15924 or 3166 nor the registry of subtags has, as it stands in the tag;
///         empty when all are known. A language that has a code of two letters is not known by one of three.
[[nodiscard]] std::string_view UnknownSubtag(std::string_view tag);

}  // namespace Assay
