// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/Result.h>

#include <gtest/gtest.h>

namespace {

TEST(CairnResult, EveryCodeIsFoundByItsValue) {
  for (const Cairn::Result_t result :
       {Cairn::RESULT_CN_NOT_IN_STORE, Cairn::RESULT_CN_UUID_FORMAT, Cairn::RESULT_NOT_CPL, Cairn::RESULT_XML_PARSE,
        Cairn::RESULT_XML_NAMESPACE, Cairn::RESULT_NOT_PKL, Cairn::RESULT_NOT_ASSETMAP, Cairn::RESULT_NOT_SUBTITLE,
        Cairn::RESULT_CN_VALUE, Cairn::RESULT_CN_PATH, Cairn::RESULT_CN_STORE}) {
    EXPECT_STREQ(Cairn::Result_t::Find(result.Value()).Symbol(), result.Symbol());
    EXPECT_LE(result.Value(), -200);
    EXPECT_GE(result.Value(), -299);
    EXPECT_TRUE(result.Failure());
  }
}

}  // namespace
