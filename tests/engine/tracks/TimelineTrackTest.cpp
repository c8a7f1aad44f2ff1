// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/TimelineTrack.h"

#include "TimelineElements/TrackFileElements.h"
#include "TrackFixtures.h"

#include <QUIRE/AtmosReader.h>
#include <QUIRE/JP2KReader.h>

#include <filesystem>
#include <fstream>

namespace {

using Ferro::ui32_t;
using Strata::ITimelineTrack;
using testsupport::BytesOf;
using testsupport::TrackFileKey;
using testsupport::TrackFileSpec;
using testsupport::TrackKind;

/// A track of each kind on a file of five edit units.
class TimelineTrack : public testsupport::LoggedTest, public testing::WithParamInterface<TrackKind> {
 protected:
  void SetUp() override { Write(); }

  void Write() { ASSERT_EQ(MakeTrackFile(GetParam(), Filename, Spec), Ferro::RESULT_OK); }
  void Init() { ASSERT_EQ(Track->InitWithFilename(Filename, 1, 3), Ferro::RESULT_OK); }
  void ExpectFrame(ui32_t position) {
    Track->ReadyFrameAtLocation(position);
    Track->BufferLock();
    EXPECT_EQ(Track->FrameBuffer().FrameNumber(), position);
    EXPECT_EQ(BytesOf(Track->FrameBuffer()), MakeFrame(GetParam(), Spec, position));
    EXPECT_EQ(Track->FrameBufferSize(), Track->FrameBuffer().Size());
    if (Stereoscopic()) {
      EXPECT_EQ(BytesOf(Track->REyeFrameBuffer()), MakeFrame(GetParam(), Spec, position, true));
      EXPECT_EQ(Track->REyeFrameBuffer().FrameNumber(), position);
      EXPECT_EQ(Track->REyeFrameBufferSize(), Track->REyeFrameBuffer().Size());
    }
    Track->BufferUnlock();
  }
  [[nodiscard]] bool Stereoscopic() const { return GetParam() == TrackKind::StereoscopicPicture; }
  [[nodiscard]] bool IsPicture() const {
    return Stereoscopic() || GetParam() == TrackKind::Picture || GetParam() == TrackKind::MPEG2;
  }

