// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/SilenceTrack.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Strata::SilenceTimelineElement;

QUIRE::PCM::AudioDescriptor Descriptor(QUIRE::Rational sampling, QUIRE::Rational edit_rate) {
  QUIRE::PCM::AudioDescriptor descriptor;
  descriptor.EditRate = edit_rate;
  descriptor.AudioSamplingRate = sampling;
  descriptor.ChannelCount = 6;
  descriptor.QuantizationBits = 24;
  return descriptor;
}

Ferro::ui32_t SilentBytes(QUIRE::Rational sampling, QUIRE::Rational edit_rate) {
  return SilenceTimelineElement(Descriptor(sampling, edit_rate)).FrameBuffer().Size();
}

TEST(SilenceTrack, SixChannelsOf24BitsAt48kAnd24AreThirtySixThousandZeroBytes) {
  const SilenceTimelineElement track(Descriptor({48000, 1}, {24, 1}));
  const QUIRE::FrameBuffer& frame = track.FrameBuffer();
  ASSERT_EQ(frame.Size(), 36000u);
  EXPECT_EQ(frame.Capacity(), 36000u);
  EXPECT_TRUE(std::all_of(frame.RoData(), frame.RoData() + frame.Size(), [](auto byte) { return byte == 0; }));
  EXPECT_EQ(track.FrameBufferSize(), 100u);
}

TEST(SilenceTrack, SamplesPerEditUnitAreRoundedUp) {
  EXPECT_EQ(SilentBytes({48000, 1}, {25, 1}), 1920u * 18);
  EXPECT_EQ(SilentBytes({48000, 1}, {30000, 1001}), 1602u * 18);
  EXPECT_EQ(SilentBytes({48000, 1}, {24000, 1001}), 2002u * 18);
  EXPECT_EQ(SilentBytes({96000, 1}, {24, 1}), 4000u * 18);
  EXPECT_EQ(SilentBytes({44100, 1}, {24, 1}), 1838u * 18);
}

TEST(SilenceTrack, SampleBytesAreWholeBytes) {
  auto descriptor = Descriptor({48000, 1}, {24, 1});
  descriptor.QuantizationBits = 20;
  EXPECT_EQ(SilenceTimelineElement(descriptor).FrameBuffer().Size(), 2u * 6 * 2000);
  descriptor.QuantizationBits = 7;
  EXPECT_EQ(SilenceTimelineElement(descriptor).FrameBuffer().Size(), 0u);
}

TEST(SilenceTrack, DescriptorThatCannotBeTrueGivesAnEmptyFrame) {
  EXPECT_EQ(SilentBytes({48000, 1}, {0, 0}), 0u);
  EXPECT_EQ(SilentBytes({48000, 1}, {0, 1}), 0u);
  EXPECT_EQ(SilentBytes({0, 0}, {24, 1}), 0u);
  EXPECT_EQ(SilentBytes({-48000, 1}, {24, 1}), 0u);
  EXPECT_EQ(SilentBytes({2147483647, 1}, {1, 2147483647}), 0u);
  auto descriptor = Descriptor({48000, 1}, {1, 1});
  descriptor.ChannelCount = 10000;
  EXPECT_EQ(SilenceTimelineElement(descriptor).FrameBuffer().Size(), 0u);
}

TEST(SilenceTrack, FrameBeyondWhatASoundTrackDeliversIsEmpty) {
  auto descriptor = Descriptor({48000, 1}, {24, 1});
  descriptor.ChannelCount = 87;  // 6000 bytes each, at most 524,288 in all
  EXPECT_EQ(SilenceTimelineElement(descriptor).FrameBuffer().Size(), 522000u);
  descriptor.ChannelCount = 88;
  EXPECT_EQ(SilenceTimelineElement(descriptor).FrameBuffer().Size(), 0u);
  descriptor.ChannelCount = 0xFFFFFFFF;
  descriptor.QuantizationBits = 0xFFFFFFFF;
  EXPECT_LE(SilenceTimelineElement(descriptor).FrameBuffer().Size(), 524288u);
}

TEST(SilenceTrack, TracksOfOneSizeShareOneFrame) {
  const SilenceTimelineElement at_24(Descriptor({48000, 1}, {24, 1}));
  const SilenceTimelineElement at_25(Descriptor({48000, 1}, {25, 1}));
  const SilenceTimelineElement again(Descriptor({96000, 1}, {48, 1}));
  EXPECT_EQ(&at_24.FrameBuffer(), &again.FrameBuffer());
  EXPECT_NE(&at_24.FrameBuffer(), &at_25.FrameBuffer());
}

