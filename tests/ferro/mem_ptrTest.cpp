// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/mem_ptr.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

using Ferro::mem_ptr;

namespace {

struct Counted {
  explicit Counted(int& alive_count) : alive(alive_count) { ++alive; }
  ~Counted() { --alive; }
  int& alive;
};

static_assert(!std::is_copy_constructible_v<mem_ptr<int>> && !std::is_copy_assignable_v<mem_ptr<int>>);

}  // namespace

TEST(mem_ptr, DefaultIsEmpty) {
  const mem_ptr<int> pointer;
  EXPECT_TRUE(pointer.empty());
  EXPECT_FALSE(pointer);
  EXPECT_EQ(pointer.get(), nullptr);
}

TEST(mem_ptr, DeletesWhatItHolds) {
  int alive = 0;
  {
    const mem_ptr<Counted> pointer(new Counted(alive));
    EXPECT_EQ(pointer->alive, 1);
    EXPECT_EQ(&(*pointer).alive, &alive);
  }
  EXPECT_EQ(alive, 0);
}

TEST(mem_ptr, SetDeletesTheOneBefore) {
  int alive = 0;
  mem_ptr<Counted> pointer(new Counted(alive));
  pointer.set(new Counted(alive));
  EXPECT_EQ(alive, 1);
  pointer.set(pointer.get());
  EXPECT_EQ(alive, 1);
  pointer.set(nullptr);
  EXPECT_EQ(alive, 0);
  EXPECT_TRUE(pointer.empty());
}

TEST(mem_ptr, ReleaseGivesOwnershipUp) {
  int alive = 0;
  Counted* object = nullptr;
  {
    mem_ptr<Counted> pointer(new Counted(alive));
    object = pointer.release();
    EXPECT_TRUE(pointer.empty());
  }
  EXPECT_EQ(alive, 1);
  delete object;
}

TEST(mem_ptr, MovingEmptiesTheSource) {
  int alive = 0;
  mem_ptr<Counted> first(new Counted(alive));
  mem_ptr<Counted> second(std::move(first));
  EXPECT_TRUE(first.empty());  // NOLINT: the moved-from state is the subject
  mem_ptr<Counted> third(new Counted(alive));
  third = std::move(second);
  EXPECT_EQ(alive, 1);
  mem_ptr<Counted>& self = third;
  third = std::move(self);
  EXPECT_FALSE(third.empty());
}
