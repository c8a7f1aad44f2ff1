// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/FindingRule.h>
#include <Assay/Result.h>

#include <gtest/gtest.h>

namespace {

TEST(AssayResult, EveryCodeIsFoundByItsValue) {
  for (const Assay::Result_t result : {Assay::RESULT_AY_NOTHING, Assay::RESULT_AY_DEPTH}) {
    EXPECT_STREQ(Assay::Result_t::Find(result.Value()).Symbol(), result.Symbol());
    EXPECT_LE(result.Value(), -400);
    EXPECT_GE(result.Value(), -499);
  }
}

TEST(AssayNames, ClassesAndDepthsHaveTheirs) {
  EXPECT_STREQ(FindingClassName(Assay::FindingClass::Error), "error");
  EXPECT_STREQ(FindingClassName(Assay::FindingClass::Note), "note");
  EXPECT_STREQ(DepthName(Assay::Depth::Documents), "documents");
  EXPECT_STREQ(DepthName(Assay::Depth::Decode), "decode");
}

}  // namespace
