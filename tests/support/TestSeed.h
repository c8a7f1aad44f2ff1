// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>

namespace testsupport {

/// The number that random tests start from: `usual`, or what the environment's STRATA_TEST_SEED says. It is printed, so
/// that a run can be repeated.
inline uint32_t TestSeed(uint32_t usual) {
  const char* given = std::getenv("STRATA_TEST_SEED");
  const uint32_t seed = given == nullptr ? usual : static_cast<uint32_t>(std::strtoul(given, nullptr, 10));
  std::cout << "STRATA_TEST_SEED=" << seed << std::endl;
  return seed;
}

}  // namespace testsupport
