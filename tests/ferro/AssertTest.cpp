// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>

#include <gtest/gtest.h>

#include <string>

namespace {

void AssertThatNumberIsOdd(int number) {
  FERRO_ASSERT(number % 2 == 1);
}

}  // namespace

TEST(AssertDeathTest, NamesFileLineFunctionAndExpression) {
  EXPECT_DEATH(AssertThatNumberIsOdd(2),
               "AssertTest\\.cpp:11: .*AssertThatNumberIsOdd\\(int\\): Assertion 'number % 2 == 1' failed\\.\n");
}

TEST(AssertDeathTest, PrintsTheGivenTextInPlaceOfTheExpression) {
  EXPECT_DEATH(FERRO_ASSERT_TEXT(1 + 1 == 3, "!m_NewPosition.empty()"),
               "TestBody\\(\\): Assertion '!m_NewPosition\\.empty\\(\\)' failed\\.\n");
}

TEST(AssertDeathTest, PrintsTheGivenFunction) {
  EXPECT_DEATH(FERRO_ASSERT_IN(false, "Writer", "virtual bool Record::Archive(Ferro::MemIOWriter*) const"),
               "AssertTest\\.cpp:[0-9]+: virtual bool Record::Archive\\(Ferro::MemIOWriter\\*\\) const: "
               "Assertion 'Writer' failed\\.\n");
}

TEST(AssertDeathTest, EndsTheProcessByAbort) {
  EXPECT_EXIT(FERRO_ASSERT(false), testing::KilledBySignal(SIGABRT), "Assertion 'false' failed");
}

TEST(Assert, HoldingConditionIsEvaluatedOnceAndPrintsNothing) {
  int evaluated = 0;
  testing::internal::CaptureStderr();
  FERRO_ASSERT(++evaluated == 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(evaluated, 1);
}
