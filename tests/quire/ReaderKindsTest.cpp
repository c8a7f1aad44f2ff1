// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include <Ferro/UUID.h>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

TEST(TrackFileReader, PicturesAreDeliveredByteForByte) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 5);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  for (ui32_t i : {0u, 4u, 2u, 2u, 1u, 3u}) {
    JP2K::FrameBuffer frame;
    ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
    ASSERT_EQ(reader.ReadFrame(i, frame), RESULT_OK);
    EXPECT_EQ(Content(frame), builder.Frames[i]);
    EXPECT_EQ(frame.FrameNumber(), i);
    EXPECT_EQ(frame.SourceLength(), 0u);
  }
}

TEST(TrackFileReader, PictureDescriptorIsFilledFromTheHeader) {
  const TemporaryFile file(MakeBuilder(MxfBuilder::JP2K, 5).Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::PictureDescriptor descriptor;
  ASSERT_EQ(reader.FillPictureDescriptor(descriptor), RESULT_OK);
  EXPECT_EQ(descriptor.EditRate, EditRate_24);
  EXPECT_EQ(descriptor.SampleRate, EditRate_24);
  EXPECT_EQ(descriptor.ContainerDuration, 5u);
  EXPECT_EQ(descriptor.StoredWidth, 2048u);
  EXPECT_EQ(descriptor.StoredHeight, 1080u);
  EXPECT_EQ(descriptor.AspectRatio, Rational(2048, 1080));
  EXPECT_EQ(descriptor.PictureEssenceCoding.EncodeHex(), "060e2b34040101090401020203010103");
  EXPECT_FALSE(descriptor.Stereoscopic);
  EXPECT_EQ(descriptor.Rsiz, 3);
  EXPECT_EQ(descriptor.Xsiz, 2048u);
  EXPECT_EQ(descriptor.YTsiz, 1080u);
  EXPECT_EQ(descriptor.Csiz, 3);
  ASSERT_EQ(descriptor.PictureComponentSizing.size(), 3u);
  EXPECT_EQ(descriptor.PictureComponentSizing[2], (JP2K::ComponentSizing{11, 1, 1}));
  EXPECT_EQ(descriptor.CodingStyleDefault, Hex("01 04 0001 01 05 03 03 00 00 77 88 88 88 88 88"));
  EXPECT_EQ(descriptor.QuantizationDefault, Hex("22 7f20 7ee0"));
}

TEST(TrackFileReader, WriterInfoIsFilledFromTheHeader) {
  const TemporaryFile file(MakeBuilder(MxfBuilder::JP2K, 1).Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  WriterInfo info;
  ASSERT_EQ(reader.FillWriterInfo(info), RESULT_OK);
  EXPECT_EQ(info.CompanyName, "Company");
  EXPECT_EQ(info.ProductName, "Product");
  EXPECT_EQ(info.ProductVersion, "1.2.3");
  EXPECT_EQ(Raw(info.ProductUUID), MxfBuilder::InstanceID("ProductUID"));
  EXPECT_EQ(Raw(info.AssetUUID), MxfBuilder::AssetID());
  EXPECT_EQ(info.LabelSetType, LS_MXF_SMPTE);
  EXPECT_FALSE(info.EncryptedEssence);
  EXPECT_FALSE(info.UsesHMAC);
  EXPECT_FALSE(info.ContextID.HasValue());
  EXPECT_FALSE(info.CryptographicKeyID.HasValue());
}

TEST(TrackFileReader, InteropFileHasItsEssenceInTheHeaderPartition) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::PCM, 3);
  builder.Interop = true;
  const TemporaryFile file(builder.Build());
  PCM::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  WriterInfo info;
  ASSERT_EQ(reader.FillWriterInfo(info), RESULT_OK);
  EXPECT_EQ(info.LabelSetType, LS_MXF_INTEROP);
  for (ui32_t i = 0; i < 3; ++i) EXPECT_EQ(ReadSound(reader, i), builder.Frames[i]);
}

TEST(TrackFileReader, SoundIsDeliveredByteForByte) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::PCM, 4);
  builder.ChannelAssignment = Hex("060e2b34.0401010b.04020210.03010400");
  const TemporaryFile file(builder.Build());
  PCM::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  PCM::AudioDescriptor descriptor;
  ASSERT_EQ(reader.FillAudioDescriptor(descriptor), RESULT_OK);
  EXPECT_EQ(descriptor.EditRate, EditRate_24);
  EXPECT_EQ(descriptor.AudioSamplingRate, SampleRate_48k);
  EXPECT_FALSE(descriptor.Locked);
  EXPECT_EQ(descriptor.ChannelCount, 2u);
  EXPECT_EQ(descriptor.QuantizationBits, 24u);
  EXPECT_EQ(descriptor.BlockAlign, 6u);
  EXPECT_EQ(descriptor.AvgBps, 288000u);
  EXPECT_EQ(descriptor.LinkedTrackID, 2u);
  EXPECT_EQ(descriptor.ContainerDuration, 4u);
  EXPECT_EQ(descriptor.ChannelFormat, PCM::CF_CFG_4);
  for (ui32_t i : {3u, 0u, 1u, 2u}) EXPECT_EQ(ReadSound(reader, i), builder.Frames[i]);
}

