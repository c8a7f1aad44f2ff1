// SPDX-License-Identifier: BSD-3-Clause
#include "Grammar.h"

#include <algorithm>
#include <vector>

namespace Assay {

std::span<const Grammar> Grammars() {
  static const std::vector<Grammar> s_All = [] {
    std::vector<Grammar> all;
    for (const auto grammars : {PackageGrammars(), CompositionGrammars(), SMPTETextGrammars(), InteropTextGrammars()})
      all.insert(all.end(), grammars.begin(), grammars.end());
    return all;
  }();
  return s_All;
}

const Grammar* FindGrammar(std::string_view name_space, std::string_view name) {
  const auto found = std::ranges::find_if(Grammars(), [&](const Grammar& grammar) {
    return grammar.Root.Namespace == name_space && grammar.Root.Name == name;
  });
  return found == Grammars().end() ? nullptr : &*found;
}

}  // namespace Assay
