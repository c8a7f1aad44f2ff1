// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

// What is out of order in files of the field, and is read all the same.

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

const Bytes FillKey = Hex("060e2b34.01010102.03010210.01000000");
const Bytes LegacyFillKey = Hex("060e2b34.01010101.03010210.01000000");

class FieldDefect : public ::testing::Test {
 protected:
  // All frames of the file must be what the builder was given.
  void ExpectAllFrames(MxfBuilder& builder) { ExpectFrames(builder, builder.Build(), builder.Frames.size()); }
  // The file must hold `count` frames; `after` is what the next one is to give.
  void ExpectFrames(const MxfBuilder& builder, const Bytes& bytes, size_t count, const Result_t& after = RESULT_RANGE) {
    const TemporaryFile file(bytes);
    if (builder.Kind == MxfBuilder::PCM) {
      PCM::MXFReader reader;
      ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK) << m_Log.Text();
      for (ui32_t i = 0; i < count; ++i) EXPECT_EQ(ReadSound(reader, i), builder.Frames[i]) << i;
      PCM::FrameBuffer frame;
      EXPECT_EQ(reader.ReadFrame(static_cast<ui32_t>(count), frame), after);
    } else {
      JP2K::MXFReader reader;
      ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK) << m_Log.Text();
      for (ui32_t i = 0; i < count; ++i) EXPECT_EQ(ReadBytes(reader, i), builder.Frames[i]) << i;
      JP2K::FrameBuffer frame;
      EXPECT_EQ(reader.ReadFrame(static_cast<ui32_t>(count), frame), after);
    }
  }
  JP2K::PictureDescriptor Describe(const Bytes& bytes) {
    const TemporaryFile file(bytes);
    JP2K::MXFReader reader;
    JP2K::PictureDescriptor descriptor;
    EXPECT_EQ(reader.OpenRead(file.Name()), RESULT_OK) << m_Log.Text();
    EXPECT_EQ(reader.FillPictureDescriptor(descriptor), RESULT_OK);
    return descriptor;
  }

  LogCapture m_Log;
  MxfBuilder m_Builder = MakeBuilder(MxfBuilder::JP2K, 6);
};

TEST_F(FieldDefect, NoRandomIndexPack) {
  m_Builder.HasRIP = false;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, NoRandomIndexPackStillGivesTheListOfPartitions) {
  m_Builder.HasRIP = false;
  const TemporaryFile file(m_Builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  const std::vector<MXF::RIP::Pair> expected = {{0, 0}, {1, m_Builder.BodyAt}, {0, m_Builder.FooterAt}};
  EXPECT_EQ(reader.RIP().PairArray, expected);
}

TEST_F(FieldDefect, TrailingBytesAfterTheRandomIndexPack) {
  m_Builder.AfterRIP = Bytes(333, 0xee);
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, FooterPartitionUnknownInTheHeader) {
  m_Builder.FooterPartitionKnown = false;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, NeitherFooterPositionNorRandomIndexPack) {
  m_Builder.FooterPartitionKnown = false;
  m_Builder.HasRIP = false;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, CrashedWriterLeftNeitherFooterNorIndex) {
  m_Builder.HasFooter = m_Builder.HasRIP = false;
  m_Builder.IndexPlace = MxfBuilder::Nowhere;
  m_Builder.HeaderStatus = 1;
  m_Builder.DurationGiven = true;
  m_Builder.Duration = ~ui64_t{0};
  const Bytes bytes = m_Builder.Build();
  ExpectFrames(m_Builder, bytes, 6);
  EXPECT_EQ(Describe(bytes).ContainerDuration, 6u);
}

TEST_F(FieldDefect, HeaderLeftOpenOrIncomplete) {
  for (ui8_t status : {ui8_t{1}, ui8_t{2}, ui8_t{3}}) {
    m_Builder.HeaderStatus = status;
    ExpectAllFrames(m_Builder);
  }
}

TEST_F(FieldDefect, OpenHeaderIsReplacedByTheMetadataOfTheFooter) {
  m_Builder.HeaderStatus = 1;
  m_Builder.HeaderMetadataInFooter = true;
  Bytes bytes = m_Builder.Build();
  // The header's copy of the descriptor has another width.
  const Bytes width = Hex("32030004") + BE32(2048);
  const auto found = std::search(bytes.begin(), bytes.end(), width.begin(), width.end());
  ASSERT_NE(found, bytes.end());
  *(found + 7) = 1;
  EXPECT_EQ(Describe(bytes).StoredWidth, 2048u);
}

TEST_F(FieldDefect, TruncatedFileDeliversEveryWholeElement) {
  const Bytes whole = m_Builder.Build();
  for (size_t keep = 0; keep < 6; ++keep) {
    const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(m_Builder.ElementAt[keep]) + 60);
    m_Log.Clear();
    ExpectFrames(m_Builder, bytes, keep, RESULT_CUT);
    EXPECT_NE(m_Log.Text().find("cut off or incomplete, has " + std::to_string(keep) + " of 6 edit units\n"),
              std::string::npos)
        << m_Log.Text();
  }
}

