// SPDX-License-Identifier: BSD-3-Clause
#include "../support/RandomFault.h"

#include <Ferro/FileWriter.h>
#include <Ferro/Random.h>
#include <Ferro/UUID.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace Ferro;

TEST(Random, SystemWithoutRandomBytesIsAFailure) {
  const testsupport::NoRandomBytes none;
  std::vector<ui8_t> bytes(16);
  EXPECT_EQ(FillRandom(bytes), RESULT_FAIL);
  EXPECT_FALSE(UUID::Random().HasValue());
  FileWriter writer;
  EXPECT_EQ(writer.OpenWrite(testing::TempDir() + "no-random-name"), RESULT_FILEOPEN);
}

// A byte stays 0 in all of 16 fills with probability 2^-128.
TEST(Random, EveryByteIsFilled) {
  std::vector<ui8_t> seen(1000);
  for (int i = 0; i < 16; ++i) {
    std::vector<ui8_t> bytes(seen.size());
    ASSERT_EQ(FillRandom(bytes), RESULT_OK);
    for (size_t j = 0; j < seen.size(); ++j) seen[j] |= bytes[j];
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 0), 0);
}

TEST(Random, LargeRequestsAreFilledToTheEnd) {
  std::vector<ui8_t> bytes(1 << 20);
  ASSERT_EQ(FillRandom(bytes), RESULT_OK);
  const auto tail = std::span(bytes).last(64);
  EXPECT_TRUE(std::any_of(tail.begin(), tail.end(), [](ui8_t byte) { return byte != 0; }));
}

TEST(Random, NothingIsAskedForNothing) {
  ASSERT_EQ(FillRandom({}), RESULT_OK);
}

TEST(Random, TwoFillsDiffer) {
  std::vector<ui8_t> first(32);
  std::vector<ui8_t> second(32);
  ASSERT_EQ(FillRandom(first), RESULT_OK);
  ASSERT_EQ(FillRandom(second), RESULT_OK);
  EXPECT_NE(first, second);
}
