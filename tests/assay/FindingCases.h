// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SamplePackage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace testsupport {

using Names = std::vector<std::string>;

/// What is found in a sound SMPTE package after one edit of a document; sizes and digests fit again.
inline Names After(const std::string& document, const std::string& from, const std::string& to) {
  return SamplePackage().Edit(document, from, to).Findings();
}

/// The one finding of that kind; a test failure where there is none, or several.
inline Assay::Finding TheOne(const Assay::FindingList& findings, Assay::FindingID id) {
  Assay::Finding one(id);
  size_t count = 0;
  for (const Assay::Finding& finding : findings)
    if (finding.ID == id && ++count == 1) one = finding;
  EXPECT_EQ(count, 1U) << RuleOf(id).Name;
  return one;
}

/// One edit of a document, and what is found after it.
struct EditCase {
  const char* Document;
  std::string From, To;
  Names Expected;
};

inline void ExpectEach(const std::vector<EditCase>& cases, SamplePackage::Kind kind = SamplePackage::Kind::SMPTE) {
  for (const EditCase& each : cases)
    EXPECT_EQ(SamplePackage(kind).Edit(each.Document, each.From, each.To).Findings(), each.Expected)
        << each.Document << ": " << each.From << "\nas: " << each.To;
}

}  // namespace testsupport
