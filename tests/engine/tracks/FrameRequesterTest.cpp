// SPDX-License-Identifier: BSD-3-Clause
// Taking frames of a real track; FrameRequesterModelTest.cpp has every order of events.
#include <Strata/FrameRequester.h>

#include "../../support/LogCapture.h"
#include "ControlledTrack.h"
#include "TimelineElements/SilenceTrack.h"
#include "TimelineElements/TextTrack.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Strata::FrameRequester;
using Strata::ui32_t;
using testsupport::ControlledFile;
using testsupport::ControlledTrack;
using testsupport::Holds;

struct FrameRequesterTest : testing::Test {
  FrameRequesterTest() {
    ControlledFile::Facts = {};
    EXPECT_EQ(Track.InitWithFilename("file", 0, 500), Ferro::RESULT_OK);
    Track.MakeReady();
  }
  testsupport::LogCapture Log;
  ControlledTrack Track;
};

TEST_F(FrameRequesterTest, NextFrameIsAskedForBeforeThePresentOneIsReleased) {
  FrameRequester requester(Track);
  EXPECT_TRUE(requester.Take(0).IsThere());
  EXPECT_TRUE(requester.Take(1, 2).IsThere());
  for (int frame = 0; frame < 3; ++frame) Track.m_TrackFile->Ended.Pend();  // frame 2 is read though not taken
}

TEST_F(FrameRequesterTest, FrameIsAskedForOnce) {
  FrameRequester requester(Track);
  requester.Ask(3);
  requester.Ask(3);
  EXPECT_TRUE(requester.Take(3, 4).IsThere());
  requester.Ask(4);
  EXPECT_TRUE(requester.Take(4).IsThere());
  EXPECT_EQ(Track.m_TrackFile->ReadCount, 2u);
}

TEST_F(FrameRequesterTest, ExceptionDuringUseReleasesTheFrame) {
  FrameRequester requester(Track);
  EXPECT_THROW(
      {
        const auto frame = requester.Take(1, 2);
        throw std::runtime_error("while the frame is shown");
      },
      std::runtime_error);
  EXPECT_TRUE(requester.Take(2, 3).IsThere());
}

TEST_F(FrameRequesterTest, TrackIsAtRestWhenTheRequesterIsGone) {
  { EXPECT_TRUE(FrameRequester(Track).Take(1, 2).IsThere()); }
  FrameRequester again(Track);
  EXPECT_TRUE(again.Take(2, 3).IsThere());
  EXPECT_TRUE(again.Take(3, 4).IsThere());
}

TEST_F(FrameRequesterTest, SilenceIsAlwaysThere) {
  QUIRE::PCM::AudioDescriptor descriptor;
  descriptor.EditRate = {24, 1};
  descriptor.AudioSamplingRate = QUIRE::SampleRate_48k;
  descriptor.QuantizationBits = 24;
  descriptor.ChannelCount = 6;
  Strata::SilenceTimelineElement silence(descriptor);
  FrameRequester requester(silence);
  for (ui32_t position = 0; position < 3; ++position) EXPECT_TRUE(requester.Take(position, position + 1).IsThere());
}

/// How many of the frames of a file with one damaged one are reported, with the thread hurrying or not.
TEST_F(FrameRequesterTest, OneDamagedFrameOf480IsReportedAsOne) {
  constexpr ui32_t FrameCount = 480;
  constexpr ui32_t Rounds = 20;
  for (ui32_t round = 0; round < Rounds; ++round) {
    ControlledTrack track;
    ASSERT_EQ(track.InitWithFilename("file", 0, FrameCount), Ferro::RESULT_OK);
    track.MakeReady();
    const ui32_t damaged = round * 24;
    track.m_TrackFile->Failing = {damaged};
    FrameRequester requester(track);
    for (ui32_t position = 0; position < FrameCount; ++position) {
      const auto frame = requester.Take(position, position + 1);
      ASSERT_EQ(frame.IsThere(), position != damaged) << "frame " << position << " with " << damaged << " damaged";
      ASSERT_TRUE(position == damaged || Holds(track.FrameBuffer(), position));
    }
  }
}

}  // namespace
