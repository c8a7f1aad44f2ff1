// SPDX-License-Identifier: BSD-3-Clause
// The states of a track, on a track file that the test controls.
#include "ControlledTrack.h"
#include "TimelineElements/SilenceTrack.h"
#include "TimelineElements/TextTrack.h"

#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

using Strata::ui32_t;
using testsupport::ControlledFile;
using testsupport::ControlledTrack;

class TimelineTrackState : public testing::Test {
 protected:
  void SetUp() override {
    ControlledFile::Facts = {};
    ControlledFile::Facts.Info.AssetUUID = AssetID;
    ControlledFile::Facts.Descriptor.EditRate = {24, 1};
    ControlledFile::Facts.Descriptor.AudioSamplingRate = {48000, 1};
    ControlledFile::Facts.Descriptor.ContainerDuration = 100;
    m_Previous = Ferro::SetDefaultLogSink(&Log);
  }
  void TearDown() override { Ferro::SetDefaultLogSink(m_Previous); }
  void Init() { ASSERT_EQ(Track.InitWithFilename("file", 2, 50), Ferro::RESULT_OK); }
  /// What a sampling rate becomes.
  ui32_t SampleRate(QUIRE::Rational rate) {
    ControlledFile::Facts.Descriptor.AudioSamplingRate = rate;
    ControlledTrack track;
    EXPECT_EQ(track.InitWithFilename("file", 0, 1), Ferro::RESULT_OK);
    return track.SampleRate();
  }

  const Ferro::UUID AssetID = Ferro::UUID::Random();
  Ferro::MemoryLogSink Log;
  ControlledTrack Track;

 private:
  Ferro::ILogSink* m_Previous = nullptr;
};

TEST_F(TimelineTrackState, InitClosesTheFileAgain) {
  Init();
  EXPECT_EQ(ControlledFile::Facts.OpenCount, 1);
  EXPECT_TRUE(Track.m_TrackFile.empty());
  EXPECT_TRUE(Track.m_ReaderThread.empty());
}

TEST_F(TimelineTrackState, MakeReadyOpensTheFileThatInitWasGiven) {
  Init();
  ControlledFile::Facts.OpenedName.clear();
  Track.MakeReady();
  EXPECT_EQ(ControlledFile::Facts.OpenedName, "file");
  EXPECT_FALSE(Track.m_TrackFile.empty());
  EXPECT_FALSE(Track.m_ReaderThread.empty());
  EXPECT_EQ(Track.m_ReaderThread->Name(), "TimelineTrack");
  EXPECT_TRUE(Track.m_ReaderThread->IsRunning());
}

TEST_F(TimelineTrackState, MakeReadyOfAReadyTrackChangesNothing) {
  Init();
  Track.MakeReady();
  const auto* file = Track.m_TrackFile.get();
  const auto* thread = Track.m_ReaderThread.get();
  Track.MakeReady();
  EXPECT_EQ(Track.m_TrackFile.get(), file);
  EXPECT_EQ(Track.m_ReaderThread.get(), thread);
  EXPECT_EQ(ControlledFile::Facts.OpenCount, 2);
}

TEST_F(TimelineTrackState, BuffersHaveTheReadersCapacity) {
  ControlledFile::Facts.Capacity = 4321;
  Init();
  Track.MakeReady();
  EXPECT_EQ(Track.FrameBuffer().Capacity(), 4321u);
}

TEST_F(TimelineTrackState, MakeDormantDuringABlockedReadWaitsForIt) {
  Init();
  Track.MakeReady();
  Track.m_TrackFile->Blocking = true;
  Track.ReadyFrameAtLocation(1);
  Track.m_TrackFile->Begun.Pend();
  Ferro::Event& let_go = Track.m_TrackFile->LetGo;
  std::thread owner([this] { EXPECT_TRUE(Track.MakeDormant()); });
  let_go.Post();
  owner.join();
  EXPECT_TRUE(Track.m_TrackFile.empty());
  EXPECT_TRUE(Track.m_ReaderThread.empty());
}

TEST_F(TimelineTrackState, ReadinessIsToldFromOutside) {
  Init();
  EXPECT_FALSE(IsReady(Track));
  ControlledFile::Facts.OpenResult = Ferro::RESULT_NOT_FOUND;
  Track.MakeReady();
  EXPECT_FALSE(IsReady(Track)) << "the file is gone";
  ControlledFile::Facts.OpenResult = Ferro::RESULT_OK;
  Track.MakeReady();
  EXPECT_TRUE(IsReady(Track));
  EXPECT_TRUE(Track.MakeDormant());
  EXPECT_FALSE(IsReady(Track));
}

TEST_F(TimelineTrackState, TracksWithoutAFileAreAlwaysReady) {
  EXPECT_TRUE(IsReady(Strata::SilenceTimelineElement(ControlledFile::Facts.Descriptor)));
  EXPECT_TRUE(IsReady(Strata::TextTimelineElement(100)));
}

TEST_F(TimelineTrackState, FailedWriterInformationIsReturned) {
  ControlledFile::Facts.InfoResult = Ferro::RESULT_INIT;
  EXPECT_EQ(Track.InitWithFilename("file", 2, 50), Ferro::RESULT_INIT);
  EXPECT_FALSE(Track.AssetID().HasValue());
  EXPECT_EQ(Track.EntryPoint(), 0u);
  EXPECT_TRUE(Log.Entries().empty());
}

TEST_F(TimelineTrackState, FailedDescriptorIsNot) {
  ControlledFile::Facts.DescriptorResult = QUIRE::RESULT_FORMAT;
  EXPECT_EQ(Track.InitWithFilename("file", 2, 50), Ferro::RESULT_OK);
  EXPECT_EQ(Track.AssetID(), AssetID);
}

