// SPDX-License-Identifier: BSD-3-Clause
#include <StrataHost/KeyResult.h>

#include <gtest/gtest.h>

namespace {

TEST(KeyResult, OutcomesOfTheSecurityLibraryAreTheEnginesResults) {
  using StrataHost::EngineResult;
  EXPECT_EQ(EngineResult(Sigil::RESULT_SG_NO_MESSAGE), Strata::RESULT_SX_NO_KDM);
  EXPECT_EQ(EngineResult(Sigil::RESULT_SG_NO_VALID_MESSAGE), Strata::RESULT_SX_NO_VALID_KDM);
  EXPECT_EQ(EngineResult(Sigil::RESULT_SG_MESSAGE), Strata::RESULT_SX_NO_VALID_KDM);
  EXPECT_EQ(EngineResult(Sigil::RESULT_SG_UNVERIFIED), Strata::RESULT_SX_NO_VALID_KDM);
  EXPECT_EQ(EngineResult(Sigil::RESULT_SG_CONTENT), Strata::RESULT_SX_NO_VALID_KDM);
  EXPECT_EQ(EngineResult(Sigil::RESULT_SG_NO_KEY), Strata::RESULT_SX_NO_KEY);
  EXPECT_EQ(EngineResult(Sigil::RESULT_SG_DUPLICATE), Strata::RESULT_SX_DUP_KDM);
}

TEST(KeyResult, AllElseStaysAsItIs) {
  EXPECT_EQ(StrataHost::EngineResult(Ferro::RESULT_OK), Ferro::RESULT_OK);
  EXPECT_EQ(StrataHost::EngineResult(Sigil::RESULT_SG_PASSPHRASE), Sigil::RESULT_SG_PASSPHRASE);
  EXPECT_EQ(StrataHost::EngineResult(Ferro::RESULT_ALLOC), Ferro::RESULT_ALLOC);
}

}  // namespace
