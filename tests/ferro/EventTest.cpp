// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Event.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using namespace Ferro;
using namespace std::chrono_literals;

TEST(Event, HasAName) {
  EXPECT_EQ(Event("ReadEvent").Name(), "ReadEvent");
}

TEST(Event, PostsNobodyPendsOnAreCounted) {
  Event event("event");
  for (int i = 0; i < 3; ++i) event.Post();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(event.Pend(0ms));
  EXPECT_FALSE(event.Pend(0ms));
}

TEST(Event, PostsBeyondTheCeilingAreLost) {
  Event event("event", 2);
  for (int i = 0; i < 5; ++i) event.Post();
  event.Pend();
  event.Pend();
  EXPECT_FALSE(event.Pend(0ms));
  event.Post();
  EXPECT_TRUE(event.Pend(0ms));
}

TEST(Event, CeilingOfOneIsYesOrNo) {
  Event event("event", 1);
  event.Post();
  event.Post();
  EXPECT_TRUE(event.Pend(0ms));
  EXPECT_FALSE(event.Pend(0ms));
}

TEST(Event, PendWaitsUntilItsLimit) {
  Event event("event");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(event.Pend(50ms));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);
}

TEST(Event, NegativeLimitDoesNotWait) {
  Event event("event");
  EXPECT_FALSE(event.Pend(-1ms));
  EXPECT_FALSE(event.Pend(std::chrono::milliseconds::min()));
  event.Post();
  EXPECT_TRUE(event.Pend(-1ms));
}

TEST(Event, LongestLimitStillEndsWithThePost) {
  Event event("event");
  std::thread poster([&] { event.Post(); });
  EXPECT_TRUE(event.Pend(std::chrono::milliseconds::max()));
  poster.join();
}

TEST(Event, PostWakesAWaitingPend) {
  Event ping("ping");
  Event pong("pong");
  std::thread other([&] {
    for (int i = 0; i < 1000; ++i) {
      ping.Pend();
      pong.Post();
    }
  });
  for (int i = 0; i < 1000; ++i) {
    ping.Post();
    pong.Pend();
  }
  other.join();
  EXPECT_FALSE(ping.Pend(0ms));
  EXPECT_FALSE(pong.Pend(0ms));
}

TEST(Event, EachPostReleasesExactlyOnePend) {
  constexpr int Threads = 4;
  constexpr int PerThread = 500;
  Event event("event");
  std::atomic<int> released = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < Threads; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < PerThread; ++j) {
        event.Pend();
        ++released;
      }
    });
  for (int i = 0; i < Threads; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < PerThread; ++j) event.Post();
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(released, Threads * PerThread);
  EXPECT_FALSE(event.Pend(0ms));
}

TEST(Event, WhatWasWrittenBeforeThePostIsSeenAfterThePend) {
  Event event("event");
  int value = 0;
  std::thread writer([&] {
    value = 42;
    event.Post();
  });
  event.Pend();
  EXPECT_EQ(value, 42);
  writer.join();
}

TEST(Event, MayBeDestroyedOnceThePendHasReturned) {
  for (int i = 0; i < 200; ++i) {
    auto event = std::make_unique<Event>("event");
    std::thread poster([raw = event.get()] { raw->Post(); });
    event->Pend();
    poster.join();
    event.reset();
  }
}
