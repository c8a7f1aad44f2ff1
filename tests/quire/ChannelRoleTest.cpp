// SPDX-License-Identifier: BSD-3-Clause
#include "../support/TemporaryFolder.h"
#include "../support/TrackFileMaker.h"

#include <QUIRE/ChannelRole.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/PCMWriter.h>

#include <Ferro/FileText.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace QUIRE;
using namespace QUIRE::PCM;

std::string TextOf(const std::vector<ChannelRole_t>& roles) {
  std::string text;
  for (const ChannelRole_t role : roles) text += (text.empty() ? "" : " ") + std::string(ChannelRoleSymbol(role));
  return text;
}

std::string RolesOf(ui32_t channels, ChannelFormat_t format, const MCALabelList& labels = {}) {
  AudioDescriptor sound;
  sound.ChannelCount = channels;
  sound.ChannelFormat = format;
  return TextOf(ChannelRolesOf(sound, labels).Roles);
}

MCALabelList LabelsOf(const std::string& configuration) {
  MCALabelList labels;
  EXPECT_EQ(MakeMCALabels(configuration, "", labels), Ferro::RESULT_OK);
  return labels;
}

TEST(ChannelRole, EachSymbolMeansItsRole) {
  for (int i = 0; i <= CR_OTHER; ++i) {
    const auto role = static_cast<ChannelRole_t>(i);
    if (role == CR_MOTION || role == CR_OTHER) continue;  // no label, so no symbol
    EXPECT_EQ(ChannelRoleOf(ChannelRoleSymbol(role)), role) << i;
  }
  for (const char* none : {"", "l", "chL", "LS", "Motion", "Other", "VI"})
    EXPECT_EQ(ChannelRoleOf(std::string_view(none)), std::nullopt) << none;
}

TEST(ChannelRole, ADictionaryIdentifierDecides) {
  MCALabelList labels = LabelsOf("51(L,R,C,LFE,Ls,Rs),HI,VIN,FSKSync,SLVS");
  labels[1].TagSymbol = "chR";
  EXPECT_EQ(ChannelRoleOf(labels[1].DictionaryID), CR_L);
  EXPECT_EQ(ChannelRoleOf(labels[9].DictionaryID), CR_FSK_SYNC);
  EXPECT_EQ(ChannelRoleOf(labels[10].DictionaryID), CR_SIGN_LANGUAGE);
  EXPECT_EQ(ChannelRoleOf(labels[0].DictionaryID), CR_OTHER) << "that is a group";
  EXPECT_EQ(ChannelRoleOf(UL()), CR_OTHER);
  const ui8_t moving[] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x0d,
                          0x0e, 0x16, 0x01, 0x01, 0x01, 0x01, 0x02, 0x02};
  EXPECT_EQ(ChannelRoleOf(UL(moving)), CR_MOTION);
}

TEST(ChannelRole, WhatIsHeardInTheHallAndWhatNobodyShouldHear) {
  std::string hall, signals;
  for (int i = 0; i <= CR_OTHER; ++i) {
    const auto role = static_cast<ChannelRole_t>(i);
    if (IsForHall(role)) hall += std::string(ChannelRoleSymbol(role)) + ' ';
    if (IsSignal(role)) signals += std::string(ChannelRoleSymbol(role)) + ' ';
  }
  EXPECT_EQ(hall, "L R C LFE Ls Rs Lss Rss Lrs Rrs Lc Rc Cs ");
  EXPECT_EQ(signals, "FSKSync Motion SLVS ");
}

TEST(ChannelRole, ConfigurationsHaveAnOrder) {
  EXPECT_EQ(RolesOf(6, CF_CFG_1), "L R C LFE Ls Rs");
  EXPECT_EQ(RolesOf(8, CF_CFG_1), "L R C LFE Ls Rs HI VIN");
  EXPECT_EQ(RolesOf(12, CF_CFG_1), "L R C LFE Ls Rs HI VIN - - - -");
  EXPECT_EQ(RolesOf(16, CF_CFG_1), "L R C LFE Ls Rs HI VIN - - - - Motion FSKSync SLVS -");
  EXPECT_EQ(RolesOf(7, CF_CFG_2), "L R C LFE Ls Rs Cs");
  EXPECT_EQ(RolesOf(10, CF_CFG_2), "L R C LFE Ls Rs Cs - HI VIN");
  EXPECT_EQ(RolesOf(8, CF_CFG_3), "L R C LFE Ls Rs Lc Rc");
  EXPECT_EQ(RolesOf(10, CF_CFG_3), "L R C LFE Ls Rs Lc Rc HI VIN");
  EXPECT_EQ(RolesOf(8, CF_CFG_5), "L R C LFE Lss Rss Lrs Rrs");
  EXPECT_EQ(RolesOf(10, CF_CFG_5), "L R C LFE Lss Rss Lrs Rrs HI VIN");
}

