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
  for (int i = 0; i < 2000; ++i) {
    auto event = std::make_unique<Event>("event", i % 2 == 0 ? 1 : Event::NoCeiling);
    std::thread poster([raw = event.get()] { raw->Post(); });
    event->Pend();
    event.reset();  // the poster may still be on its way out of Post
    poster.join();
  }
}

TEST(Event, ConcurrentPostsStopAtTheCeiling) {
  Event event("event", 3);
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) threads.emplace_back([&] { event.Post(); });
  for (std::thread& thread : threads) thread.join();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(event.Pend(0ms));
  EXPECT_FALSE(event.Pend(0ms));
}

// A thread that gave up waiting is no longer counted on: its post stays for the next.
TEST(Event, PostAfterAPendThatRanOutIsKept) {
  Event event("event", 1);
  EXPECT_FALSE(event.Pend(1ms));
  event.Post();
  EXPECT_TRUE(event.Pend(0ms));
  EXPECT_FALSE(event.Pend(1ms));
}

// Threads that wait with a limit and threads that wait without share the posts; none is lost between them.
TEST(Event, LimitedAndUnlimitedPendsShareThePosts) {
  constexpr int Posts = 2000;
  Event event("event");
  std::atomic<int> consumed = 0;
  std::thread unlimited([&] {
    for (int i = 0; i < Posts / 2; ++i) {
      event.Pend();
      ++consumed;
    }
  });
  std::thread limited([&] {
    for (int i = 0; i < Posts / 2;) {
      if (!event.Pend(1ms)) continue;
      ++consumed;
      ++i;
    }
  });
  for (int i = 0; i < Posts; ++i) event.Post();
  unlimited.join();
  limited.join();
  EXPECT_EQ(consumed, Posts);
  EXPECT_FALSE(event.Pend(0ms));
}
