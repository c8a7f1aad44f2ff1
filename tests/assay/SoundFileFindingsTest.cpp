// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleSound.h"

#include "file/SoundFindings.h"
#include "run/Causes.h"

namespace {

using namespace QUIRE::PCM;
using Assay::Finding;
using Assay::FindingList;
using Assay::SoundHeader;
using testsupport::LabelledSound;
using testsupport::Names;
using testsupport::NamesOf;
using testsupport::SoundHeaderOf;
using testsupport::TrackFileOf;

template <class EssenceT>
FindingList FindingsOf(const EssenceT& essence, QUIRE::LabelSet_t flavour = QUIRE::LS_MXF_SMPTE) {
  FindingList findings;
  FindInSoundFile(TrackFileOf(essence, flavour), findings);
  return findings;
}

Names NamesIn(const SoundHeader& header, QUIRE::LabelSet_t flavour = QUIRE::LS_MXF_SMPTE) {
  return NamesOf(FindingsOf(header, flavour));
}

/// The labelled sound after a change.
template <class ChangeT>
Names After(ChangeT change) {
  SoundHeader header = LabelledSound();
  change(header);
  return NamesIn(header);
}

TEST(SoundFileFindings, ASoundWithLabelsByNameHasNone) {
  EXPECT_EQ(NamesIn(LabelledSound()), Names{});
  EXPECT_EQ(NamesIn(SoundHeaderOf(8, CF_NONE), QUIRE::LS_MXF_INTEROP), Names{});
}

TEST(SoundFileFindings, AFileThatDoesNotOpenOrHoldsSomethingElseIsPassedOver) {
  FindingList findings;
  Assay::TrackFile file = TrackFileOf(SoundHeaderOf(0, CF_NONE));
  file.Opened = QUIRE::RESULT_FORMAT;
  FindInSoundFile(file, findings);
  FindInSoundFile(TrackFileOf(QUIRE::JP2K::PictureDescriptor()), findings);
  EXPECT_TRUE(findings.empty());
}

TEST(SoundFileFindings, TheRateIs48Or96Kilohertz) {
  const auto with = [](int numerator, int denominator) {
    return After([&](SoundHeader& sound) { sound.Descriptor.AudioSamplingRate = {numerator, denominator}; });
  };
  EXPECT_EQ(with(96000, 1), Names{"sound-rate profile"});
  EXPECT_EQ(with(96000, 2), Names{});
  for (const int rate : {44100, 47999, 48001, 95999, 96001, 192000, 0, -48000})
    EXPECT_EQ(with(rate, 1), Names{"sound-rate"}) << rate;
  EXPECT_EQ(with(48000, 1001), Names{"sound-rate"});
  EXPECT_EQ(with(0, 0), Names{"sound-rate"});
  EXPECT_EQ(with(48000, 0), Names{"sound-rate"});
  EXPECT_EQ(with(-48000, -1), Names{"sound-rate"});
}

TEST(SoundFileFindings, SamplesHave24BitsWithoutGaps) {
  const auto with = [](Assay::ui32_t bits, Assay::ui32_t align) {
    return After([&](SoundHeader& sound) {
      sound.Descriptor.QuantizationBits = bits;
      sound.Descriptor.BlockAlign = align;
    });
  };
  for (const Assay::ui32_t bits : {0U, 16U, 23U, 25U, 32U}) EXPECT_EQ(with(bits, 24), Names{"sound-bits"}) << bits;
  for (const Assay::ui32_t align : {0U, 23U, 25U, 32U}) EXPECT_EQ(with(24, align), Names{"sound-bits"}) << align;
  EXPECT_EQ(with(16, 16), Names{"sound-bits"}) << "told once";
}

TEST(SoundFileFindings, OneToSixteenChannelsInPairs) {
  const auto with = [](Assay::ui32_t channels) { return NamesIn(SoundHeaderOf(channels, CF_CFG_4, "M(C)")); };
  for (const Assay::ui32_t count : {2U, 6U, 14U, 16U}) EXPECT_EQ(with(count), Names{}) << count;
  for (const Assay::ui32_t count : {1U, 5U, 7U, 15U}) EXPECT_EQ(with(count), Names{"sound-channels warning"}) << count;
  for (const Assay::ui32_t count : {17U, 18U}) EXPECT_EQ(with(count), Names{"sound-channels"}) << count;
  EXPECT_EQ(NamesIn(SoundHeaderOf(0, CF_CFG_4, "M(C)")), (Names{"sound-channels", "sound-mca"}));
}

TEST(SoundFileFindings, SixOneHasAnOddNumber) {
  EXPECT_EQ(NamesIn(SoundHeaderOf(7, CF_CFG_2)), Names{"sound-labels profile"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(7, CF_CFG_6, "61(L,R,C,LFE,Ls,Rs,Cs)")), Names{});
  EXPECT_EQ(NamesIn(SoundHeaderOf(7, CF_CFG_6, "51(L,R,C,LFE,Ls,Rs),HI")), Names{"sound-channels warning"});
}

TEST(SoundFileFindings, ConfigurationsLimitTheNumberOfChannels) {
  struct Case {
    ChannelFormat_t Format;
    Assay::ui32_t Least, Most;
  };
  for (const Case& each : {Case{CF_CFG_1, 6, 8}, {CF_CFG_2, 7, 10}, {CF_CFG_3, 8, 10}, {CF_CFG_5, 8, 10}}) {
    EXPECT_EQ(NamesIn(SoundHeaderOf(each.Least, each.Format)), Names{"sound-labels profile"}) << each.Format;
    EXPECT_EQ(NamesIn(SoundHeaderOf(each.Most, each.Format)), Names{"sound-labels profile"}) << each.Format;
    const Names outside = {"sound-configuration", "sound-labels profile"};
    EXPECT_EQ(NamesIn(SoundHeaderOf(each.Least / 2 * 2 - 2, each.Format)), outside) << each.Format;
    EXPECT_EQ(NamesIn(SoundHeaderOf(each.Most + 2, each.Format)), outside) << each.Format;
  }
}

TEST(SoundFileFindings, AConfigurationFollowsFromTheNumberOfChannels) {
  FindingList findings = FindingsOf(SoundHeaderOf(18, CF_CFG_1));
  LinkCauses(findings);
  ASSERT_EQ(NamesOf(findings), (Names{"sound-channels", "sound-configuration", "sound-labels profile"}));
  EXPECT_EQ(findings[1].Cause, 0U);
  EXPECT_EQ(findings[1].Expected, "6 to 8 channels in configuration 1");
  EXPECT_EQ(findings[1].Found, "18");
  EXPECT_EQ(findings[0].Place.Document, "track.mxf");
}

TEST(SoundFileFindings, TheFileSaysWhichChannelIsWhich) {
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_NONE)), Names{"sound-labels"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_CFG_4)), Names{"sound-labels profile"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_CFG_6)), Names{"sound-labels profile"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_CFG_1)), Names{"sound-labels profile"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_CFG_4, "51(L,R,C,LFE,Ls,Rs)")), Names{});
}

