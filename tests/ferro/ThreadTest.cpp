// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Event.h>
#include <Ferro/LogSink.h>
#include <Ferro/Thread.h>

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

using namespace Ferro;

namespace {

/// Runs until it is asked to stop, and records what is called, in order.
class RecordingThread : public Thread {
 public:
  Result_t ThreadInit() override {
    m_Calls.push_back("init");
    return InitResult;
  }
  Result_t ThreadBody() override {
    m_Calls.push_back("body");
    m_BodyThread = std::this_thread::get_id();
    std::array<char, 32> name{};
    pthread_getname_np(pthread_self(), name.data(), name.size());
    m_SystemName = name.data();
    Entered.Post();
    StopAsked.Pend();
    return BodyResult;
  }
  Result_t ThreadFini(Result_t result) override {
    m_Calls.push_back(std::string("fini ") + result.Symbol());
    return FiniResult.value_or(result);
  }
  Result_t ThreadStop() override {
    ++Stops;
    if (StopReleases) StopAsked.Post();
    return StopResult;
  }

  // What the thread has written may be read once it has stopped.
  const std::vector<std::string>& Calls() const { return m_Calls; }
  const std::string& SystemName() const { return m_SystemName; }
  std::thread::id BodyThread() const { return m_BodyThread; }

  Result_t InitResult = RESULT_OK;
  Result_t BodyResult = RESULT_OK;
  Result_t StopResult = RESULT_OK;
  std::optional<Result_t> FiniResult;
  bool StopReleases = true;
  int Stops = 0;
  Event Entered{"Entered"};
  Event StopAsked{"StopAsked"};

 private:
  std::vector<std::string> m_Calls;
  std::string m_SystemName;
  std::thread::id m_BodyThread;
};

class ThreadTest : public testing::Test {
 protected:
  ThreadTest() { SetDefaultLogSink(&m_Log); }
  ~ThreadTest() override { SetDefaultLogSink(nullptr); }

  MemoryLogSink m_Log;
  RecordingThread m_Thread;
};

using Calls = std::vector<std::string>;

}  // namespace

TEST_F(ThreadTest, RunsInitBodyAndFiniOnAnotherThread) {
  EXPECT_FALSE(m_Thread.IsRunning());
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_TRUE(m_Thread.IsRunning());
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_OK);
  EXPECT_FALSE(m_Thread.IsRunning());
  EXPECT_EQ(m_Thread.Calls(), (Calls{"init", "body", "fini OK"}));
  EXPECT_NE(m_Thread.BodyThread(), std::this_thread::get_id());
  EXPECT_EQ(m_Thread.Stops, 1);
  EXPECT_TRUE(m_Log.Entries().empty());
}

TEST_F(ThreadTest, NameIsTheSystemsToo) {
  ASSERT_EQ(m_Thread.Start("TimelineTrack"), RESULT_OK);
  EXPECT_EQ(m_Thread.Name(), "TimelineTrack");
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_OK);
  EXPECT_EQ(m_Thread.SystemName(), "TimelineTrack");
}

TEST_F(ThreadTest, LongNameIsCutForTheSystemOnly) {
  ASSERT_EQ(m_Thread.Start("a name of 24 characters."), RESULT_OK);
  EXPECT_EQ(m_Thread.Name(), "a name of 24 characters.");
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_OK);
  EXPECT_EQ(m_Thread.SystemName(), "a name of 24 ch");
}

TEST_F(ThreadTest, FailedInitSkipsTheBody) {
  m_Thread.InitResult = RESULT_ALLOC;
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_ALLOC);
  EXPECT_EQ(m_Thread.Calls(), (Calls{"init", "fini ALLOC"}));
}

TEST_F(ThreadTest, ResultIsTheBodysThroughFini) {
  m_Thread.BodyResult = RESULT_READFAIL;
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_READFAIL);
  EXPECT_EQ(m_Thread.Calls().back(), "fini READFAIL");
}

TEST_F(ThreadTest, FiniHasTheLastWord) {
  m_Thread.FiniResult = RESULT_FALSE;
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_FALSE);
}

TEST_F(ThreadTest, StartedTwiceIsAStateError) {
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(m_Thread.Start("again"), RESULT_STATE);
  EXPECT_EQ(m_Thread.Name(), "worker");
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_OK);
}

TEST_F(ThreadTest, StoppedWithoutStartIsAStateError) {
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_STATE);
  EXPECT_EQ(m_Thread.Stops, 0);
}

TEST_F(ThreadTest, StoppedTwiceIsAStateError) {
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_OK);
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_STATE);
}

TEST_F(ThreadTest, StartsAgainAfterStop) {
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
    EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_OK);
  }
  EXPECT_EQ(m_Thread.Calls().size(), 9U);
}

TEST_F(ThreadTest, TimeRunningOutWithoutWaitIsAFailureAndTheThreadGoesOn) {
  m_Thread.StopReleases = false;
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(m_Thread.Stop(10, false), RESULT_FAIL);
  EXPECT_TRUE(m_Log.Contains(LogLevel::Warning, "Thread worker did not stop within 10 ms.\n"));
  EXPECT_TRUE(m_Thread.IsRunning());
  EXPECT_EQ(m_Thread.Start("again"), RESULT_STATE);
  m_Thread.StopReleases = true;
  EXPECT_EQ(m_Thread.Stop(10'000, false), RESULT_OK);
  EXPECT_EQ(m_Log.Entries().size(), 1U);
  EXPECT_EQ(m_Thread.Stops, 2);
}

TEST_F(ThreadTest, TimeRunningOutWithWaitGoesOnWaiting) {
  m_Thread.StopReleases = false;
  m_Thread.BodyResult = RESULT_FALSE;
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  // Releases the body only after the warning, so that Stop must have gone on waiting.
  std::thread releaser([this] {
    while (!m_Log.Contains(LogLevel::Warning, "Thread worker did not stop within 10 ms.\n")) std::this_thread::yield();
    m_Thread.StopAsked.Post();
  });
  EXPECT_EQ(m_Thread.Stop(10, true), RESULT_FALSE);
  EXPECT_FALSE(m_Thread.IsRunning());
  releaser.join();
}

TEST_F(ThreadTest, StopThatCannotBeAskedForIsLogged) {
  m_Thread.StopResult = RESULT_STATE;
  ASSERT_EQ(m_Thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(m_Thread.Stop(10'000, true), RESULT_OK);
  EXPECT_TRUE(m_Log.Contains(LogLevel::Warning, "Thread worker cannot be asked to stop: Object state error.\n"));
}

TEST_F(ThreadTest, EndedByItselfMayBeDestroyedWithoutStop) {
  RecordingThread thread;
  ASSERT_EQ(thread.Start("worker"), RESULT_OK);
  EXPECT_EQ(thread.Start("again"), RESULT_STATE);
  thread.StopAsked.Post();
  while (thread.IsRunning()) std::this_thread::yield();
}

TEST_F(ThreadTest, NeverStartedMayBeDestroyed) {
  const RecordingThread thread;
  EXPECT_FALSE(thread.IsRunning());
}