TEST(ChannelRole, SevenOneWithMoreThanTenChannelsIsInTheUsualOrder) {
  EXPECT_EQ(RolesOf(11, CF_CFG_3), "L R C LFE Ls Rs HI VIN Lc Rc Lrs");
  EXPECT_EQ(RolesOf(16, CF_CFG_5), "L R C LFE Lss Rss HI VIN Lc Rc Lrs Rrs Motion FSKSync SLVS -");
}

TEST(ChannelRole, WhereNothingIsSaidTheUsualOrderIsAssumed) {
  EXPECT_EQ(RolesOf(0, CF_NONE), "");
  EXPECT_EQ(RolesOf(1, CF_NONE), "C");
  EXPECT_EQ(RolesOf(2, CF_CFG_4), "L R");
  EXPECT_EQ(RolesOf(3, CF_NONE), "L R C");
  for (const ChannelFormat_t format : {CF_NONE, CF_CFG_4, CF_CFG_6}) {
    EXPECT_EQ(RolesOf(6, format), "L R C LFE Ls Rs");
    EXPECT_EQ(RolesOf(18, format), "L R C LFE Ls Rs HI VIN Lc Rc Lrs Rrs Motion FSKSync SLVS - - -");
  }
}

TEST(ChannelRole, LabelsComeBeforeTheConfiguration) {
  EXPECT_EQ(RolesOf(8, CF_CFG_6, LabelsOf("51(C,L,R,Ls,Rs,LFE),VIN,HI")), "C L R Ls Rs LFE VIN HI");
  EXPECT_EQ(RolesOf(4, CF_CFG_1, LabelsOf("51(L,-,R)")), "L - R -");
  MCALabelList labels = LabelsOf("51(L,R)");
  labels.push_back(LabelsOf("51(C,C,C)").back());  // a third, for channel 3, which is not there
  labels[2].ChannelID = 1;                         // a second one for channel 1
  EXPECT_EQ(RolesOf(2, CF_CFG_6, labels), "L -");
  labels = LabelsOf("M(C)");
  labels[1].ChannelID = 0;
  EXPECT_EQ(RolesOf(1, CF_CFG_6, labels), "C") << "one channel alone needs no number";
  EXPECT_EQ(RolesOf(2, CF_CFG_6, labels), "L R") << "of two it names none";
  labels[1].DictionaryID = UL();
  EXPECT_EQ(RolesOf(1, CF_CFG_6, labels), "Other");
}

TEST(ChannelRole, TellsHowItIsKnown) {
  AudioDescriptor sound;
  sound.ChannelCount = 6;
  EXPECT_EQ(ChannelRolesOf(sound, {}).Source, CRS_ORDER);
  sound.ChannelFormat = CF_CFG_6;
  EXPECT_EQ(ChannelRolesOf(sound, {}).Source, CRS_ORDER);
  EXPECT_EQ(ChannelRolesOf(sound, LabelsOf("51(L)")).Source, CRS_LABELS);
  sound.ChannelFormat = CF_CFG_2;
  EXPECT_EQ(ChannelRolesOf(sound, {}).Source, CRS_CONFIGURATION);
}

TEST(ChannelRole, AHeaderMayClaimAnyNumberOfChannels) {
  AudioDescriptor sound;
  sound.ChannelCount = 0xffffffff;
  EXPECT_EQ(ChannelRolesOf(sound, {}).Roles.size(), MaxChannelRoles);
}

TEST(ChannelRole, ConfigurationsLimitTheNumberOfChannels) {
  EXPECT_EQ(ChannelCountsOf(CF_CFG_1), (ChannelCounts{6, 8}));
  EXPECT_EQ(ChannelCountsOf(CF_CFG_2), (ChannelCounts{7, 10}));
  EXPECT_EQ(ChannelCountsOf(CF_CFG_3), (ChannelCounts{8, 10}));
  EXPECT_EQ(ChannelCountsOf(CF_CFG_5), (ChannelCounts{8, 10}));
  for (const ChannelFormat_t format : {CF_NONE, CF_CFG_4, CF_CFG_6})
    EXPECT_EQ(ChannelCountsOf(format), (ChannelCounts{1, 16}));
}

