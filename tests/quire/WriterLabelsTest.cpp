// SPDX-License-Identifier: BSD-3-Clause
//
// Multichannel labels become sub-descriptors in the order given, linked by identifiers that are derived from the seed.
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/PCMWriter.h>

#include <gtest/gtest.h>

namespace {

using namespace QUIRE;
using namespace testsupport;

class WriterLabels : public testing::Test {
 protected:
  // Writes a file without frames and returns its descriptor; null when that failed.
  const MXF::WaveAudioDescriptor* Write(const PCM::AudioDescriptor& sound, const PCM::MCALabelList& labels) {
    PCM::MXFWriter writer;
    EXPECT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), sound, labels, MakeWriterOptions()), Ferro::RESULT_OK);
    EXPECT_EQ(writer.Finalize(), Ferro::RESULT_OK);
    if (m_Reader.OpenRead(m_Path).Failure()) return nullptr;
    return m_Reader.OP1aHeader().First<MXF::WaveAudioDescriptor>();
  }
  template <class T>
  const T* SubDescriptor(const MXF::WaveAudioDescriptor& descriptor, size_t place) {
    return m_Reader.OP1aHeader().Resolve<T>(descriptor.SubDescriptors.at(place));
  }

  TemporaryFolder m_Folder;
  const std::string m_Path = m_Folder.Path("file.mxf");
  PCM::MXFReader m_Reader;
};

PCM::AudioDescriptor LabelledSound() {
  TrackFileSpec spec;
  spec.MCAConfiguration = "51(L)";
  return MakeAudioDescriptor(spec);
}

TEST_F(WriterLabels, KeepTheirOrderAndTheirLinks) {
  PCM::MCALabel channel{PCM::MCA_CHANNEL, DefaultSMPTEDict().ul(MDD_DCAudioChannel_L), "chL", "Left", "fr", 1, {2}};
  PCM::MCALabel outside{PCM::MCA_CHANNEL, DefaultSMPTEDict().ul(MDD_DCAudioChannel_HI), "chHI", "", "", 7, {}};
  PCM::MCALabel group{
      PCM::MCA_SOUNDFIELD_GROUP, DefaultSMPTEDict().ul(MDD_DCAudioSoundfield_51), "sg51", "5.1", "", 0, {3}};
  PCM::MCALabel groups{
      PCM::MCA_GROUP_OF_SOUNDFIELD_GROUPS, DefaultSMPTEDict().ul(MDD_DCAudioSoundfield_51), "ggX", "", "", 0, {}};
  const auto* descriptor = Write(LabelledSound(), {channel, outside, group, groups});
  ASSERT_NE(descriptor, nullptr);
  ASSERT_EQ(descriptor->SubDescriptors.size(), 4u);
  EXPECT_EQ(descriptor->ChannelAssignment->EncodeString(), "060e2b34.0401010d.04020210.03020000");

  const auto* left = SubDescriptor<MXF::AudioChannelLabelSubDescriptor>(*descriptor, 0);
  const auto* hearing_impaired = SubDescriptor<MXF::AudioChannelLabelSubDescriptor>(*descriptor, 1);
  const auto* field = SubDescriptor<MXF::SoundfieldGroupLabelSubDescriptor>(*descriptor, 2);
  const auto* fields = SubDescriptor<MXF::GroupOfSoundfieldGroupsLabelSubDescriptor>(*descriptor, 3);
  ASSERT_TRUE(left && hearing_impaired && field && fields);
  EXPECT_EQ(left->MCATagSymbol, "chL");
  EXPECT_EQ(left->MCATagName, "Left");
  EXPECT_EQ(left->RFC5646SpokenLanguage, "fr");
  EXPECT_EQ(left->MCAChannelID, 1u);
  EXPECT_EQ(left->MCALabelDictionaryID, channel.DictionaryID);
  EXPECT_EQ(left->SoundfieldGroupLinkID, field->MCALinkID);
  EXPECT_FALSE(hearing_impaired->SoundfieldGroupLinkID);
  EXPECT_FALSE(hearing_impaired->MCATagName);
  EXPECT_FALSE(hearing_impaired->RFC5646SpokenLanguage);
  EXPECT_FALSE(field->MCAChannelID);
  EXPECT_EQ(field->GroupOfSoundfieldGroupsLinkID, std::vector<Ferro::UUID>{fields->MCALinkID});
  EXPECT_NE(left->MCALinkID, hearing_impaired->MCALinkID);
}

TEST_F(WriterLabels, LegacyFormatsHaveTheirLabelAndNoSubDescriptors) {
  const std::pair<PCM::ChannelFormat_t, const char*> formats[] = {
      {PCM::CF_CFG_1, "060e2b34.0401010b.04020210.03010100"}, {PCM::CF_CFG_2, "060e2b34.0401010b.04020210.03010200"},
      {PCM::CF_CFG_3, "060e2b34.0401010b.04020210.03010300"}, {PCM::CF_CFG_4, "060e2b34.0401010b.04020210.03010400"},
      {PCM::CF_CFG_5, "060e2b34.0401010b.04020210.03010500"}, {PCM::CF_CFG_6, "060e2b34.0401010d.04020210.03020000"}};
  PCM::AudioDescriptor sound = LabelledSound();
  for (const auto& [format, label] : formats) {
    sound.ChannelFormat = format;
    const auto* descriptor = Write(sound, {});
    ASSERT_NE(descriptor, nullptr);
    ASSERT_TRUE(descriptor->ChannelAssignment);
    EXPECT_EQ(descriptor->ChannelAssignment->EncodeString(), label);
    EXPECT_TRUE(descriptor->SubDescriptors.empty());
  }
  sound.ChannelFormat = PCM::CF_NONE;
  const auto* descriptor = Write(sound, {});
  ASSERT_NE(descriptor, nullptr);
  EXPECT_FALSE(descriptor->ChannelAssignment);
}

TEST_F(WriterLabels, BytesPerSecondAreComputedWhereTheyAreNotGiven) {
  PCM::AudioDescriptor sound = LabelledSound();
  sound.AvgBps = 0;
  const auto* descriptor = Write(sound, {});
  ASSERT_NE(descriptor, nullptr);
  EXPECT_EQ(descriptor->AvgBps, 864000u);
}

}  // namespace
