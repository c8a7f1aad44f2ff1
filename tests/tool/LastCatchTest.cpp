// SPDX-License-Identifier: BSD-3-Clause
#include "app/LastCatch.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

using Tool::ExitCode;
using Tool::LastCatch;

namespace {

/// What is said on standard error of what `work` throws; its exit code must tell of the failure.
std::string SaidOf(const std::function<ExitCode()>& work) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(LastCatch(work), ExitCode::NotPlayable);
  return testing::internal::GetCapturedStderr();
}

TEST(LastCatch, ThrownExceptionsAreSaidAndEndTheProgramInOrder) {
  EXPECT_EQ(SaidOf([]() -> ExitCode { throw std::bad_alloc(); }), "strata: std::bad_alloc\n");
  EXPECT_EQ(SaidOf([]() -> ExitCode { throw std::runtime_error("no room"); }), "strata: no room\n");
  EXPECT_EQ(SaidOf([]() -> ExitCode { throw 5; }), "strata: an unknown error ended the program\n");
}

TEST(LastCatch, ExitCodesPass) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(LastCatch([] { return ExitCode::AssetsMissing; }), ExitCode::AssetsMissing);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
