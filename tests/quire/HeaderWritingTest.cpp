// SPDX-License-Identifier: BSD-3-Clause
#include "MetadataBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;

std::vector<ui16_t> Tags(const Primer& primer) {
  std::vector<ui16_t> tags;
  for (const Primer::Entry& entry : primer.Entries()) tags.push_back(entry.Tag);
  return tags;
}

TEST(HeaderWriting, UnchangedMetadataAreWrittenBackByteForByte) {
  OP1aHeader header = ExampleHeader();
  Bytes written;
  ASSERT_EQ(header.WriteMetadata(IndexTags::None, 0, written), Ferro::RESULT_OK);
  EXPECT_EQ(written, ExampleMetadata());
}

TEST(HeaderWriting, FillReachesTheGivenByteCount) {
  OP1aHeader header = ExampleHeader();
  Bytes written;
  ASSERT_EQ(header.WriteMetadata(IndexTags::None, 16244, written), Ferro::RESULT_OK);
  ASSERT_EQ(written.size(), 16244u);
  const Bytes metadata = ExampleMetadata();
  EXPECT_TRUE(std::equal(metadata.begin(), metadata.end(), written.begin()));
  const auto fill = ParseKLV(std::span(written).subspan(metadata.size()), metadata.size(), written.size());
  ASSERT_TRUE(fill.has_value());
  EXPECT_TRUE(IsFillKey(fill->Key));
  EXPECT_EQ(fill->End(), written.size());
  OP1aHeader again;
  EXPECT_EQ(again.InitFromBuffer(written, 140), Ferro::RESULT_OK);
}

TEST(HeaderWriting, GapThatFillCannotExpressIsTooSmall) {
  OP1aHeader header = ExampleHeader();
  Bytes written = {1, 2, 3};
  EXPECT_EQ(header.WriteMetadata(IndexTags::None, 3916, written), Ferro::RESULT_TOOLARGE);
  EXPECT_EQ(header.WriteMetadata(IndexTags::None, 3918, written), Ferro::RESULT_TOOLARGE);
  EXPECT_EQ(header.WriteMetadata(IndexTags::None, 3936, written), Ferro::RESULT_TOOLARGE);
  EXPECT_THAT(written, ElementsAre(1, 2, 3));
  EXPECT_EQ(header.WriteMetadata(IndexTags::None, 3917, written), Ferro::RESULT_OK);
  EXPECT_EQ(header.WriteMetadata(IndexTags::None, 3937, written), Ferro::RESULT_OK);
}

TEST(HeaderWriting, LengthIsKnownBeforehand) {
  OP1aHeader header = ExampleHeader();
  ui64_t length = 0;
  ASSERT_EQ(header.MetadataLength(IndexTags::None, length), Ferro::RESULT_OK);
  EXPECT_EQ(length, 3917u);
}

TEST(HeaderWriting, ItemBeyond65535BytesIsRefused) {
  OP1aHeader header;
  header.Add(std::make_unique<Identification>()).CompanyName = std::string(32768, 'x');
  ui64_t length = 7;
  EXPECT_EQ(header.MetadataLength(IndexTags::None, length), Ferro::RESULT_TOOLARGE);
  EXPECT_EQ(length, 7u);
  header.First<Identification>()->CompanyName.pop_back();
  EXPECT_EQ(header.MetadataLength(IndexTags::None, length), Ferro::RESULT_OK);
}

TEST(HeaderWriting, PrimerListsTagsInOrderOfFirstUseThenThoseOfTheIndex) {
  OP1aHeader header;
  auto& data = header.Add(std::make_unique<EssenceContainerData>());
  data.IndexSID = 129;
  Bytes written;
  ASSERT_EQ(header.WriteMetadata(IndexTags::VariableSize, 0, written), Ferro::RESULT_OK);
  EXPECT_THAT(Tags(header.Primer), ElementsAre(0x3c0a, 0x2701, 0x3f06, 0x3f07, 0x3f0b, 0x3f0c, 0x3f0d, 0x3f05, 0x3f08,
                                               0x3f0e, 0x3f09, 0x3f0a));
  OP1aHeader constant;
  constant.Add(std::make_unique<StaticTrack>());
  ASSERT_EQ(constant.WriteMetadata(IndexTags::ConstantSize, 0, written), Ferro::RESULT_OK);
  EXPECT_THAT(Tags(constant.Primer), ElementsAre(0x3c0a, 0x4801, 0x4804, 0x4803, 0x3f0b, 0x3f0c, 0x3f0d, 0x3f05, 0x3f06,
                                                 0x3f07, 0x3f08, 0x3f0e, 0x3f0a));
}

TEST(HeaderWriting, WritingTwiceGivesTheSameBytes) {
  OP1aHeader header = ExampleHeader();
  Bytes first;
  Bytes second;
  ASSERT_EQ(header.WriteMetadata(IndexTags::VariableSize, 16244, first), Ferro::RESULT_OK);
  ASSERT_EQ(header.WriteMetadata(IndexTags::VariableSize, 16244, second), Ferro::RESULT_OK);
  EXPECT_EQ(first, second);
}

TEST(HeaderWriting, ItemOrdersAreThoseOfTheField) {
  OP1aHeader header;
  auto& wave = header.Add(std::make_unique<WaveAudioDescriptor>());
  wave.LinkedTrackID = 2;
  wave.ContainerDuration = 1;
  wave.Locked = false;
  wave.AudioRefLevel = 0;
  wave.DialNorm = 0;
  wave.SequenceOffset = 0;
  wave.ChannelAssignment = DefaultSMPTEDict().ul(MDD_DCAudioChannelCfg_1_5p1);
  Bytes written;
  ASSERT_EQ(header.WriteMetadata(IndexTags::None, 0, written), Ferro::RESULT_OK);
  EXPECT_THAT(Tags(header.Primer), ElementsAre(0x3c0a, 0x3006, 0x3001, 0x3002, 0x3004, 0x3d03, 0x3d02, 0x3d04, 0x3d07,
                                               0x3d01, 0x3d0c, 0x3d0a, 0x3d0b, 0x3d09, 0x3d32));
  EXPECT_EQ(written.size() - header.Primer.ArchiveLength(), 174u);  // 154 bytes of value
}

TEST(HeaderWriting, DescriptiveSegmentPutsItsPositionBeforeTheDuration) {
  OP1aHeader header;
  auto& segment = header.Add(std::make_unique<DMSegment>());
  segment.EventStartPosition = 0;
  segment.Duration = 5;
  segment.EventComment = "x";
  segment.DMFramework = UUID();
  Bytes written;
  ASSERT_EQ(header.WriteMetadata(IndexTags::None, 0, written), Ferro::RESULT_OK);
  EXPECT_THAT(Tags(header.Primer), ElementsAre(0x3c0a, 0x0201, 0x0601, 0x0202, 0x0602, 0x6101));
}

}  // namespace
}  // namespace QUIRE::MXF
