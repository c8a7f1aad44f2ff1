// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Finding.h>

#include <algorithm>
#include <string>
#include <vector>

namespace testsupport {

/// Each finding as its name, and its class where that is not the usual one: "j2k-size-max", "j2k-size-max warning"; sorted.
inline std::vector<std::string> FoundNames(const Assay::FindingList& findings) {
  std::vector<std::string> names;
  for (const Assay::Finding& finding : findings) {
    const Assay::FindingRule& rule = RuleOf(finding.ID);
    names.push_back(rule.Name);
    if (finding.Class != rule.Classes.Usual()) names.back() += std::string(" ") + FindingClassName(finding.Class);
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace testsupport
