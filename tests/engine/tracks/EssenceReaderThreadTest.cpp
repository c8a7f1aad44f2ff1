// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/EssenceReaderThread.h"

#include "ControlledReader.h"
#include "TimelineElements/ReaderWrappers.h"

#include <Ferro/LogEntry.h>
#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using Strata::NoFrame;
using Strata::ui32_t;
using testsupport::ControlledReader;
using testsupport::Holds;

/// Opens to the tests what only the template itself touches.
template <class FrameBufferT>
class OpenThread : public Strata::EssenceReaderThread<ControlledReader, FrameBufferT> {
 public:
  using Base = Strata::EssenceReaderThread<ControlledReader, FrameBufferT>;
  using Base::Base;
  using Base::m_FBp_0;
  using Base::m_FBp_1;
  using Base::m_NewFrameEvent;
  using Base::m_ReadEvent;
  using Base::m_RunOK;
  using Base::m_TrackFile;
  using Base::m_WriteEvent;
};
using FrameThread = OpenThread<QUIRE::PCM::FrameBuffer>;
using StereoThread = OpenThread<Strata::SFrameBuffer>;

constexpr ui32_t Capacity = 256;

/// A running thread over a controlled reader. Each test's end stops the thread, which is part of what is tested.
class EssenceReaderThread : public testing::Test {
 protected:
  void SetUp() override {
    m_PreviousSink = Ferro::SetDefaultLogSink(&Log);
    ASSERT_TRUE(Thread.SetupFrameBuffers(Capacity));
    ASSERT_EQ(Thread.Start("TimelineTrack"), Ferro::RESULT_OK);
  }
  void TearDown() override {
    Stop();
    Ferro::SetDefaultLogSink(m_PreviousSink);
  }

  void Stop() {
    if (!m_Stopped) {
      EXPECT_EQ(Thread.Stop(10000, true), Ferro::RESULT_OK);
    }
    m_Stopped = true;
  }
  /// Requests `position` and expects that a bracket then shows `shown`.
  void ExpectFrame(ui32_t position, ui32_t shown) {
    Thread.RequestFrame(position);
    ExpectBracket(shown);
  }
  void ExpectBracket(ui32_t shown) {
    Thread.BufferLock();
    EXPECT_TRUE(Holds(Thread.GetCurrentFrameBuffer(), shown)) << Thread.GetCurrentFrameBuffer().FrameNumber();
    EXPECT_EQ(Thread.GetCurrentFrameBufferSize(), ControlledReader::SizeOf(shown));
    Thread.BufferUnlock();
  }
  void ExpectEmptyBracket() {
    Thread.BufferLock();
    EXPECT_EQ(Thread.GetCurrentFrameBuffer().FrameNumber(), NoFrame);
    EXPECT_EQ(Thread.GetCurrentFrameBufferSize(), 0u);
    Thread.BufferUnlock();
  }
  std::vector<std::string> LogLines() const {
    std::vector<std::string> lines;
    for (const Ferro::LogEntry& entry : Log.Entries()) lines.push_back(entry.Message);
    return lines;
  }

  Ferro::MemoryLogSink Log;
  ControlledReader Reader;
  FrameThread Thread{&Reader};

 private:
  Ferro::ILogSink* m_PreviousSink = nullptr;
  bool m_Stopped = false;
};

TEST_F(EssenceReaderThread, FirstRequestIsExchangedBeforeAnyBracket) {
  ExpectFrame(7, 7);
  EXPECT_EQ(Reader.ReadCount, 1u);
}

TEST_F(EssenceReaderThread, SecondExchangeWaitsForBufferUnlock) {
  Thread.RequestFrame(1);
  Thread.RequestFrame(2);
  Reader.Ended.Pend();
  Reader.Ended.Pend();  // frame 2 is read, and the front not yet released
  Thread.RequestFrame(3);
  ExpectBracket(1);
  ExpectBracket(2);
  ExpectBracket(3);
}

TEST_F(EssenceReaderThread, NoReadBeginsWhileAFrameWaitsForTheFront) {
  for (ui32_t position : {1u, 2u, 3u}) Thread.RequestFrame(position);
  Reader.Ended.Pend();
  Reader.Ended.Pend();
  Thread.BufferLock();
  EXPECT_EQ(Reader.ReadCount, 2u);
  EXPECT_TRUE(Holds(Thread.GetCurrentFrameBuffer(), 1));
  Thread.BufferUnlock();
  ExpectBracket(2);
  ExpectBracket(3);
}

