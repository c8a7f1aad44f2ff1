// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/CompositionPlaylist.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace Cairn {
namespace {

// In the order of ContentKind_t.
constexpr const char* s_Names[] = {"",      "feature",      "trailer", "teaser", "test", "rating", "advertisement",
                                   "short", "transitional", "psa",     "policy", "clip", "promo",  "stereocard"};
static_assert(std::size(s_Names) == CK_MAX);

}  // namespace

const char* ContentKindName(ContentKind_t kind) {
  return kind < CK_MAX ? s_Names[kind] : "";
}

ContentKind_t ContentKindFromName(const std::string& name) {
  std::string plain;
  for (const char c : name)
    if (!std::isspace(static_cast<unsigned char>(c))) plain += static_cast<char>(std::tolower(c));
  const auto* found = std::ranges::find_if(s_Names, [&](const char* known) { return plain == known; });
  return found == std::end(s_Names) ? CK_UNKNOWN : static_cast<ContentKind_t>(found - s_Names);
}

}  // namespace Cairn