TEST(TrackFileReader, StereoscopicEditUnitHoldsLeftThenRight) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2KS, 6);
  const TemporaryFile file(builder.Build());
  JP2K::MXFSReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::PictureDescriptor descriptor;
  ASSERT_EQ(reader.FillPictureDescriptor(descriptor), RESULT_OK);
  EXPECT_TRUE(descriptor.Stereoscopic);
  EXPECT_EQ(descriptor.ContainerDuration, 3u);
  EXPECT_EQ(descriptor.EditRate, EditRate_24);
  EXPECT_EQ(descriptor.SampleRate, EditRate_48);
  JP2K::SFrameBuffer frame;
  ASSERT_EQ(frame.Left.Capacity(1000), RESULT_OK);
  ASSERT_EQ(frame.Right.Capacity(1000), RESULT_OK);
  for (ui32_t i : {0u, 2u, 1u}) {
    ASSERT_EQ(reader.ReadFrame(i, frame), RESULT_OK);
    EXPECT_EQ(Content(frame.Left), builder.Frames[2 * i]);
    EXPECT_EQ(Content(frame.Right), builder.Frames[2 * i + 1]);
    EXPECT_EQ(frame.Left.FrameNumber(), i);
    EXPECT_EQ(frame.Right.FrameNumber(), i);
  }
  EXPECT_EQ(reader.ReadFrame(3, frame), RESULT_RANGE);
}

TEST(TrackFileReader, FlatPictureIsDeliveredInBothEyes) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
  const TemporaryFile file(builder.Build());
  JP2K::MXFSReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::SFrameBuffer frame;
  ASSERT_EQ(frame.Left.Capacity(1000), RESULT_OK);
  ASSERT_EQ(frame.Right.Capacity(1000), RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(1, frame), RESULT_OK);
  EXPECT_EQ(Content(frame.Left), builder.Frames[1]);
  EXPECT_EQ(Content(frame.Right), builder.Frames[1]);
}

TEST(TrackFileReader, FlatReaderDeliversTheLeftEyeOfAStereoscopicFile) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2KS, 6);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  for (ui32_t i = 0; i < 3; ++i) EXPECT_EQ(ReadBytes(reader, i), builder.Frames[2 * i]);
}

TEST(TrackFileReader, EyeThatDoesNotFitLeavesItsBufferUnchanged) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2KS, 4);
  const TemporaryFile file(builder.Build());
  JP2K::MXFSReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::SFrameBuffer frame;
  ASSERT_EQ(frame.Left.Capacity(1000), RESULT_OK);
  ASSERT_EQ(frame.Right.Capacity(107), RESULT_OK);  // as long as the first right eye
  ASSERT_EQ(reader.ReadFrame(0, frame), RESULT_OK);
  EXPECT_EQ(reader.ReadFrame(1, frame), Ferro::RESULT_SMALLBUF);
  EXPECT_EQ(Content(frame.Right), builder.Frames[1]);
  EXPECT_EQ(frame.Right.FrameNumber(), 0u);
}

TEST(TrackFileReader, VideoComesInStoredOrderWithItsIndexEntry) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::MPEG2, 4);
  const TemporaryFile file(builder.Build());
  MPEG2::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  MPEG2::VideoDescriptor descriptor;
  ASSERT_EQ(reader.FillVideoDescriptor(descriptor), RESULT_OK);
  EXPECT_EQ(descriptor.EditRate, EditRate_24);
  EXPECT_EQ(descriptor.ContainerDuration, 4u);
  EXPECT_EQ(descriptor.StoredWidth, 2048u);
  EXPECT_EQ(descriptor.BitRate, 80000000u);
  EXPECT_EQ(descriptor.ProfileAndLevel, 0x44);
  EXPECT_EQ(descriptor.HorizontalSubsampling, 2u);
  MPEG2::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
  for (ui32_t i = 0; i < 4; ++i) {
    ASSERT_EQ(reader.ReadFrame(i, frame), RESULT_OK);
    EXPECT_EQ(Content(frame), builder.Frames[i]);
    EXPECT_EQ(frame.IndexFlags(), 0x80);
    EXPECT_EQ(frame.TemporalOffset(), 0);
  }
}

TEST(TrackFileReader, AuxiliaryDataIsDeliveredByteForByte) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::DCData, 3);
  const TemporaryFile file(builder.Build());
  DCData::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  DCData::DCDataDescriptor descriptor;
  ASSERT_EQ(reader.FillDCDataDescriptor(descriptor), RESULT_OK);
  EXPECT_EQ(descriptor.ContainerDuration, 3u);
  EXPECT_EQ(Raw(descriptor.AssetID), MxfBuilder::AssetID());
  EXPECT_EQ(descriptor.DataEssenceCoding.EncodeHex(), "060e2b340401010d0e09060701010100");
  DCData::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(2, frame), RESULT_OK);
  EXPECT_EQ(Content(frame), builder.Frames[2]);
}