TEST_F(EssenceReaderThread, FrontIsReadableWhileTheNextFrameIsBeingRead) {
  ExpectFrame(1, 1);
  Reader.Blocking = true;
  Thread.RequestFrame(1);  // lets one more bracket through
  Thread.RequestFrame(2);
  Reader.Begun.Pend();
  Reader.Begun.Pend();  // the thread is inside the read of frame 2
  ExpectBracket(1);
  Reader.LetGo.Post();
  ExpectBracket(2);
}

TEST_F(EssenceReaderThread, FrontStandsStillInsideABracket) {
  Thread.RequestFrame(1);
  Thread.RequestFrame(2);
  Reader.Begun.Pend();
  Reader.Begun.Pend();  // frame 2 is taken, which a bracket would hold up
  Thread.BufferLock();
  Reader.Ended.Pend();
  Reader.Ended.Pend();
  const QUIRE::FrameBuffer* front = &Thread.GetCurrentFrameBuffer();
  EXPECT_TRUE(Holds(*front, 1));
  EXPECT_EQ(front, &Thread.GetCurrentFrameBuffer());
  Thread.BufferUnlock();
  ExpectBracket(2);
}

TEST_F(EssenceReaderThread, PositionInFrontReadsNothingAndLetsOneBracketThrough) {
  ExpectFrame(5, 5);
  ExpectFrame(5, 5);
  ExpectFrame(5, 5);
  EXPECT_EQ(Reader.ReadCount, 1u);
}

TEST_F(EssenceReaderThread, BracketsOfOneFrameDoNotLetTheThreadRunAhead) {
  ExpectFrame(1, 1);
  for (int i = 0; i < 10; ++i) ExpectFrame(1, 1);
  for (ui32_t position = 2; position < 6; ++position) Thread.RequestFrame(position);
  for (ui32_t position = 2; position < 6; ++position) ExpectBracket(position);
}

TEST_F(EssenceReaderThread, NoFrameFirstCountsAsCurrent) {
  Thread.RequestFrame(NoFrame);
  ExpectEmptyBracket();
  EXPECT_EQ(Reader.ReadCount, 0u);
  ExpectFrame(0, 0);
}

TEST_F(EssenceReaderThread, NoFrameAfterAFrameIsReadLikeAnyPosition) {
  Reader.Failing = {NoFrame};
  ExpectFrame(3, 3);
  ExpectFrame(NoFrame, 3);
  EXPECT_EQ(Reader.ReadCount, 2u);
}

TEST_F(EssenceReaderThread, FailureOnTheFirstFrameLeavesNoFrame) {
  Reader.Failing = {4};
  Thread.RequestFrame(4);
  ExpectEmptyBracket();
  EXPECT_EQ(LogLines(), std::vector<std::string>{"IMG (frame 4): Requested edit unit is out of range.\n"});
  EXPECT_EQ(Log.Entries().front().Level, Ferro::LogLevel::Error);
  ExpectFrame(5, 5);
}

TEST_F(EssenceReaderThread, FailureOnAMiddleFrameShowsThePreviousOneAgain) {
  Reader.Failing = {11};
  ExpectFrame(10, 10);
  ExpectFrame(11, 10);
  ExpectFrame(12, 12);
  EXPECT_EQ(LogLines(), std::vector<std::string>{"IMG (frame 11): Requested edit unit is out of range.\n"});
}

TEST_F(EssenceReaderThread, FailureOnTheLastFrameShowsThePreviousOneAgain) {
  Reader.Failing = {100};
  ExpectFrame(99, 99);
  ExpectFrame(100, 99);
  ExpectFrame(100, 99);  // not remembered: it is tried again
  EXPECT_EQ(Reader.ReadCount, 3u);
  EXPECT_EQ(LogLines().size(), 2u);
}

TEST_F(EssenceReaderThread, FrameBeforeAFailureIsStillCurrentAfterIt) {
  Reader.Failing = {2};
  ExpectFrame(1, 1);
  ExpectFrame(2, 1);
  ExpectFrame(1, 1);
  EXPECT_EQ(Reader.ReadCount, 2u);
}

