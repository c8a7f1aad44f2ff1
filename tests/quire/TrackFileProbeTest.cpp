// SPDX-License-Identifier: BSD-3-Clause
#include "LogCapture.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/JP2KReader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TrackFileProbe.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace QUIRE;
using namespace testsupport;
using Ferro::RESULT_OK;

class TrackFileProbeTest : public testing::Test {
 protected:
  std::string Make(TrackKind kind, const TrackFileSpec& spec = {}) {
    std::string filename = m_Folder.Path(std::to_string(m_Count++) + ".mxf");
    EXPECT_EQ(MakeTrackFile(kind, filename, spec), RESULT_OK);
    return filename;
  }

  TemporaryFolder m_Folder;
  int m_Count = 0;
};

TEST_F(TrackFileProbeTest, EachKindIsOpenedAndNamed) {
  constexpr std::pair<TrackKind, EssenceType_t> kinds[] = {
      {TrackKind::Picture, ESS_JPEG_2000}, {TrackKind::StereoscopicPicture, ESS_JPEG_2000_S},
      {TrackKind::MPEG2, ESS_MPEG2_VES},   {TrackKind::Sound, ESS_PCM},
      {TrackKind::Data, ESS_DCDATA},       {TrackKind::Atmos, ESS_ATMOS},
      {TrackKind::Text, ESS_TIMED_TEXT}};
  for (const auto& [kind, type] : kinds) {
    TrackFileProbe probe;
    EXPECT_EQ(probe.Type(), ESS_UNKNOWN);
    ASSERT_EQ(probe.OpenRead(Make(kind)), RESULT_OK) << EssenceTypeName(type);
    EXPECT_EQ(probe.Type(), type);
    EXPECT_EQ(probe.FindEditUnit(0), RESULT_OK) << EssenceTypeName(type);
    EXPECT_EQ(probe.FindEditUnit(4), RESULT_OK) << EssenceTypeName(type);
    if (kind != TrackKind::Text) {
      EXPECT_EQ(probe.FindEditUnit(5), RESULT_RANGE) << EssenceTypeName(type);
    }
  }
}

TEST_F(TrackFileProbeTest, TheIdentityIsThatOfAFileInspected) {
  TrackFileSpec spec;
  spec.Key.emplace();
  const std::string filename = Make(TrackKind::Picture, spec);
  TrackFileIdentity known;
  ASSERT_EQ(IdentifyTrackFile(filename, known), RESULT_OK);
  TrackFileProbe probe;
  TrackFileIdentity identity;
  EXPECT_EQ(probe.FillIdentity(identity), Ferro::RESULT_INIT);
  ASSERT_EQ(probe.OpenRead(filename), RESULT_OK);
  ASSERT_EQ(probe.FillIdentity(identity), RESULT_OK);
  EXPECT_EQ(identity.Type, known.Type);
  EXPECT_EQ(identity.Fault, TrackFileFault::None);
  EXPECT_EQ(identity.OperationalPattern, known.OperationalPattern);
  EXPECT_EQ(identity.EssenceContainer, known.EssenceContainer);
  EXPECT_EQ(identity.EssenceCoding, known.EssenceCoding);
  EXPECT_EQ(identity.AssetID, spec.AssetID);
  EXPECT_TRUE(identity.Encrypted);
  EXPECT_TRUE(identity.IsTrackFile());
}

TEST_F(TrackFileProbeTest, DescriptorsAreThoseOfTheReaders) {
  const std::string picture = Make(TrackKind::StereoscopicPicture);
  JP2K::MXFReader reader;
  TrackFileProbe probe;
  ASSERT_EQ(reader.OpenRead(picture), RESULT_OK);
  ASSERT_EQ(probe.OpenRead(picture), RESULT_OK);
  JP2K::PictureDescriptor expected, found;
  ASSERT_EQ(reader.FillPictureDescriptor(expected), RESULT_OK);
  ASSERT_EQ(probe.FillDescriptor(found), RESULT_OK);
  EXPECT_EQ(found, expected);
  PCM::AudioDescriptor sound;
  EXPECT_EQ(probe.FillDescriptor(sound), RESULT_FORMAT);
  TimedText::TimedTextDescriptor text;
  EXPECT_EQ(probe.FillDescriptor(text), RESULT_FORMAT);
}

TEST_F(TrackFileProbeTest, LabelsComeBackAsTheyWereWritten) {
  TrackFileSpec spec;
  spec.ChannelCount = 8;
  spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs),HI,VIN";
  TrackFileProbe probe;
  ASSERT_EQ(probe.OpenRead(Make(TrackKind::Sound, spec)), RESULT_OK);
  PCM::MCALabelList labels;
  ASSERT_EQ(probe.FillMCALabels(labels), RESULT_OK);
  EXPECT_EQ(labels, MakeLabels(spec));

  ASSERT_EQ(probe.OpenRead(Make(TrackKind::Picture)), RESULT_OK);
  ASSERT_EQ(probe.FillMCALabels(labels), RESULT_OK);
  EXPECT_TRUE(labels.empty());
}