TEST_F(FieldDefect, TruncatedFileWithItsIndexInTheHeaderDeliversEveryWholeElement) {
  m_Builder.IndexPlace = MxfBuilder::InHeader;
  const Bytes whole = m_Builder.Build();
  for (size_t keep : {0u, 3u, 5u}) {
    for (size_t more : {1u, 18u, 60u})
      ExpectFrames(m_Builder,
                   Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(m_Builder.ElementAt[keep] + more)),
                   keep, RESULT_CUT);
  }
}

TEST_F(FieldDefect, TruncatedSoundDeliversEveryWholeElement) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::PCM, 4);
  const Bytes whole = builder.Build();
  ExpectFrames(builder, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(builder.ElementAt[2]) + 60), 2,
               RESULT_CUT);
}

TEST_F(FieldDefect, IndexInHeaderOrBodyPartition) {
  for (auto place : {MxfBuilder::InHeader, MxfBuilder::InBody}) {
    m_Builder.IndexPlace = place;
    ExpectAllFrames(m_Builder);
  }
}

TEST_F(FieldDefect, IndexSegmentsTwiceAndOutOfOrder) {
  m_Builder.EntriesPerSegment = 2;
  ExpectAllFrames(m_Builder);
  m_Builder.SegmentsTwice = true;
  ExpectAllFrames(m_Builder);
  m_Builder.SegmentsReversed = true;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, IndexMissing) {
  m_Builder.IndexPlace = MxfBuilder::Nowhere;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, SoundIndexMissing) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::PCM, 4);
  builder.IndexPlace = MxfBuilder::Nowhere;
  ExpectAllFrames(builder);
}

TEST_F(FieldDefect, StereoscopicIndexMissing) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2KS, 6);
  builder.IndexPlace = MxfBuilder::Nowhere;
  const TemporaryFile file(builder.Build());
  JP2K::MXFSReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::SFrameBuffer frame;
  ASSERT_EQ(frame.Left.Capacity(1000), RESULT_OK);
  ASSERT_EQ(frame.Right.Capacity(1000), RESULT_OK);
  for (ui32_t i = 0; i < 3; ++i) {
    ASSERT_EQ(reader.ReadFrame(i, frame), RESULT_OK);
    EXPECT_EQ(Content(frame.Left), builder.Frames[2 * i]);
    EXPECT_EQ(Content(frame.Right), builder.Frames[2 * i + 1]);
  }
  EXPECT_EQ(reader.ReadFrame(3, frame), RESULT_RANGE);
}

TEST_F(FieldDefect, SoundWithVariableIndex) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::PCM, 4);
  builder.ForceVariableIndex = true;
  builder.Frames[1].resize(12006);
  ExpectAllFrames(builder);
}

