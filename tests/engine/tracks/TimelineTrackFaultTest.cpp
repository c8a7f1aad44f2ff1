// SPDX-License-Identifier: BSD-3-Clause
// A program of its own, because it takes the place of the system's functions.
#include "../../support/LogCapture.h"
#include "../../support/ThreadFault.h"
#include "ControlledTrack.h"

#include <Strata/FrameRequester.h>

#include <gtest/gtest.h>

namespace {

using testsupport::ControlledFile;
using testsupport::ControlledTrack;
using testsupport::LogCapture;

struct TimelineTrackFault : testing::Test {
  TimelineTrackFault() {
    ControlledFile::Facts = {};
    EXPECT_EQ(Track.InitWithFilename("file", 0, 50), Ferro::RESULT_OK);
  }
  LogCapture Log;
  ControlledTrack Track;
};

TEST_F(TimelineTrackFault, WithoutAThreadEveryRequestIsAnsweredAsAFailedRead) {
  {
    const testsupport::NoThreads refused;
    Track.MakeReady();
  }
  EXPECT_TRUE(IsReady(Track));
  Strata::FrameRequester requester(Track);
  for (Strata::ui32_t position = 7; position < 10; ++position) {
    const auto frame = requester.Take(position, position + 1);
    EXPECT_FALSE(frame.IsThere());
    EXPECT_EQ(Track.FrameBuffer().FrameNumber(), Strata::NoFrame);
    EXPECT_EQ(Track.FrameBufferSize(), 0u);
  }
  requester.Settle();
  EXPECT_EQ(Log.Text(),
            "Thread TimelineTrack cannot be started: Resource temporarily unavailable\n"
            "IMG (frame 7): An undefined error was detected.\n"
            "IMG (frame 8): An undefined error was detected.\n"
            "IMG (frame 9): An undefined error was detected.\n");
  EXPECT_EQ(ControlledFile::Facts.OpenCount, 2);
}

TEST_F(TimelineTrackFault, MadeReadyAnewTheTrackHasItsThread) {
  {
    const testsupport::NoThreads refused;
    Track.MakeReady();
  }
  EXPECT_TRUE(Track.MakeDormant());
  Track.MakeReady();
  Strata::FrameRequester requester(Track);
  EXPECT_TRUE(requester.Take(7).IsThere());
}

TEST_F(TimelineTrackFault, WithoutMemoryTheTrackStaysDormantAndTriesAgain) {
  {
    const testsupport::NoMemory out;
    EXPECT_NO_THROW(Track.MakeReady());
  }
  EXPECT_FALSE(IsReady(Track));
  EXPECT_FALSE(Track.MakeDormant());
  Track.MakeReady();
  EXPECT_TRUE(IsReady(Track));
}

TEST_F(TimelineTrackFault, ExceptionInAReadIsAFailedRead) {
  Track.MakeReady();
  Track.m_TrackFile->Throwing = {2};
  Strata::FrameRequester requester(Track);
  for (Strata::ui32_t position = 1; position < 5; ++position)
    EXPECT_EQ(requester.Take(position, position + 1).IsThere(), position != 2) << position;
  EXPECT_EQ(Log.Text(), "IMG (frame 2): Error allocating memory.\n");
}

}  // namespace
