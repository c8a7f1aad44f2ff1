// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/PCMReaderWrapper.h"

#include "TimelineElements/TrackFileElements.h"
#include "TrackFixtures.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/MXF/SubDescriptors.h>

namespace {

using Strata::PCMReaderWrapper;
using testsupport::TrackFileSpec;
using testsupport::TrackKind;
using Lines = std::vector<std::string>;

class PCMReader : public testsupport::LoggedTest {
 protected:
  /// Writes a file and opens it.
  void Open(const TrackFileSpec& spec) {
    ASSERT_EQ(MakeTrackFile(TrackKind::Sound, Folder.Path("sound.mxf"), spec), Ferro::RESULT_OK);
    ASSERT_EQ(Reader.OpenRead(Folder.Path("sound.mxf")), Ferro::RESULT_OK);
  }

  testsupport::TemporaryFolder Folder;
  QUIRE::MXF::OP1aHeader Header;
  PCMReaderWrapper Reader;
};

TEST_F(PCMReader, TakesTheChannelAssignmentFromTheFile) {
  TrackFileSpec spec;
  spec.ChannelCount = 8;
  spec.ChannelFormat = QUIRE::PCM::CF_CFG_1;
  Open(spec);
  EXPECT_EQ(Reader.m_ChannelAssignment, QUIRE::DefaultSMPTEDict().ul(QUIRE::MDD_DCAudioChannelCfg_1_5p1));
  EXPECT_EQ(Reader.m_MCALabelString, "51(L,R,C,LFE,Ls,Rs),HI,VIN");
}

TEST_F(PCMReader, TakesMultichannelLabelsFromTheFile) {
  TrackFileSpec spec;
  spec.ChannelCount = 8;
  spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs),HI,VIN";
  Open(spec);
  EXPECT_EQ(Reader.m_ChannelAssignment, QUIRE::DefaultSMPTEDict().ul(QUIRE::MDD_DCAudioChannelCfg_MCA));
  EXPECT_EQ(Reader.m_MCALabelString, "51(L,R,C,LFE,Ls,Rs),HI,VIN");
}

TEST_F(PCMReader, FileWithoutChannelAssignment) {
  TrackFileSpec spec;
  spec.ChannelFormat = QUIRE::PCM::CF_NONE;
  Open(spec);
  EXPECT_FALSE(Reader.m_ChannelAssignment.HasValue());
  EXPECT_EQ(Reader.m_MCALabelString, "");
  EXPECT_EQ(Errors(), Lines{});
}

TEST_F(PCMReader, ReadersFailureIsReturned) {
  EXPECT_EQ(Reader.OpenRead(Folder.Path("none.mxf")), Ferro::RESULT_NOT_FOUND);
  ASSERT_EQ(MakeTrackFile(TrackKind::Data, Folder.Path("data.mxf")), Ferro::RESULT_OK);
  EXPECT_EQ(Reader.OpenRead(Folder.Path("data.mxf")), QUIRE::RESULT_FORMAT);
}

TEST_F(PCMReader, MissingWaveDescriptorIsLoggedAndReturned) {
  EXPECT_EQ(Reader.InitChannels(Header, "a.mxf"), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Errors(), Lines{"WaveAudioDescriptor not found.\n"});
}

TEST_F(PCMReader, WaveDescriptorOfAnotherTypeIsLoggedAndAccepted) {
  auto set = std::make_unique<QUIRE::MXF::OpaqueSet>();
  set->SetKey = QUIRE::DefaultSMPTEDict().ul(QUIRE::MDD_WaveAudioDescriptor);
  Header.Add(std::move(set));
  EXPECT_EQ(Reader.InitChannels(Header, "a.mxf"), Ferro::RESULT_OK);
  EXPECT_EQ(Errors(), Lines{"WaveAudioDescriptor type failure.\n"});
  EXPECT_FALSE(Reader.m_ChannelAssignment.HasValue());
  EXPECT_EQ(Reader.m_MCALabelString, "");
}

TEST_F(PCMReader, TagSymbolThatIsTooShortIsLoggedAndAccepted) {
  auto& group = Header.Add(std::make_unique<QUIRE::MXF::SoundfieldGroupLabelSubDescriptor>());
  group.MCATagSymbol = "s";
  auto& wave = Header.Add(std::make_unique<QUIRE::MXF::WaveAudioDescriptor>());
  wave.ChannelAssignment = QUIRE::DefaultSMPTEDict().ul(QUIRE::MDD_DCAudioChannelCfg_MCA);
  wave.SubDescriptors = {group.InstanceUID};
  EXPECT_EQ(Reader.InitChannels(Header, "a.mxf"), Ferro::RESULT_OK);
  EXPECT_EQ(Errors(), Lines{"a.mxf: multichannel label with a tag symbol of fewer than two characters.\n"});
  EXPECT_EQ(Reader.m_MCALabelString, "");
}

TEST_F(PCMReader, TrackReportsNinetySixKilohertz) {
  TrackFileSpec spec;
  spec.SamplingRate = QUIRE::SampleRate_96k;
  spec.ChannelCount = 16;
  ASSERT_EQ(MakeTrackFile(TrackKind::Sound, Folder.Path("sound.mxf"), spec), Ferro::RESULT_OK);
  Strata::PCMTimelineElement track;
  ASSERT_EQ(track.InitWithFilename(Folder.Path("sound.mxf"), 0, 5), Ferro::RESULT_OK);
  EXPECT_EQ(track.SampleRate(), 96000u);
  EXPECT_EQ(track.ChannelCount(), 16u);
  // The largest edit units there are fit the buffers.
  track.MakeReady();
  track.ReadyFrameAtLocation(4);
  track.BufferLock();
  EXPECT_EQ(track.FrameBufferSize(), 192000u);
  track.BufferUnlock();
}

TEST(ReaderWrappers, BufferCapacities) {
  EXPECT_EQ(Strata::JP2KReaderWrapper().FrameBufferSize(), 4194304u);
  EXPECT_EQ(Strata::JP2KSReaderWrapper().FrameBufferSize(), 4194304u);
  EXPECT_EQ(Strata::MPEGReaderWrapper().FrameBufferSize(), 4194304u);
  EXPECT_EQ(Strata::PCMReaderWrapper().FrameBufferSize(), 524288u);
  EXPECT_EQ(Strata::DCDataReaderWrapper().FrameBufferSize(), 4194304u);
  EXPECT_EQ(Strata::AtmosReaderWrapper().FrameBufferSize(), 4194304u);
}

}  // namespace