  testsupport::TemporaryFolder Folder;
  const std::string Filename = Folder.Path("track.mxf");
  TrackFileSpec Spec;
  std::unique_ptr<ITimelineTrack> Track = testsupport::MakeTrack(GetParam());
};

TEST_P(TimelineTrack, DeliversEveryFrameByteForByte) {
  Init();
  Track->MakeReady();
  for (ui32_t position : {0u, 1u, 2u, 3u, 4u, 2u, 0u, 4u}) ExpectFrame(position);
  EXPECT_TRUE(Track->MakeDormant());
  EXPECT_EQ(Errors(), std::vector<std::string>{});
}

TEST_P(TimelineTrack, DeliversFramesAgainAfterHavingBeenDormant) {
  Init();
  for (int round = 0; round < 3; ++round) {
    Track->MakeReady();
    ExpectFrame(3);
    EXPECT_TRUE(Track->MakeDormant());
  }
}

TEST_P(TimelineTrack, KnowsWhatTheFileSaysWithoutBeingReady) {
  Init();
  EXPECT_EQ(Track->AssetID(), Spec.AssetID);
  EXPECT_EQ(Track->EditRate(), QUIRE::Rational(24, 1));
  EXPECT_EQ(Track->EntryPoint(), 1u);
  EXPECT_EQ(Track->Duration(), 3u);
  EXPECT_EQ(Track->IntrinsicDuration(), 5u);
  EXPECT_EQ(Track->ImageWidth(), IsPicture() ? 64u : 0u);
  EXPECT_EQ(Track->ImageHeight(), IsPicture() ? 36u : 0u);
  EXPECT_EQ(Track->HasStereoImage(), Stereoscopic());
  const bool sound = GetParam() == TrackKind::Sound;
  EXPECT_EQ(Track->SampleRate(), sound ? 48000u : 0u);
  EXPECT_EQ(Track->SampleSize(), sound ? 24u : 0u);
  EXPECT_EQ(Track->ChannelCount(), sound ? 6u : 0u);
  EXPECT_EQ(Track->ChannelAssignment().HasValue(), sound);
  EXPECT_EQ(Track->MCALabelString(), sound ? "51(L,R,C,LFE,Ls,Rs)" : "");
  EXPECT_EQ(testsupport::CountReaderThreads(), 0);
}

TEST_P(TimelineTrack, StartsFromZeroAndEmpty) {
  EXPECT_FALSE(Track->AssetID().HasValue());
  EXPECT_EQ(Track->TrackType(), 0u);
  EXPECT_EQ(Track->ChannelID(), 0u);
  EXPECT_EQ(Track->EntryPoint(), 0u);
  EXPECT_EQ(Track->Duration(), 0u);
  EXPECT_EQ(Track->IntrinsicDuration(), 0u);
  EXPECT_EQ(Track->GetSpanDuration(), 0u);
  EXPECT_EQ(Track->AssetName(), "");
  EXPECT_EQ(Track->Language(), "");
  EXPECT_FALSE(Track->MakeDormant());
}

TEST_P(TimelineTrack, SpanDurationIsWhatWasSet) {
  Track->SetSpanDuration(77);
  EXPECT_EQ(Track->GetSpanDuration(), 77u);
}

TEST_P(TimelineTrack, PlainFileHasNoKeyID) {
  Init();
  EXPECT_FALSE(Track->KeyID().HasValue());
}

TEST_P(TimelineTrack, EncryptedFileDeliversCiphertextAndItsKeyID) {
  Spec.Key = TrackFileKey();
  Write();
  Init();
  EXPECT_EQ(Track->KeyID(), Spec.Key->KeyID);
  Track->MakeReady();
  for (ui32_t position = 0; position < 5; ++position) {
    const auto plain = MakeFrame(GetParam(), Spec, position);
    Track->ReadyFrameAtLocation(position);
    Track->BufferLock();
    const QUIRE::FrameBuffer& frame = Track->FrameBuffer();
    EXPECT_EQ(frame.SourceLength(), plain.size());
    // Initialization vector, check value, and the padded ciphertext.
    EXPECT_EQ(frame.Size(), 32 + (plain.size() / 16 + 1) * 16);
    const auto stored = BytesOf(frame);
    EXPECT_EQ(std::search(stored.begin(), stored.end(), plain.begin(), plain.begin() + 16), stored.end());
    if (Stereoscopic()) {
      EXPECT_EQ(Track->REyeFrameBuffer().SourceLength(), MakeFrame(GetParam(), Spec, position, true).size());
      EXPECT_NE(BytesOf(Track->REyeFrameBuffer()), stored);
    }
    Track->BufferUnlock();
  }
  EXPECT_TRUE(Track->MakeDormant());
}

TEST_P(TimelineTrack, InteropFileIsRead) {
  if (GetParam() == TrackKind::Data || GetParam() == TrackKind::Atmos) return;  // SMPTE only
  Spec.LabelSet = QUIRE::LS_MXF_INTEROP;
  Write();
  Init();
  Track->MakeReady();
  ExpectFrame(4);
}

TEST_P(TimelineTrack, RightEyeOfAFlatTrackIsItsOnlyFrame) {
  if (Stereoscopic()) return;
  Init();
  Track->MakeReady();
  ExpectFrame(2);
  EXPECT_EQ(&Track->REyeFrameBuffer(), &Track->FrameBuffer());
  EXPECT_EQ(Track->REyeFrameBufferSize(), 0u);
}

TEST_P(TimelineTrack, TimedTextOperationsAnswerNothing) {
  Init();
  QUIRE::TimedText::FrameBuffer buffer;
  ASSERT_EQ(buffer.Capacity(3), Ferro::RESULT_OK);
  buffer.Size(3);
  Ferro::UUIDList ids{Ferro::UUID::Random()};
  Ferro::ArchivableList<Ferro::ArchivableString> names{"name"};
  EXPECT_EQ(Track->TextEssenceFormat(), Cairn::DFT_NONE);
  EXPECT_FALSE(Track->GetTimedTextData(buffer));
  EXPECT_FALSE(Track->AncillaryResourceIDList(ids));
  EXPECT_FALSE(Track->AncillaryResourceNameList(names));
  EXPECT_FALSE(Track->GetTimedTextResourceByID(Spec.AssetID, buffer));
  EXPECT_FALSE(Track->GetTimedTextResourceByName("name", buffer));
  EXPECT_EQ(buffer.Size(), 3u);
  EXPECT_EQ(ids.size(), 1u);
  EXPECT_EQ(names.size(), 1u);
}

TEST_P(TimelineTrack, PositionBeyondTheEndIsLoggedAndShowsThePreviousFrame) {
  Init();
  Track->MakeReady();
  ExpectFrame(4);
  Track->ReadyFrameAtLocation(5);
  Track->BufferLock();
  EXPECT_EQ(Track->FrameBuffer().FrameNumber(), 4u);
  Track->BufferUnlock();
  EXPECT_EQ(Errors(), std::vector<std::string>{"IMG (frame 5): Requested edit unit is out of range.\n"});
}

TEST_P(TimelineTrack, ReadyTrackHasOneThreadAndOneOpenFile) {
  Init();
  const int files = testsupport::CountOpenFiles();
  EXPECT_EQ(testsupport::CountReaderThreads(), 0);
  Track->MakeReady();
  ExpectFrame(0);  // the thread has its name when it has served a request
  Track->MakeReady();
  EXPECT_EQ(testsupport::CountReaderThreads(), 1);
  EXPECT_EQ(testsupport::CountOpenFiles(), files + 1);
  EXPECT_TRUE(Track->MakeDormant());
  EXPECT_FALSE(Track->MakeDormant());
  EXPECT_EQ(testsupport::CountReaderThreads(), 0);
  EXPECT_EQ(testsupport::CountOpenFiles(), files);
}

TEST_P(TimelineTrack, DestroyingAReadyTrackEndsItsThreadAndClosesItsFile) {
  Init();
  const int files = testsupport::CountOpenFiles();
  Track->MakeReady();
  Track->ReadyFrameAtLocation(0);
  Track->ReadyFrameAtLocation(1);
  Track.reset();
  EXPECT_EQ(testsupport::CountReaderThreads(), 0);
  EXPECT_EQ(testsupport::CountOpenFiles(), files);
}

TEST_P(TimelineTrack, MakeReadyOnAFileThatDisappearedIsLoggedAndLeavesItDormant) {
  Init();
  std::filesystem::remove(Filename);
  Track->MakeReady();
  EXPECT_EQ(Errors(), std::vector<std::string>{Filename + ": The requested item was not found.\n"});
  EXPECT_FALSE(Track->MakeDormant());
  EXPECT_EQ(Track->IntrinsicDuration(), 5u);
  Write();
  Track->MakeReady();  // the next one tries again
  ExpectFrame(1);
  EXPECT_TRUE(Track->MakeDormant());
}

TEST_P(TimelineTrack, InitReturnsWhyTheFileCannotBeOpened) {
  EXPECT_EQ(Track->InitWithFilename(Folder.Path("none.mxf"), 0, 1), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Track->InitWithFilename("", 0, 1), Ferro::RESULT_NULL_STR);
  EXPECT_EQ(Errors(), std::vector<std::string>{});
  std::ofstream(Folder.Path("text.mxf")) << std::string(100, 'x');
  EXPECT_EQ(Track->InitWithFilename(Folder.Path("text.mxf"), 7, 9), QUIRE::RESULT_FORMAT);
  EXPECT_FALSE(Track->AssetID().HasValue());
  EXPECT_EQ(Track->EntryPoint(), 0u);
  EXPECT_EQ(Track->Duration(), 0u);
}

TEST_P(TimelineTrack, InitDoesNotCompareEntryPointAndDurationWithTheFile) {
  EXPECT_EQ(Track->InitWithFilename(Filename, 1000, 4000000000u), Ferro::RESULT_OK);
  EXPECT_EQ(Track->EntryPoint(), 1000u);
  EXPECT_EQ(Track->Duration(), 4000000000u);
}

using TimelineTrackDeathTest = TimelineTrack;

TEST_P(TimelineTrackDeathTest, FrameOperationsOnADormantTrack) {
  Init();
  EXPECT_DEATH(Track->ReadyFrameAtLocation(0),
               "Assertion '! m_TrackFile.empty\\(\\) && ! m_ReaderThread.empty\\(\\)' failed\\.");
  const char* const no_thread = "Assertion '!m_ReaderThread.empty\\(\\)' failed\\.";
  EXPECT_DEATH(Track->BufferLock(), no_thread);
  EXPECT_DEATH(Track->BufferUnlock(), no_thread);
  EXPECT_DEATH(static_cast<void>(Track->FrameBuffer()), no_thread);
  EXPECT_DEATH(static_cast<void>(Track->FrameBufferSize()), no_thread);
  EXPECT_DEATH(static_cast<void>(Track->REyeFrameBuffer()), no_thread);
  EXPECT_DEATH(static_cast<void>(Track->REyeFrameBufferSize()), no_thread);
}

TEST_P(TimelineTrackDeathTest, MakeReadyBeforeInit) {
  EXPECT_DEATH(Track->MakeReady(), "Assertion '!m_Filename.empty\\(\\)' failed\\.");
}

TEST_P(TimelineTrackDeathTest, InitOfAReadyTrack) {
  Init();
  const auto init_ready_track = [this] {
    Track->MakeReady();
    static_cast<void>(Track->InitWithFilename(Filename, 0, 1));
  };
  EXPECT_DEATH(init_ready_track(), "Assertion 'm_TrackFile.empty\\(\\) && m_ReaderThread.empty\\(\\)' failed\\.");
}

std::string KindName(const testing::TestParamInfo<TrackKind>& info) {
  static constexpr const char* names[] = {"Picture", "Stereo", "MPEG2", "Sound", "Data", "Atmos"};
  return names[static_cast<int>(info.param)];
}

const auto AllKinds = testing::Values(TrackKind::Picture, TrackKind::StereoscopicPicture, TrackKind::MPEG2,
                                      TrackKind::Sound, TrackKind::Data, TrackKind::Atmos);
INSTANTIATE_TEST_SUITE_P(AllKinds, TimelineTrack, AllKinds, KindName);
INSTANTIATE_TEST_SUITE_P(AllKinds, TimelineTrackDeathTest, AllKinds, KindName);

}  // namespace
