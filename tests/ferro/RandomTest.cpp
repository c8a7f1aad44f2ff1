// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Random.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace Ferro;

// A byte stays 0 in all of 16 fills with probability 2^-128.
TEST(Random, EveryByteIsFilled) {
  std::vector<ui8_t> seen(1000);
  for (int i = 0; i < 16; ++i) {
    std::vector<ui8_t> bytes(seen.size());
    FillRandom(bytes);
    for (size_t j = 0; j < seen.size(); ++j) seen[j] |= bytes[j];
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 0), 0);
}

TEST(Random, LargeRequestsAreFilledToTheEnd) {
  std::vector<ui8_t> bytes(1 << 20);
  FillRandom(bytes);
  const auto tail = std::span(bytes).last(64);
  EXPECT_TRUE(std::any_of(tail.begin(), tail.end(), [](ui8_t byte) { return byte != 0; }));
}

TEST(Random, NothingIsAskedForNothing) {
  FillRandom({});
}

TEST(Random, TwoFillsDiffer) {
  std::vector<ui8_t> first(32);
  std::vector<ui8_t> second(32);
  FillRandom(first);
  FillRandom(second);
  EXPECT_NE(first, second);
}
