// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Event.h>
#include <Ferro/Thread.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

using namespace Ferro;

namespace {

class EndlessThread : public Thread {
 public:
  Result_t ThreadInit() override { return RESULT_OK; }
  Result_t ThreadBody() override {
    for (;;) pause();
  }
  Result_t ThreadFini(Result_t result) override { return result; }
  Result_t ThreadStop() override { return RESULT_OK; }
};

class SelfStoppingThread : public Thread {
 public:
  Result_t ThreadInit() override { return RESULT_OK; }
  Result_t ThreadBody() override {
    Started.Pend();
    return Stop(0, true);
  }
  Result_t ThreadFini(Result_t result) override { return result; }
  Result_t ThreadStop() override { return RESULT_OK; }

  Event Started{"Started"};
};

void DestroyWhileRunning() {
  EndlessThread thread;
  if (thread.Start("endless").Failure()) _exit(0);
}

void StopFromWithin() {
  SelfStoppingThread thread;
  if (thread.Start("itself").Failure()) _exit(0);
  thread.Started.Post();
  while (thread.IsRunning()) std::this_thread::yield();
}

}  // namespace

TEST(ThreadDeathTest, RunningThreadMustNotBeDestroyed) {
  EXPECT_DEATH(DestroyWhileRunning(), "Assertion '!IsRunning\\(\\)' failed");
}

TEST(ThreadDeathTest, ThreadMustNotStopItself) {
  EXPECT_DEATH(StopFromWithin(), "Assertion 'm_State->Running.get_id\\(\\) != std::this_thread::get_id\\(\\)' failed");
}

TEST(EventDeathTest, CeilingOfZeroIsAProgrammingError) {
  EXPECT_DEATH(Event("event", 0), "Assertion 'ceiling >= 1' failed");
}
