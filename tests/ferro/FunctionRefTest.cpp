// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/FunctionRef.h>

#include <gtest/gtest.h>

#include <string>

using Ferro::FunctionRef;

namespace {

std::string Join(const std::string& text, int count) {
  return text + std::to_string(count);
}

using Joiner = FunctionRef<std::string(const std::string&, int)>;

}  // namespace

static_assert(!std::is_constructible_v<Joiner, int> && !std::is_constructible_v<Joiner, void (*)()>);

TEST(FunctionRef, MadeFromNothingIsFalse) {
  const Joiner none;
  EXPECT_FALSE(none);
  EXPECT_FALSE(Joiner({}));
}

TEST(FunctionRef, CallsALambdaWhereItLies) {
  int sum = 0;
  auto add = [&sum, calls = 0](int value) mutable {
    sum += value;
    return ++calls;
  };
  const FunctionRef<int(int)> callback = add;
  EXPECT_TRUE(callback);
  EXPECT_EQ(callback(5), 1);
  EXPECT_EQ(callback(7), 2);
  EXPECT_EQ(add(1), 3);  // the lambda itself was called, not a copy
  EXPECT_EQ(sum, 13);
}

TEST(FunctionRef, CallsAConstLambda) {
  const auto twice = [](int value) { return 2 * value; };
  EXPECT_EQ(FunctionRef<int(int)>(twice)(21), 42);
}

TEST(FunctionRef, CallsAFunctionAndAPointerToOne) {
  EXPECT_EQ(Joiner(Join)("a", 1), "a1");
  std::string (*const pointer)(const std::string&, int) = Join;
  EXPECT_EQ(Joiner(pointer)("b", 2), "b2");
}

TEST(FunctionRef, ACopyCallsTheSame) {
  int calls = 0;
  const auto count = [&calls] { ++calls; };
  const FunctionRef<void()> first = count;
  FunctionRef<void()> second;
  second = first;
  first();
  second();
  EXPECT_EQ(calls, 2);
}

TEST(FunctionRef, PassesReferencesThrough) {
  std::string text = "a";
  const auto append = [](std::string& to) { to += 'b'; };
  FunctionRef<void(std::string&)> callback = append;
  callback(text);
  EXPECT_EQ(text, "ab");
}