TEST(ChannelRole, SoundfieldGroupsAreMadeUpOfChannels) {
  const auto text = [](std::span<const ChannelRole_t> roles) { return TextOf({roles.begin(), roles.end()}); };
  EXPECT_EQ(text(SoundfieldChannels("51")), "L R C LFE Ls Rs");
  EXPECT_EQ(text(SoundfieldChannels("61")), "L R C LFE Ls Rs Cs");
  EXPECT_EQ(text(SoundfieldChannels("71")), "L R C LFE Lss Rss Lrs Rrs");
  EXPECT_EQ(text(SoundfieldChannels("SDS")), "L R C LFE Ls Rs Lc Rc");
  EXPECT_EQ(text(SoundfieldChannels("M")), "C");
  EXPECT_TRUE(SoundfieldChannels("sg51").empty());
  EXPECT_EQ(text(SoundfieldChannels(LabelsOf("61(L)").front().DictionaryID)), "L R C LFE Ls Rs Cs");
  EXPECT_TRUE(SoundfieldChannels(UL()).empty());
}

TEST(ChannelRole, LabelsAreReadFromAFileAsTheyWereWritten) {
  const testsupport::TemporaryFolder folder;
  const std::string filename = folder.Path("sound.mxf");
  testsupport::TrackFileSpec spec;
  spec.ChannelCount = 8;
  spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs),HI,VIN";
  ASSERT_EQ(MakeTrackFile(testsupport::TrackKind::Sound, filename, spec), Ferro::RESULT_OK);
  MXFReader reader;
  MCALabelList labels(1);
  EXPECT_EQ(reader.FillMCALabels(labels), Ferro::RESULT_INIT);
  EXPECT_EQ(labels.size(), 1U);
  ASSERT_EQ(reader.OpenRead(filename), Ferro::RESULT_OK);
  ASSERT_EQ(reader.FillMCALabels(labels), Ferro::RESULT_OK);
  EXPECT_EQ(labels, testsupport::MakeLabels(spec));
}

TEST(ChannelRole, ALabelThatIsNamedTwiceIsReadOnce) {
  const testsupport::TemporaryFolder folder;
  const std::string filename = folder.Path("sound.mxf");
  testsupport::TrackFileSpec spec;
  spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs)";
  ASSERT_EQ(MakeTrackFile(testsupport::TrackKind::Sound, filename, spec), Ferro::RESULT_OK);
  std::string bytes;
  ASSERT_EQ(Ferro::ReadFileIntoString(filename, bytes, 64 * 1024 * 1024), Ferro::RESULT_OK);
  // The list of the sound's seven labels, 16 bytes each.
  const size_t list = bytes.find(std::string("\0\0\0\x07\0\0\0\x10", 8));
  ASSERT_NE(list, std::string::npos);
  bytes.replace(list + 8 + 2 * 16, 16, bytes, list + 8 + 16, 16);  // the third as the second
  const std::string damaged = folder.Write("damaged.mxf", bytes);
  MXFReader reader;
  MCALabelList labels;
  ASSERT_EQ(reader.OpenRead(damaged), Ferro::RESULT_OK);
  ASSERT_EQ(reader.FillMCALabels(labels), Ferro::RESULT_OK);
  MCALabelList expected = testsupport::MakeLabels(spec);
  expected.erase(expected.begin() + 2);
  EXPECT_EQ(labels, expected);
}

TEST(ChannelRole, GroupsOfGroupsAreReadWithTheirLinks) {
  const testsupport::TemporaryFolder folder;
  const std::string filename = folder.Path("sound.mxf");
  const testsupport::TrackFileSpec spec;
  MCALabelList labels = LabelsOf("51(L,R)");
  labels[0].Groups = {3, 4};
  for (const char* name : {"first", "second"})
    labels.push_back({MCA_GROUP_OF_SOUNDFIELD_GROUPS, UL(), "gg", name, "fr", 0, {}});
  AudioDescriptor sound = testsupport::MakeAudioDescriptor(spec);
  sound.ChannelFormat = CF_CFG_6;
  MXFWriter writer;
  ASSERT_EQ(writer.OpenWrite(filename, testsupport::MakeWriterInfo(spec), sound, labels), Ferro::RESULT_OK);
  QUIRE::PCM::FrameBuffer frame;
  testsupport::FillBuffer(testsupport::MakeFrame(testsupport::TrackKind::Sound, spec, 0), frame);
  ASSERT_EQ(writer.WriteFrame(frame), Ferro::RESULT_OK);
  ASSERT_EQ(writer.Finalize(), Ferro::RESULT_OK);
  MXFReader reader;
  MCALabelList read;
  ASSERT_EQ(reader.OpenRead(filename), Ferro::RESULT_OK);
  ASSERT_EQ(reader.FillMCALabels(read), Ferro::RESULT_OK);
  EXPECT_EQ(read, labels);
}

}  // namespace
