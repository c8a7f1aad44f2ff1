// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Mutex.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using Ferro::AutoMutex;
using Ferro::Mutex;

TEST(Mutex, OneThreadAtATime) {
  Mutex mutex;
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < 1000; ++j) {
        mutex.Lock();
        ++count;
        mutex.Unlock();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 4000);
}

TEST(Mutex, AutoMutexHoldsItForItsScope) {
  Mutex mutex;
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < 1000; ++j) {
        const AutoMutex lock(mutex);
        ++count;
      }
    });
  for (std::thread& thread : threads) thread.join();
  const AutoMutex lock(mutex);
  EXPECT_EQ(count, 4000);
}