TEST_F(EssenceReaderThread, EachRequestLetsExactlyOneBracketThrough) {
  Reader.Failing = {2, 3};
  const std::vector<ui32_t> requests{1, 1, 2, 3, 1, NoFrame - 1, 2};
  for (ui32_t position : requests) {
    Thread.RequestFrame(position);
    Thread.BufferLock();
    Thread.BufferUnlock();
  }
  Stop();
  EXPECT_FALSE(Thread.m_WriteEvent.Pend(std::chrono::milliseconds(0)));
}

TEST_F(EssenceReaderThread, HundredPositionsQueuedAtOnceAreAllShownInOrder) {
  for (ui32_t position = 100; position > 0; --position) Thread.RequestFrame(position);
  for (ui32_t position = 100; position > 0; --position) ExpectBracket(position);
  EXPECT_EQ(Reader.ReadCount, 100u);
}

TEST_F(EssenceReaderThread, BracketWaitsForTheRequestThatComesLater) {
  Reader.Blocking = true;
  std::thread transport([this] { ExpectBracket(6); });
  Thread.RequestFrame(6);
  Reader.Begun.Pend();
  Reader.LetGo.Post();
  transport.join();
}

TEST_F(EssenceReaderThread, RequestFromInsideTheBracketIsServedAfterIt) {
  Thread.RequestFrame(1);
  for (ui32_t position = 1; position < 50; ++position) {
    Thread.BufferLock();
    EXPECT_TRUE(Holds(Thread.GetCurrentFrameBuffer(), position));
    Thread.RequestFrame(position + 1);
    EXPECT_TRUE(Holds(Thread.GetCurrentFrameBuffer(), position));
    Thread.BufferUnlock();
  }
}

TEST_F(EssenceReaderThread, TwoBuffersServeAllFrames) {
  std::set<const void*> memory;
  for (ui32_t position = 0; position < 10; ++position) {
    Thread.RequestFrame(position);
    Thread.BufferLock();
    memory.insert(Thread.GetCurrentFrameBuffer().RoData());
    Thread.BufferUnlock();
  }
  EXPECT_EQ(memory.size(), 2u);
}

TEST_F(EssenceReaderThread, FrameLargerThanTheBufferIsAFailedRead) {
  FrameThread small(&Reader);
  ASSERT_TRUE(small.SetupFrameBuffers(64));
  ASSERT_EQ(small.Start("TimelineTrack"), Ferro::RESULT_OK);
  small.RequestFrame(1);
  small.BufferLock();
  EXPECT_EQ(small.GetCurrentFrameBuffer().FrameNumber(), NoFrame);
  small.BufferUnlock();
  EXPECT_EQ(small.Stop(10000, true), Ferro::RESULT_OK);
  EXPECT_EQ(LogLines(), std::vector<std::string>{"IMG (frame 1): The given buffer is too small.\n"});
}

TEST_F(EssenceReaderThread, StopBeforeAnyRequestEndsTheThread) {
  Stop();
  EXPECT_FALSE(Thread.IsRunning());
  EXPECT_EQ(Reader.ReadCount, 0u);
}

TEST_F(EssenceReaderThread, StopWhileIdleEndsTheThread) {
  ExpectFrame(1, 1);
  Stop();
  EXPECT_FALSE(Thread.IsRunning());
}

TEST_F(EssenceReaderThread, StopWhileWaitingForTheFrontDropsTheFrame) {
  Thread.RequestFrame(1);
  Thread.RequestFrame(2);
  Reader.Ended.Pend();
  Reader.Ended.Pend();
  Stop();
  EXPECT_TRUE(Holds(Thread.GetCurrentFrameBuffer(), 1));
  EXPECT_TRUE(Thread.m_WriteEvent.Pend(std::chrono::milliseconds(0)));   // request 1's
  EXPECT_FALSE(Thread.m_WriteEvent.Pend(std::chrono::milliseconds(0)));  // request 2 was not answered
}

TEST_F(EssenceReaderThread, StopDuringABlockedReadWaitsForItAndDropsTheFrame) {
  Reader.Blocking = true;
  Thread.RequestFrame(1);
  Reader.Begun.Pend();
  EXPECT_EQ(Thread.ThreadStop(), Ferro::RESULT_OK);
  EXPECT_TRUE(Thread.IsRunning());
  Reader.LetGo.Post();
  Stop();
  EXPECT_EQ(Thread.GetCurrentFrameBuffer().FrameNumber(), NoFrame);
  EXPECT_FALSE(Thread.m_WriteEvent.Pend(std::chrono::milliseconds(0)));
}