TEST(SilenceTrack, InitTakesTheDescriptorAndIgnoresTheFile) {
  SilenceTimelineElement track(Descriptor({48000, 1}, {24, 1}));
  EXPECT_EQ(track.InitWithFilename("no such file", 17, 240), Ferro::RESULT_OK);
  EXPECT_EQ(track.EditRate(), QUIRE::Rational(24, 1));
  EXPECT_EQ(track.SampleRate(), 48000u);
  EXPECT_EQ(track.SampleSize(), 24u);
  EXPECT_EQ(track.ChannelCount(), 6u);
  EXPECT_EQ(track.IntrinsicDuration(), 1000000u);
  EXPECT_EQ(track.EntryPoint(), 17u);
  EXPECT_EQ(track.Duration(), 240u);
}

TEST(SilenceTrack, SampleRateRoundsHalfUp) {
  SilenceTimelineElement below(Descriptor({96001, 3}, {24, 1}));
  EXPECT_EQ(below.InitWithFilename("", 0, 1), Ferro::RESULT_OK);
  EXPECT_EQ(below.SampleRate(), 32000u);
  SilenceTimelineElement half(Descriptor({88201, 2}, {24, 1}));
  EXPECT_EQ(half.InitWithFilename("", 0, 1), Ferro::RESULT_OK);
  EXPECT_EQ(half.SampleRate(), 44101u);
}

TEST(SilenceTrack, MakeDormantReturnsTrueThoughNothingWasReady) {
  SilenceTimelineElement track(Descriptor({48000, 1}, {24, 1}));
  EXPECT_TRUE(track.MakeDormant());
  track.MakeReady();
  EXPECT_TRUE(track.MakeDormant());
}

TEST(SilenceTrack, FrameOperationsNeverWaitAndShowTheOneFrame) {
  SilenceTimelineElement track(Descriptor({48000, 1}, {24, 1}));
  track.BufferLock();
  track.BufferLock();
  const QUIRE::FrameBuffer* frame = &track.FrameBuffer();
  track.BufferUnlock();
  track.ReadyFrameAtLocation(0xFFFFFFFF);
  track.BufferLock();
  EXPECT_EQ(&track.FrameBuffer(), frame);
  EXPECT_EQ(&track.REyeFrameBuffer(), frame);
  EXPECT_EQ(track.REyeFrameBufferSize(), 0u);
  track.BufferUnlock();
}

TEST(SilenceTrack, SaysWhatItIs) {
  SilenceTimelineElement track(Descriptor({48000, 1}, {24, 1}));
  EXPECT_EQ(track.AssetID().EncodeString(), "7c4616f2-48a6-58b3-9d2a-e7547301b6f8");
  EXPECT_EQ(track.TrackType(), Strata::TRKT_SOUND);
  EXPECT_EQ(track.ChannelID(), 0u);
  EXPECT_EQ(track.AssetName(), "");
  EXPECT_EQ(track.Language(), "");
  EXPECT_FALSE(track.KeyID().HasValue());
  EXPECT_FALSE(track.ChannelAssignment().HasValue());
  EXPECT_EQ(track.MCALabelString(), "");
  EXPECT_EQ(track.ImageWidth(), 0u);
  EXPECT_EQ(track.ImageHeight(), 0u);
  EXPECT_FALSE(track.HasStereoImage());
  track.SetSpanDuration(99);
  EXPECT_EQ(track.GetSpanDuration(), 0u);
}

TEST(SilenceTrack, TimedTextOperationsAnswerNothing) {
  const SilenceTimelineElement track(Descriptor({48000, 1}, {24, 1}));
  QUIRE::TimedText::FrameBuffer buffer;
  ASSERT_EQ(buffer.Capacity(3), Ferro::RESULT_OK);
  buffer.Size(3);
  Ferro::UUIDList ids{Ferro::UUID::Random()};
  Ferro::ArchivableList<Ferro::ArchivableString> names{"name"};
  EXPECT_EQ(track.TextEssenceFormat(), Cairn::DFT_NONE);
  EXPECT_FALSE(track.GetTimedTextData(buffer));
  EXPECT_FALSE(track.AncillaryResourceIDList(ids));
  EXPECT_FALSE(track.AncillaryResourceNameList(names));
  EXPECT_FALSE(track.GetTimedTextResourceByID(Ferro::UUID::Random(), buffer));
  EXPECT_FALSE(track.GetTimedTextResourceByName("name", buffer));
  EXPECT_EQ(buffer.Size(), 3u);
  EXPECT_EQ(ids.size(), 1u);
  EXPECT_EQ(names.size(), 1u);
}

}  // namespace
