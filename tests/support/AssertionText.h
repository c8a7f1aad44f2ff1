// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <gmock/gmock.h>

#include <string>

namespace testsupport {

/// What a death test sees of a failed assertion, for EXPECT_DEATH.
inline auto Asserts(const std::string& expression) {
  return testing::HasSubstr("Assertion '" + expression + "' failed.");
}

}  // namespace testsupport
