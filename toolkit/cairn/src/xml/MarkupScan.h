// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <string_view>

namespace Cairn {

/// What a look at a document's markup tells before anything is parsed.
struct MarkupExtremes {
  size_t MostAttributes = 0;  ///< of one element
  size_t LongestName = 0;     ///< bytes; of elements, attributes, entities and processing instructions
};

/// Finds the extremes of a document's markup in one pass and without memory.
///
/// As long as the markup is well-formed, attributes are what stands in start tags. Behind the first place that is not,
/// the parser, which goes on for its diagnostics, may take for a tag what looks like text here: from there on every "="
/// before a quote counts, from one "<" to the next, and each run of name characters that no document holds is a name. The
/// extremes are then no smaller than what the parser meets, but may be larger.
/// @param text  UTF-8.
[[nodiscard]] MarkupExtremes ScanMarkup(std::string_view text);

}  // namespace Cairn