TEST_F(FieldDefect, IndexDurationZeroWithEntries) {
  m_Builder.ZeroIndexDuration = true;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, FinalIndexEntryMarksTheEnd) {
  m_Builder.ExtraEntries = 1;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, DoubledIndexTableWithEndEntry) {
  m_Builder.EntriesPerEditUnit = 2;
  m_Builder.ExtraEntries = 1;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, StreamOffsetsCountedFromTheFileOrThePartition) {
  (void)m_Builder.Build();
  const size_t essence_at = m_Builder.EssenceAt;
  m_Builder.StreamOffsetOrigin = essence_at;
  ExpectAllFrames(m_Builder);
  m_Builder.StreamOffsetOrigin = 140;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, IndexEntriesWithSurplusBytes) {
  m_Builder.EntrySize = 15;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, DurationZeroOrUnknownIsCountedFromTheIndex) {
  m_Builder.DurationGiven = true;
  for (ui64_t duration : {ui64_t{0}, ~ui64_t{0}}) {
    m_Builder.Duration = duration;
    const Bytes bytes = m_Builder.Build();
    EXPECT_EQ(Describe(bytes).ContainerDuration, 6u);
    ExpectFrames(m_Builder, bytes, 6);
  }
}

TEST_F(FieldDefect, DurationMissingInTheDescriptorIsTheSequences) {
  m_Builder.Overrides["Descriptor"][0x3002] = {};
  EXPECT_EQ(Describe(m_Builder.Build()).ContainerDuration, 6u);
}

TEST_F(FieldDefect, ElementLengthsOfAnySize) {
  for (size_t size : {3U, 5U, 8U, 9U}) {
    m_Builder.EssenceLengthSize = size;
    ExpectAllFrames(m_Builder);
  }
}

TEST_F(FieldDefect, ElementOfLengthZeroIsAnEmptyEditUnit) {
  m_Builder.Frames[0].clear();
  m_Builder.Frames[3].clear();
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, FillOfBothKindsWithRandomContentIsPassedOver) {
  m_Builder.FillBeforeEssence = KLV(LegacyFillKey, m_Builder.EssenceKey()) + KLV(FillKey, Bytes(3, 0xff));
  m_Builder.FillBetweenFrames = KLV(FillKey, Bytes(100, 0x06)) + LegacyFillKey + LengthOf(0, 1);
  m_Builder.BeforeSets = KLV(LegacyFillKey, Bytes(70, 0xaa));
  ExpectAllFrames(m_Builder);
  m_Builder.IndexPlace = MxfBuilder::Nowhere;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, SystemItemsBeforeTheElementArePassedOver) {
  m_Builder.FillBetweenFrames = KLV(Hex("060e2b34.02050101.0d010301.04010100"), Bytes(57));
  m_Builder.FillBeforeEssence = m_Builder.FillBetweenFrames;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, TwoPrimers) {
  m_Builder.SecondPrimer = true;
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, DarkSetsInTheHeader) {
  m_Builder.ExtraSets = KLV(Hex("060e2b34.02530101.0e0e0e0e.01010100"), Bytes(64, 0x55));
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, ReferenceToAMissingSetIsDropped) {
  m_Builder.OmittedSets = {"JPEG2000SubDescriptor", "MaterialTimecodeTrack"};
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, TrackNumberZeroOrOfAnotherElement) {
  for (ui32_t number : {0u, 0x15010802u, 0x16010101u}) {
    m_Builder.Overrides["FileTrack"][0x4804] = BE32(number);
    ExpectAllFrames(m_Builder);
  }
}

