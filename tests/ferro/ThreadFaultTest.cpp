// SPDX-License-Identifier: BSD-3-Clause
// A program of its own, because it takes the place of the system's functions.
#include <Ferro/LogSink.h>
#include <Ferro/Thread.h>

#include "../support/LogCapture.h"
#include "../support/ThreadFault.h"

#include <gtest/gtest.h>

using Ferro::Result_t;

namespace {

class IdleThread : public Ferro::Thread {
 public:
  Result_t ThreadInit() override { return Ferro::RESULT_OK; }
  Result_t ThreadBody() override { return Ferro::RESULT_OK; }
  Result_t ThreadFini(Result_t result) override { return result; }
  Result_t ThreadStop() override { return Ferro::RESULT_OK; }
};

void ExpectThatItNeverRan(IdleThread& thread) {
  EXPECT_FALSE(thread.IsRunning());
  EXPECT_EQ(thread.Stop(0, true), Ferro::RESULT_STATE);
}

TEST(ThreadFault, ThreadThatTheSystemRefusesIsAFailureWithALine) {
  const testsupport::LogCapture log;
  IdleThread thread;
  {
    const testsupport::NoThreads refused;
    EXPECT_EQ(thread.Start("worker"), Ferro::RESULT_FAIL);
  }
  EXPECT_EQ(log.Text(), "Thread worker cannot be started: Resource temporarily unavailable\n");
  ExpectThatItNeverRan(thread);
}

TEST(ThreadFault, ThreadWithoutMemoryForItIsAFailureEvenWithoutALine) {
  const testsupport::LogCapture log;
  IdleThread thread;
  {
    const testsupport::NoMemory out;
    EXPECT_EQ(thread.Start("worker"), Ferro::RESULT_FAIL);
  }
  EXPECT_EQ(log.Text(), "");
  ExpectThatItNeverRan(thread);
}

TEST(ThreadFault, RefusedThreadCanBeStartedLater) {
  const testsupport::LogCapture log;
  IdleThread thread;
  {
    const testsupport::NoThreads refused;
    EXPECT_EQ(thread.Start("worker"), Ferro::RESULT_FAIL);
  }
  EXPECT_EQ(thread.Start("worker"), Ferro::RESULT_OK);
  EXPECT_EQ(thread.Stop(10'000, true), Ferro::RESULT_OK);
}

}  // namespace
