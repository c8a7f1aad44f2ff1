// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/FindingRule.h>

#include <string>

using Assay::FindingID;

/// What reports print of a finding when another of its kind follows.
inline std::string ToldBare(const std::string& severity, FindingID id, const std::string& place,
                            const std::string& facts = "", const std::string& file = "") {
  return severity + ": " + place + (place.empty() ? "" : ": ") + Assay::RuleOf(id).Sentence + facts + '\n' +
         (file.empty() ? "" : "    file  " + file + '\n');
}

/// What reports print of a finding.
/// @param place  "SampleFeature, reel 2, picture"; may be empty.
/// @param facts  what stands behind the sentence: " Expected 24, found 25."
/// @param file   may be empty.
inline std::string Told(const std::string& severity, FindingID id, const std::string& place,
                        const std::string& facts = "", const std::string& file = "") {
  return ToldBare(severity, id, place, facts, file) + "    " + Assay::RuleOf(id).Advice + '\n';
}