TEST_F(EssenceReaderThread, StopDuringAReadThatThenFailsEndsTheThread) {
  Reader.Failing = {1};
  Reader.Blocking = true;
  Thread.RequestFrame(1);
  Reader.Begun.Pend();
  EXPECT_EQ(Thread.ThreadStop(), Ferro::RESULT_OK);
  Reader.LetGo.Post();
  Stop();
  EXPECT_TRUE(Thread.m_WriteEvent.Pend(std::chrono::milliseconds(0)));  // a failed read is answered all the same
}

TEST_F(EssenceReaderThread, StopWhileWaitingForTheBracketsMutexEndsTheThread) {
  Thread.RequestFrame(1);
  Thread.BufferLock();
  Thread.RequestFrame(2);  // the thread cannot take it before the bracket ends
  EXPECT_EQ(Thread.ThreadStop(), Ferro::RESULT_OK);
  Thread.BufferUnlock();
  Stop();
  EXPECT_TRUE(Holds(Thread.GetCurrentFrameBuffer(), 1));
}

TEST_F(EssenceReaderThread, StopWithAHundredPositionsQueuedReadsNoFurther) {
  Reader.Blocking = true;
  for (ui32_t position = 0; position < 100; ++position) Thread.RequestFrame(position);
  Reader.Begun.Pend();
  EXPECT_EQ(Thread.ThreadStop(), Ferro::RESULT_OK);
  Reader.LetGo.Post();
  Stop();
  EXPECT_EQ(Reader.ReadCount, 1u);
}

TEST_F(EssenceReaderThread, RunsUnderTheNameItWasStartedWith) {
  EXPECT_EQ(Thread.Name(), "TimelineTrack");
}

TEST(EssenceReaderThreadBuffers, HaveTheCapacityAskedForAndHoldNoFrame) {
  ControlledReader reader;
  FrameThread thread(&reader);
  ASSERT_TRUE(thread.SetupFrameBuffers(1000));
  EXPECT_NE(thread.m_FBp_0, thread.m_FBp_1);
  for (const QUIRE::FrameBuffer* buffer : {thread.m_FBp_0, thread.m_FBp_1}) {
    EXPECT_EQ(buffer->Capacity(), 1000u);
    EXPECT_EQ(buffer->Size(), 0u);
    EXPECT_EQ(buffer->FrameNumber(), NoFrame);
  }
}

TEST(EssenceReaderThreadBuffers, AreReplacedBySettingThemUpAgain) {
  ControlledReader reader;
  FrameThread thread(&reader);
  ASSERT_TRUE(thread.SetupFrameBuffers(1000));
  ASSERT_TRUE(thread.SetupFrameBuffers(10));
  EXPECT_EQ(thread.m_FBp_0->Capacity(), 10u);
  EXPECT_EQ(thread.m_FBp_1->Capacity(), 10u);
}

TEST(EssenceReaderThreadBuffers, OfStereoscopicPictureAreFour) {
  ControlledReader reader;
  StereoThread thread(&reader);
  ASSERT_TRUE(thread.SetupFrameBuffers(1000));
  for (const Strata::SFrameBuffer* pair : {thread.m_FBp_0, thread.m_FBp_1}) {
    for (const QUIRE::FrameBuffer* eye : {&pair->Left, &pair->Right}) {
      EXPECT_EQ(eye->Capacity(), 1000u);
      EXPECT_EQ(eye->FrameNumber(), NoFrame);
    }
  }
}

TEST(EssenceReaderThreadBuffers, StereoscopicFrameIsExchangedWithBothEyes) {
  ControlledReader reader;
  StereoThread thread(&reader);
  ASSERT_TRUE(thread.SetupFrameBuffers(Capacity));
  ASSERT_EQ(thread.Start("TimelineTrack"), Ferro::RESULT_OK);
  for (ui32_t position : {3u, 4u, 9u}) {
    thread.RequestFrame(position);
    thread.BufferLock();
    EXPECT_TRUE(Holds(thread.GetCurrentFrameBuffer().Left, position));
    EXPECT_TRUE(Holds(thread.GetCurrentFrameBuffer().Right, position));
    EXPECT_EQ(thread.GetCurrentFrameBufferSize(), ControlledReader::SizeOf(position));
    thread.BufferUnlock();
  }
  EXPECT_EQ(thread.Stop(10000, true), Ferro::RESULT_OK);
}