TEST_F(TrackFileProbeTest, WhatWasCutOffIsNotFound) {
  const LogCapture log;
  for (const TrackKind kind : {TrackKind::Picture, TrackKind::StereoscopicPicture, TrackKind::Sound}) {
    TrackFileSpec spec;
    spec.Duration = 48;
    const std::string filename = Make(kind, spec);
    std::filesystem::resize_file(filename, std::filesystem::file_size(filename) * 3 / 4);
    TrackFileProbe probe;
    ASSERT_EQ(probe.OpenRead(filename), RESULT_OK);
    EXPECT_EQ(probe.FindEditUnit(0), RESULT_OK);
    EXPECT_EQ(probe.FindEditUnit(47), RESULT_CUT);
    EXPECT_EQ(probe.FindEditUnit(48), RESULT_RANGE);
  }
}

TEST_F(TrackFileProbeTest, ResourcesOfTextsAreFound) {
  const LogCapture log;
  TrackFileSpec spec;
  spec.FontSizes = {1000, 2000};
  const std::string filename = Make(TrackKind::Text, spec);
  TrackFileProbe probe;
  Ferro::UUID missing;
  EXPECT_EQ(probe.FindResources(missing), Ferro::RESULT_INIT);
  ASSERT_EQ(probe.OpenRead(filename), RESULT_OK);
  EXPECT_EQ(probe.FindResources(missing), RESULT_OK);
  EXPECT_FALSE(missing.HasValue());
  TimedText::TimedTextDescriptor text;
  ASSERT_EQ(probe.FillDescriptor(text), RESULT_OK);
  ASSERT_EQ(text.ResourceList.size(), 2U);
  const auto partitions = probe.RIP().PairArray;  // header, document, two fonts, footer
  ASSERT_EQ(partitions.size(), 5U);
  const auto cut_at = [&](ui64_t size) {
    std::filesystem::resize_file(filename, size);
    EXPECT_EQ(probe.OpenRead(filename), RESULT_OK);
    EXPECT_EQ(probe.FindEditUnit(0), RESULT_OK);
    missing = Ferro::UUID();
    return probe.FindResources(missing);
  };
  EXPECT_EQ(cut_at(partitions[4].ByteOffset), RESULT_OK);
  EXPECT_EQ(cut_at(partitions[4].ByteOffset - 1), RESULT_FORMAT);
  EXPECT_EQ(missing, text.ResourceList.back().ResourceID);
  EXPECT_EQ(cut_at(partitions[3].ByteOffset), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(missing, text.ResourceList.back().ResourceID);
  EXPECT_EQ(cut_at(partitions[2].ByteOffset), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(missing, text.ResourceList.front().ResourceID);
}

TEST_F(TrackFileProbeTest, AFileThatBreaksOffHasNoFooter) {
  const LogCapture log;
  for (const TrackKind kind : {TrackKind::Picture, TrackKind::Sound, TrackKind::Text}) {
    const std::string filename = Make(kind);
    TrackFileProbe probe;
    EXPECT_EQ(probe.FindFooter(), Ferro::RESULT_INIT);
    ASSERT_EQ(probe.OpenRead(filename), RESULT_OK);
    const ui64_t index_pack = std::filesystem::file_size(filename) - probe.RIP().PackLength;
    const ui64_t footer = probe.RIP().PairArray.back().ByteOffset;
    EXPECT_EQ(probe.FindFooter(), RESULT_OK);
    const auto cut_at = [&](ui64_t size) {
      std::filesystem::resize_file(filename, size);
      EXPECT_EQ(probe.OpenRead(filename), RESULT_OK);
      Ferro::UUID missing;
      EXPECT_EQ(probe.FindResources(missing), RESULT_OK);
      return probe.FindFooter();
    };
    EXPECT_EQ(cut_at(index_pack), RESULT_OK) << "the random index pack is optional";
    EXPECT_EQ(cut_at(index_pack - 1), RESULT_CUT);
    EXPECT_EQ(cut_at(footer + 16), RESULT_CUT);
    EXPECT_EQ(cut_at(footer), RESULT_CUT);
  }
}

TEST_F(TrackFileProbeTest, AFileOfAnotherKindIsRefusedWithItsReason) {
  const LogCapture log;
  TrackFileProbe probe;
  EXPECT_EQ(probe.OpenRead(m_Folder.Write("no.mxf", "no track file")), RESULT_FORMAT);
  EXPECT_FALSE(probe.IsOpen());
  EXPECT_EQ(probe.FindEditUnit(0), Ferro::RESULT_INIT);
}

}  // namespace
