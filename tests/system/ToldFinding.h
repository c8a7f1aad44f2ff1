// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/FindingRule.h>

#include <string>

using Assay::FindingID;

/// What reports print of a finding.
/// @param place  "SampleFeature, reel 2, picture"; may be empty.
/// @param facts  what stands behind the sentence: " Expected 24, found 25."
/// @param file   may be empty.
inline std::string Told(const std::string& severity, FindingID id, const std::string& place,
                        const std::string& facts = "", const std::string& file = "") {
  const Assay::FindingRule& rule = Assay::RuleOf(id);
  return severity + ": " + place + (place.empty() ? "" : ": ") + rule.Sentence + facts + '\n' +
         (file.empty() ? "" : "    file  " + file + '\n') + "    " + rule.Advice + '\n';
}
