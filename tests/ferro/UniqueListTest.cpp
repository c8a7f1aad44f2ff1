// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/UniqueList.h>

#include <gtest/gtest.h>

using namespace Ferro;

namespace {

UUID IDOf(ui8_t number) {
  std::array<ui8_t, 16> bytes{};
  bytes[15] = number;
  return UUID(bytes);
}

using IDs = std::list<UUID>;

}  // namespace

TEST(UniqueList, KeepsTheFirstOccurrenceOfEach) {
  IDs out;
  create_unique_list({IDOf(3), IDOf(1), IDOf(3), IDOf(2), IDOf(1)}, out);
  EXPECT_EQ(out, (IDs{IDOf(3), IDOf(1), IDOf(2)}));
}

TEST(UniqueList, AppendsWithoutConsideringWhatWasThere) {
  IDs out{IDOf(1), IDOf(1)};
  create_unique_list({IDOf(1), IDOf(2), IDOf(2)}, out);
  EXPECT_EQ(out, (IDs{IDOf(1), IDOf(1), IDOf(1), IDOf(2)}));
}

TEST(UniqueList, EmptyInputAppendsNothing) {
  IDs out;
  create_unique_list({}, out);
  EXPECT_TRUE(out.empty());
}