TEST(SoundFileFindings, OneLabelForAChannel) {
  const auto with = [](Assay::ui32_t channel) {
    return After([&](SoundHeader& sound) { sound.Labels[8].ChannelID = channel; });  // VIN
  };
  EXPECT_EQ(with(7), Names{"sound-mca"});
  EXPECT_EQ(with(8), Names{});
  EXPECT_EQ(with(9), Names{"sound-mca"}) << "there is no such channel";
  EXPECT_EQ(with(0), Names{"sound-mca"}) << "it says none";
  const FindingList findings = [] {
    SoundHeader sound = LabelledSound();
    sound.Labels[8].ChannelID = 7;
    return FindingsOf(sound);
  }();
  EXPECT_EQ(findings.front().Place.Channel, 7U);
  EXPECT_EQ(findings.front().Found, "chHI and chVIN");
}

TEST(SoundFileFindings, OneChannelAloneNeedsNoNumber) {
  SoundHeader sound = SoundHeaderOf(1, CF_CFG_6, "M(C)");
  sound.Labels[1].ChannelID = 0;
  EXPECT_EQ(NamesIn(sound), Names{"sound-channels warning"});
}

TEST(SoundFileFindings, AGroupHasItsChannels) {
  EXPECT_EQ(After([](SoundHeader& sound) { sound.Labels[6].Groups.clear(); }), Names{"sound-mca"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_CFG_6, "51(L,R,C,LFE,-,Rs)")), Names{"sound-mca"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_CFG_6, "51(L,R,C,LFE,Ls,Rs,HI)")), Names{"sound-mca"});
  EXPECT_EQ(NamesIn(SoundHeaderOf(8, CF_CFG_6, "71(L,R,C,LFE,Lss,Rss,Lrs,Rrs)")), Names{});
  SoundHeader sound = LabelledSound();
  sound.Labels[0].DictionaryID = QUIRE::UL();
  EXPECT_EQ(NamesIn(sound), Names{}) << "what an unknown group consists of is not known";
  for (MCALabel& label : sound.Labels) label.Groups.clear();
  EXPECT_EQ(NamesIn(sound), Names{"sound-mca"}) << "but not of nothing";
  EXPECT_EQ(FindingsOf(SoundHeaderOf(6, CF_CFG_6, "51(L,R,C,LFE)")).front().Found, "without Ls,Rs");
}

TEST(SoundFileFindings, LanguagesOfLabelsAreTags) {
  for (const char* tag : {"en", "fr-CA", "cmn-Hans", ""}) EXPECT_EQ(NamesIn(LabelledSound(tag)), Names{}) << tag;
  for (const char* tag : {"e", "en_US", "English", "xx", "en-US-US"})
    EXPECT_EQ(NamesIn(LabelledSound(tag)), Names{"sound-mca"}) << tag << ", told once for all labels";
}

TEST(SoundFileFindings, InteropFilesHaveNoLabels) {
  SoundHeader sound = LabelledSound("none");
  sound.Labels[8].ChannelID = 30;
  EXPECT_EQ(NamesIn(sound, QUIRE::LS_MXF_INTEROP), Names{});
  sound.Descriptor.QuantizationBits = 16;
  EXPECT_EQ(NamesIn(sound, QUIRE::LS_MXF_INTEROP), Names{"sound-bits"});
}

TEST(SoundFileFindings, ImmersiveAudioHasLimits) {
  const auto with = [](Assay::ui32_t channels, Assay::ui32_t objects) {
    QUIRE::ATMOS::AtmosDescriptor immersive;
    immersive.MaxChannelCount = static_cast<QUIRE::ui16_t>(channels);
    immersive.MaxObjectCount = static_cast<QUIRE::ui16_t>(objects);
    return NamesOf(FindingsOf(immersive));
  };
  EXPECT_EQ(with(64, 118), Names{});
  EXPECT_EQ(with(65, 118), Names{"aux-atmos-channels"});
  EXPECT_EQ(with(64, 119), Names{"aux-atmos-channels"});
}

}  // namespace