TEST_F(FieldDefect, ElementNumberAndVersionAreNotCompared) {
  m_Builder.ElementKey = Hex("060e2b34.01020104.0d010301.15030802");
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, ContainerLabelOfAnotherVersion) {
  m_Builder.Overrides["Descriptor"][0x3004] = Hex("060e2b34.04010101.0d010301.020c0100");
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, PackageUMIDOfAnotherMaterialType) {
  m_Builder.Overrides["FilePackage"][0x4401] = Hex("060a2b34 01010105 01010d00 13000000") + MxfBuilder::AssetID();
  const TemporaryFile file(m_Builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  WriterInfo info;
  ASSERT_EQ(reader.FillWriterInfo(info), RESULT_OK);
  EXPECT_EQ(Raw(info.AssetUUID), MxfBuilder::AssetID());
}

TEST_F(FieldDefect, EssenceContainerDataLinksAnUnknownPackage) {
  m_Builder.Overrides["EssenceContainerData"][0x2701] = Bytes(32, 0x11);
  m_Builder.Overrides["MaterialClip"][0x1101] = Bytes(32, 0x12);
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, NoEssenceContainerData) {
  m_Builder.OmittedSets = {"EssenceContainerData"};
  ExpectAllFrames(m_Builder);
}

TEST_F(FieldDefect, TimecodeTrackOfAnotherRateIsIgnored) {
  m_Builder.Overrides["FileTimecodeTrack"][0x4b01] = BE32(2400) + BE32(1001);
  EXPECT_EQ(Describe(m_Builder.Build()).EditRate, EditRate_24);
}

TEST_F(FieldDefect, KAGSizeZeroOrHuge) {
  for (ui32_t size : {0u, 512u, 0xffffffffu}) {
    m_Builder.KAGSize = size;
    ExpectAllFrames(m_Builder);
  }
}

TEST_F(FieldDefect, RunInBeforeTheHeaderPartition) {
  for (size_t size : {size_t{1}, size_t{4096}, size_t{65535}}) {
    m_Builder.RunIn = Bytes(size, 0x20);
    ExpectAllFrames(m_Builder);
  }
}

TEST_F(FieldDefect, FileWithoutElementsIsAnEmptyTrack) {
  for (auto kind : {MxfBuilder::JP2K, MxfBuilder::PCM}) {
    MxfBuilder builder(kind);
    builder.IndexPlace = MxfBuilder::Nowhere;
    const Bytes bytes = builder.Build();
    ExpectFrames(builder, bytes, 0);
    if (kind == MxfBuilder::JP2K) {
      EXPECT_EQ(Describe(bytes).ContainerDuration, 0u);
    }
  }
}

TEST_F(FieldDefect, PictureCodingInTheCodecProperty) {
  m_Builder.Overrides["Descriptor"][0x3201] = {};
  m_Builder.Overrides["Descriptor"][0x320d] = {};
  m_Builder.Overrides["Descriptor"][0x3005] = Hex("060e2b34.04010107.04010202.03010101");
  EXPECT_EQ(Describe(m_Builder.Build()).PictureEssenceCoding.EncodeHex(), "060e2b34040101070401020203010101");
}

TEST_F(FieldDefect, EncryptedLabelInTheDescriptor) {
  m_Builder.Key = Bytes(16, 1);
  m_Builder.Overrides["Descriptor"][0x3004] = Hex("060e2b34.04010107.0d010301.020b0100");
  const TemporaryFile file(m_Builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  WriterInfo info;
  ASSERT_EQ(reader.FillWriterInfo(info), RESULT_OK);
  EXPECT_TRUE(info.EncryptedEssence);
}

TEST_F(FieldDefect, EditRateOfTheFileTrackMissing) {
  m_Builder.Overrides["FileTrack"][0x4b01] = BE32(0) + BE32(0);
  EXPECT_EQ(Describe(m_Builder.Build()).EditRate, EditRate_24);
}

TEST_F(FieldDefect, DescriptorLinkedToNoTrack) {
  m_Builder.Overrides["Descriptor"][0x3006] = BE32(77);
  EXPECT_EQ(Describe(m_Builder.Build()).EditRate, EditRate_24);
}

}  // namespace