TEST(TrackFileReader, ImmersiveAudioIsDeliveredByteForByte) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::Atmos, 3);
  const TemporaryFile file(builder.Build());
  ATMOS::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  ATMOS::AtmosDescriptor descriptor;
  ASSERT_EQ(reader.FillAtmosDescriptor(descriptor), RESULT_OK);
  EXPECT_EQ(descriptor.ContainerDuration, 3u);
  EXPECT_EQ(descriptor.FirstFrame, 192u);
  EXPECT_EQ(descriptor.MaxChannelCount, 10);
  EXPECT_EQ(descriptor.MaxObjectCount, 118);
  EXPECT_EQ(descriptor.AtmosVersion, 1);
  EXPECT_EQ(Raw(descriptor.AtmosID), MxfBuilder::InstanceID("AtmosID"));
  DCData::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
  for (ui32_t i = 0; i < 3; ++i) {
    ASSERT_EQ(reader.ReadFrame(i, frame), RESULT_OK);
    EXPECT_EQ(Content(frame), builder.Frames[i]);
  }
}

TEST(TrackFileReader, FrameBeyondTheEndIsOutOfRange) {
  const TemporaryFile file(MakeBuilder(MxfBuilder::JP2K, 2).Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(1, frame), RESULT_OK);
  EXPECT_EQ(reader.ReadFrame(2, frame), RESULT_RANGE);
  EXPECT_EQ(reader.ReadFrame(0xffffffff, frame), RESULT_RANGE);
  EXPECT_EQ(frame.FrameNumber(), 1u);
}

TEST(TrackFileReader, FrameLargerThanTheCapacityLeavesTheBufferUnchanged) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 3);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(107), RESULT_OK);  // as long as frame 1
  ASSERT_EQ(reader.ReadFrame(1, frame), RESULT_OK);
  LogCapture log;
  EXPECT_EQ(reader.ReadFrame(2, frame), Ferro::RESULT_SMALLBUF);
  EXPECT_EQ(Content(frame), builder.Frames[1]);
  EXPECT_EQ(frame.FrameNumber(), 1u);
  EXPECT_EQ(frame.Capacity(), 107u);
  EXPECT_EQ(log.Text(), "");
}

TEST(TrackFileReader, FrameOfExactlyTheCapacityFits) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 3);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  for (ui32_t i = 0; i < 3; ++i) {
    JP2K::FrameBuffer frame;
    ASSERT_EQ(frame.Capacity(100 + 7 * i), RESULT_OK);
    EXPECT_EQ(reader.ReadFrame(i, frame), RESULT_OK);
    EXPECT_EQ(Content(frame), builder.Frames[i]);
  }
}

TEST(TrackFileReader, ClosedReaderRefusesEverything) {
  JP2K::MXFReader reader;
  JP2K::FrameBuffer frame;
  WriterInfo info;
  JP2K::PictureDescriptor descriptor;
  EXPECT_EQ(reader.ReadFrame(0, frame), Ferro::RESULT_INIT);
  EXPECT_EQ(reader.FillWriterInfo(info), Ferro::RESULT_INIT);
  EXPECT_EQ(reader.FillPictureDescriptor(descriptor), Ferro::RESULT_INIT);
  EXPECT_EQ(reader.Close(), Ferro::RESULT_INIT);
}

TEST(TrackFileReader, OpensAgainAfterClose) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 1);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  EXPECT_EQ(reader.Close(), RESULT_OK);
  EXPECT_FALSE(reader.IsOpen());
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  EXPECT_EQ(ReadBytes(reader, 0), builder.Frames[0]);
}

TEST(TrackFileReader, MissingFileIsNotFound) {
  JP2K::MXFReader reader;
  EXPECT_EQ(reader.OpenRead("/nonexistent/track.mxf"), Ferro::RESULT_NOT_FOUND);
  EXPECT_FALSE(reader.IsOpen());
}

TEST(TrackFileReader, FileOfAnotherKindIsRefusedWithTheReason) {
  const TemporaryFile file(MakeBuilder(MxfBuilder::PCM, 1).Build());
  LogCapture log;
  JP2K::MXFReader reader;
  EXPECT_EQ(reader.OpenRead(file.Name()), RESULT_FORMAT);
  EXPECT_EQ(log.Text(), file.Name() + ": holds PCM sound, not JPEG 2000 pictures\n");
}

TEST(TrackFileReader, RandomIndexPackListsThePartitions) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  const std::vector<MXF::RIP::Pair> expected = {{0, 0}, {1, builder.BodyAt}, {0, builder.FooterAt}};
  EXPECT_EQ(reader.RIP().PairArray, expected);
}

TEST(TrackFileReader, HeaderObjectsAreFoundByType) {
  const TemporaryFile file(MakeBuilder(MxfBuilder::PCM, 1).Build());
  PCM::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  MXF::InterchangeObject* object = nullptr;
  ASSERT_EQ(reader.OP1aHeader().GetMDObjectByType(MDD_WaveAudioDescriptor, &object), RESULT_OK);
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(dynamic_cast<MXF::WaveAudioDescriptor&>(*object).ChannelCount, 2u);
}

}  // namespace