TEST_F(TimelineTrackState, KeyIDIsTakenFromEncryptedFilesOnly) {
  ControlledFile::Facts.Info.CryptographicKeyID = Ferro::UUID::Random();
  Init();
  EXPECT_FALSE(Track.KeyID().HasValue());
  ControlledFile::Facts.Info.EncryptedEssence = true;
  Init();
  EXPECT_EQ(Track.KeyID(), ControlledFile::Facts.Info.CryptographicKeyID);
}

TEST_F(TimelineTrackState, SampleRateIsRoundedHalfUp) {
  EXPECT_EQ(SampleRate({48000, 1}), 48000u);
  EXPECT_EQ(SampleRate({96000, 1}), 96000u);
  EXPECT_EQ(SampleRate({88199, 2}), 44100u);
  EXPECT_EQ(SampleRate({132301, 3}), 44100u);
  EXPECT_EQ(SampleRate({132299, 3}), 44100u);
  EXPECT_EQ(SampleRate({0, 0}), 0u);
  EXPECT_EQ(SampleRate({-48000, 1}), 0u);
}

TEST_F(TimelineTrackState, SoundFieldsComeFromDescriptorAndReader) {
  ControlledFile::Facts.Descriptor.QuantizationBits = 20;
  ControlledFile::Facts.Descriptor.ChannelCount = 12;
  Init();
  EXPECT_EQ(Track.SampleSize(), 20u);
  EXPECT_EQ(Track.ChannelCount(), 12u);
  EXPECT_EQ(Track.MCALabelString(), "label");
  EXPECT_EQ(Track.Descriptor(), ControlledFile::Facts.Descriptor);
}

TEST_F(TimelineTrackState, IdentityIsWhatItsCreatorSets) {
  Track.SetIdentity(Strata::TRKT_AUX_DATA, 3, "name", "de");
  EXPECT_EQ(Track.TrackType(), Strata::TRKT_AUX_DATA);
  EXPECT_EQ(Track.ChannelID(), 3u);
  EXPECT_EQ(Track.AssetName(), "name");
  EXPECT_EQ(Track.Language(), "de");
}

TEST_F(TimelineTrackState, EditRateWaitsForAnInitThatRuns) {
  Ferro::Event begun("Begun");
  Ferro::Event let_go("LetGo");
  Ferro::Event asking("Asking");
  ControlledFile::Facts.OpenBegun = &begun;
  ControlledFile::Facts.OpenLetGo = &let_go;
  std::thread initialising([this] { Init(); });
  begun.Pend();
  QUIRE::Rational seen;
  std::thread asker([this, &asking, &seen] {
    asking.Post();
    seen = Track.EditRate();
  });
  asking.Pend();
  let_go.Post();
  asker.join();
  initialising.join();
  EXPECT_EQ(seen, QUIRE::Rational(24, 1));
}

/// A reader thread whose buffers cannot be had.
class BufferlessThread : public Strata::EssenceReaderThread<ControlledFile, QUIRE::PCM::FrameBuffer> {
 public:
  using EssenceReaderThread::EssenceReaderThread;
  [[nodiscard]] bool SetupFrameBuffers(ui32_t) { return false; }
};

class BufferlessTrack final : public Strata::TimelineTrack<BufferlessThread, ControlledFile, QUIRE::PCM::FrameBuffer,
                                                           QUIRE::PCM::AudioDescriptor> {
 public:
  ui32_t FrameBufferSize() const override { return 0; }
  const QUIRE::FrameBuffer& FrameBuffer() const override { return CurrentFrame(); }
  bool HasStereoImage() const override { return false; }
  ui32_t REyeFrameBufferSize() const override { return 0; }
  const QUIRE::FrameBuffer& REyeFrameBuffer() const override { return CurrentFrame(); }
};

using TimelineTrackStateDeathTest = TimelineTrackState;

TEST_F(TimelineTrackStateDeathTest, BuffersThatCannotBeHad) {
  BufferlessTrack track;
  ASSERT_EQ(track.InitWithFilename("file", 0, 1), Ferro::RESULT_OK);
  EXPECT_DEATH(track.MakeReady(),
               "Assertion 'm_ReaderThread->SetupFrameBuffers\\(m_TrackFile->FrameBufferSize\\(\\)\\)' failed\\.");
}

TEST_F(TimelineTrackStateDeathTest, FileWithoutThread) {
  Init();
  Track.m_TrackFile.set(new ControlledFile);
  EXPECT_DEATH(Track.MakeReady(), "Assertion '!m_ReaderThread.empty\\(\\)' failed\\.");
  EXPECT_DEATH(static_cast<void>(Track.MakeDormant()), "Assertion '!m_ReaderThread.empty\\(\\)' failed\\.");
  EXPECT_DEATH(Track.ReadyFrameAtLocation(0),
               "Assertion '! m_TrackFile.empty\\(\\) && ! m_ReaderThread.empty\\(\\)' failed\\.");
}

TEST_F(TimelineTrackStateDeathTest, ThreadWithoutFile) {
  Init();
  Track.m_ReaderThread.set(new Strata::EssenceReaderThread<ControlledFile, QUIRE::PCM::FrameBuffer>(nullptr));
  EXPECT_DEATH(Track.MakeReady(), "Assertion 'm_ReaderThread.empty\\(\\)' failed\\.");
  EXPECT_DEATH(static_cast<void>(Track.MakeDormant()), "Assertion 'm_ReaderThread.empty\\(\\)' failed\\.");
}

}  // namespace