TEST(EssenceReaderThreadEvents, HaveTheirNamesAndTheFirstReadEventIsPosted) {
  ControlledReader reader;
  FrameThread thread(&reader);
  EXPECT_EQ(thread.m_ReadEvent.Name(), "ReadEvent");
  EXPECT_EQ(thread.m_WriteEvent.Name(), "WriteEvent");
  EXPECT_EQ(thread.m_NewFrameEvent.Name(), "NewFrameEvent");
  EXPECT_TRUE(thread.m_ReadEvent.Pend(std::chrono::milliseconds(0)));
  EXPECT_FALSE(thread.m_WriteEvent.Pend(std::chrono::milliseconds(0)));
  EXPECT_FALSE(thread.m_NewFrameEvent.Pend(std::chrono::milliseconds(0)));
}

TEST(EssenceReaderThreadEvents, ThreadStopPostsTheTwoTheThreadWaitsFor) {
  ControlledReader reader;
  FrameThread thread(&reader);
  thread.m_ReadEvent.Pend();
  EXPECT_EQ(thread.ThreadStop(), Ferro::RESULT_OK);
  EXPECT_FALSE(thread.m_RunOK);
  EXPECT_TRUE(thread.m_ReadEvent.Pend(std::chrono::milliseconds(0)));
  EXPECT_TRUE(thread.m_NewFrameEvent.Pend(std::chrono::milliseconds(0)));
  EXPECT_FALSE(thread.m_WriteEvent.Pend(std::chrono::milliseconds(0)));
}

TEST(EssenceReaderThreadResults, InitSucceedsAndFiniPassesTheResultOn) {
  ControlledReader reader;
  FrameThread thread(&reader);
  EXPECT_EQ(thread.ThreadInit(), Ferro::RESULT_OK);
  EXPECT_EQ(thread.ThreadFini(Ferro::RESULT_OK), Ferro::RESULT_OK);
  EXPECT_EQ(thread.ThreadFini(Ferro::RESULT_READFAIL), Ferro::RESULT_READFAIL);
}

TEST(EssenceReaderThreadDeathTest, WakeUpWithNothingQueued) {
  ControlledReader reader;
  FrameThread thread(&reader);
  ASSERT_TRUE(thread.SetupFrameBuffers(Capacity));
  thread.m_NewFrameEvent.Post();
  EXPECT_DEATH(static_cast<void>(thread.ThreadBody()), "Assertion '!m_NewPosition.empty\\(\\)' failed\\.");
}

TEST(EssenceReaderThreadDeathTest, ReadWithoutATrackFile) {
  FrameThread thread(nullptr);
  ASSERT_TRUE(thread.SetupFrameBuffers(Capacity));
  thread.RequestFrame(0);
  EXPECT_DEATH(static_cast<void>(thread.ThreadBody()), "Assertion 'm_TrackFile' failed\\.");
}

TEST(EssenceReaderThreadDeathTest, FrameBeforeTheBuffersExist) {
  ControlledReader reader;
  FrameThread thread(&reader);
  EXPECT_DEATH(static_cast<void>(thread.GetCurrentFrameBuffer()), "Assertion 'm_FBp_1' failed\\.");
  EXPECT_DEATH(static_cast<void>(thread.GetCurrentFrameBufferSize()), "Assertion 'm_FBp_1' failed\\.");
}

TEST(PositionQueue, GivesPositionsBackInOrderThroughGrowthAndReuse) {
  Strata::PositionQueue queue;
  EXPECT_TRUE(queue.empty());
  ui32_t next = 0;
  ui32_t oldest = 0;
  for (ui32_t round = 1; round < 200; ++round) {
    for (ui32_t i = 0; i < round % 37; ++i) queue.push(next++);
    for (ui32_t i = 0; i < round % 31 && !queue.empty(); ++i) ASSERT_EQ(queue.pop(), oldest++);
  }
  while (!queue.empty()) ASSERT_EQ(queue.pop(), oldest++);
  EXPECT_EQ(oldest, next);
}

}  // namespace
