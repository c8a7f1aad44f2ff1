// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/SoundConfiguration.h>

#include <Ferro/LogSink.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/MXF/SubDescriptors.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Ferro::ui32_t;
using Ferro::UUID;
using QUIRE::MXF::AudioChannelLabelSubDescriptor;
using QUIRE::MXF::SoundfieldGroupLabelSubDescriptor;
using QUIRE::MXF::WaveAudioDescriptor;
using Strata::mca_sound_label_from_mxf;
using Strata::sound_config_from_mxf;

/// Header metadata of a sound track file, built in memory, and the log.
class SoundConfiguration : public testing::Test {
 protected:
  void SetUp() override { m_PreviousSink = Ferro::SetDefaultLogSink(&Log); }
  void TearDown() override { Ferro::SetDefaultLogSink(m_PreviousSink); }

  WaveAudioDescriptor& AddWave(ui32_t channels) {
    m_Wave = &Header.Add(std::make_unique<WaveAudioDescriptor>());
    m_Wave->ChannelCount = channels;
    return *m_Wave;
  }
  void AddWave(ui32_t channels, QUIRE::MDD_t assignment) {
    AddWave(channels).ChannelAssignment = QUIRE::DefaultSMPTEDict().ul(assignment);
  }
  SoundfieldGroupLabelSubDescriptor& AddGroup(const std::string& symbol) {
    auto& group = Header.Add(std::make_unique<SoundfieldGroupLabelSubDescriptor>());
    group.MCATagSymbol = symbol;
    group.MCALinkID = UUID::Random();
    m_Wave->SubDescriptors.push_back(group.InstanceUID);
    return group;
  }
  AudioChannelLabelSubDescriptor& AddChannel(const std::string& symbol, ui32_t id,
                                             const SoundfieldGroupLabelSubDescriptor* group) {
    auto& channel = Header.Add(std::make_unique<AudioChannelLabelSubDescriptor>());
    channel.MCATagSymbol = symbol;
    channel.MCAChannelID = id;
    if (group != nullptr) channel.SoundfieldGroupLinkID = group->MCALinkID;
    m_Wave->SubDescriptors.push_back(channel.InstanceUID);
    return channel;
  }
  /// The six channels of 5.1 in an order unlike that of their numbers.
  const SoundfieldGroupLabelSubDescriptor& AddFiveOne() {
    AddWave(6, QUIRE::MDD_DCAudioChannelCfg_MCA);
    const auto& group = AddGroup("sg51");
    AddChannel("chLs", 5, &group);
    AddChannel("chL", 1, &group);
    AddChannel("chRs", 6, &group);
    AddChannel("chC", 3, &group);
    AddChannel("chR", 2, &group);
    AddChannel("chLFE", 4, &group);
    return group;
  }

  std::string Config(bool paren) { return sound_config_from_mxf(Header, QUIRE::DefaultSMPTEDict(), paren); }
  std::string Label(bool paren) { return mca_sound_label_from_mxf(Header, QUIRE::DefaultSMPTEDict(), paren); }
  void ExpectLog(const std::vector<std::string>& messages) {
    std::vector<std::string> found;
    for (const Ferro::LogEntry& entry : Log.Entries()) {
      EXPECT_EQ(entry.Level, Ferro::LogLevel::Error);
      found.push_back(entry.Message);
    }
    EXPECT_EQ(found, messages);
  }

  QUIRE::MXF::OP1aHeader Header;
  Ferro::MemoryLogSink Log;

 private:
  WaveAudioDescriptor* m_Wave = nullptr;
  Ferro::ILogSink* m_PreviousSink = nullptr;
};

TEST_F(SoundConfiguration, HeaderWithoutWaveDescriptor) {
  EXPECT_EQ(Config(true), "");
  EXPECT_EQ(Label(true), "");
  ExpectLog({"WaveAudioDescriptor not found.\n", "WaveAudioDescriptor not found.\n"});
}

TEST_F(SoundConfiguration, WaveDescriptorOfAnotherType) {
  auto set = std::make_unique<QUIRE::MXF::OpaqueSet>();
  set->SetKey = QUIRE::DefaultSMPTEDict().ul(QUIRE::MDD_WaveAudioDescriptor);
  Header.Add(std::move(set));
  EXPECT_EQ(Config(true), "");
  EXPECT_EQ(Label(true), "");
  ExpectLog({"WaveAudioDescriptor type failure.\n", "WaveAudioDescriptor type failure.\n"});
}

TEST_F(SoundConfiguration, NoChannelAssignmentGivesNothingAndNoMessage) {
  AddWave(6);
  EXPECT_EQ(Config(true), "");
  EXPECT_EQ(Config(false), "");
  ExpectLog({});
}

TEST_F(SoundConfiguration, UnknownChannelAssignmentGivesNothingAndNoMessage) {
  AddWave(6, QUIRE::MDD_WaveAudioDescriptor);
  EXPECT_EQ(Config(true), "");
  ExpectLog({});
}

struct FixedCase {
  QUIRE::MDD_t Label;
  ui32_t Channels;
  const char* Paren;
  const char* Slash;
};

class FixedSoundConfiguration : public SoundConfiguration, public testing::WithParamInterface<FixedCase> {};

TEST_P(FixedSoundConfiguration, IsSpelledByItsLabel) {
  AddWave(GetParam().Channels, GetParam().Label);
  EXPECT_EQ(Config(true), GetParam().Paren);
  EXPECT_EQ(Config(false), GetParam().Slash);
  ExpectLog({});
}

INSTANTIATE_TEST_SUITE_P(
    AllLabels, FixedSoundConfiguration,
    testing::Values(
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_1_5p1, 6, "51(L,R,C,LFE,Ls,Rs)", "51/L,R,C,LFE,Ls,Rs"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_1_5p1, 7, "51(L,R,C,LFE,Ls,Rs),HI,VIN", "51/L,R,C,LFE,Ls,Rs,HI,VIN"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_1_5p1, 8, "51(L,R,C,LFE,Ls,Rs),HI,VIN", "51/L,R,C,LFE,Ls,Rs,HI,VIN"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_2_6p1, 8, "61(L,R,C,LFE,Ls,Rs,Cs,-)", "61/L,R,C,LFE,Ls,Rs,Cs,-"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_2_6p1, 10, "61(L,R,C,LFE,Ls,Rs,Cs,-),HI,VIN",
                  "61/L,R,C,LFE,Ls,Rs,Cs,-,HI,VIN"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_3_7p1, 8, "SDS(L,R,C,LFE,Ls,Rs,Lc,Rc)", "SDS/L,R,C,LFE,Ls,Rs,Lc,Rc"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_3_7p1, 9, "SDS(L,R,C,LFE,Ls,Rs,Lc,Rc),HI,VIN",
                  "SDS/L,R,C,LFE,Ls,Rs,Lc,Rc,HI,VIN"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_5_7p1_DS, 8, "71(L,R,C,LFE,Lss,Rss,Lrs,Rrs)",
                  "71/L,R,C,LFE,Lss,Rss,Lrs,Rrs"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_5_7p1_DS, 16, "71(L,R,C,LFE,Lss,Rss,Lrs,Rrs),HI,VIN",
                  "71/L,R,C,LFE,Lss,Rss,Lrs,Rrs,HI,VIN"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_4_WTF, 1, "WTF(CH01,CH02)", "WTF/CH01,CH02"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_4_WTF, 4, "WTF(CH01,CH02,CH03,CH04)", "WTF/CH01,CH02,CH03,CH04"},
        FixedCase{QUIRE::MDD_DCAudioChannelCfg_4_WTF, 12,
                  "WTF(CH01,CH02,CH03,CH04,CH05,CH06,CH07,CH08,CH09,CH10,CH11,CH12)",
                  "WTF/CH01,CH02,CH03,CH04,CH05,CH06,CH07,CH08,CH09,CH10,CH11,CH12"}));

TEST_F(SoundConfiguration, RegistryVersionOfTheLabelDoesNotMatter) {
  AddWave(6, QUIRE::MDD_DCAudioChannelCfg_1_5p1);
  std::array<Ferro::ui8_t, 16> label{};
  const QUIRE::UL ul = QUIRE::DefaultSMPTEDict().ul(QUIRE::MDD_DCAudioChannelCfg_1_5p1);
  std::copy_n(ul.Value(), 16, label.begin());
  label[7] ^= 0x0f;
  Header.First<WaveAudioDescriptor>()->ChannelAssignment = QUIRE::UL(label);
  EXPECT_EQ(Config(true), "51(L,R,C,LFE,Ls,Rs)");
}

TEST_F(SoundConfiguration, WildTrackFileOfAbsurdChannelCountIsCut) {
  AddWave(0xffffffff, QUIRE::MDD_DCAudioChannelCfg_4_WTF);
  const std::string label = Config(true);
  EXPECT_EQ(label.substr(label.size() - 8), ",CH1024)");
}

TEST_F(SoundConfiguration, LinkedChannelsStandByNumberAndTheGroupStaysOpen) {
  AddFiveOne();
  EXPECT_EQ(Config(true), "51(L,R,C,LFE,Ls,Rs");
  EXPECT_EQ(Config(false), "51/L,R,C,LFE,Ls,Rs");
  EXPECT_EQ(Label(true), "51(L,R,C,LFE,Ls,Rs");
  ExpectLog({});
}

TEST_F(SoundConfiguration, ChannelsOutsideTheGroupFollowTheParenthesis) {
  AddFiveOne();
  AddChannel("chHI", 7, nullptr);
  AddChannel("chVIN", 8, nullptr);
  EXPECT_EQ(Config(true), "51(L,R,C,LFE,Ls,Rs),HI,VIN");
  EXPECT_EQ(Config(false), "51/L,R,C,LFE,Ls,Rs,HI,VIN");
}

TEST_F(SoundConfiguration, ChannelsLinkedToAnotherGroupAreOutside) {
  AddFiveOne();
  AddChannel("chX", 7, nullptr).SoundfieldGroupLinkID = UUID::Random();
  EXPECT_EQ(Config(true), "51(L,R,C,LFE,Ls,Rs),X");
}

TEST_F(SoundConfiguration, ChannelOutsideTheGroupBeforeItsChannels) {
  AddWave(2, QUIRE::MDD_DCAudioChannelCfg_MCA);
  const auto& group = AddGroup("sgST");
  AddChannel("chHI", 1, nullptr);
  AddChannel("chL", 2, &group);
  AddChannel("chR", 3, &group);
  EXPECT_EQ(Config(true), "ST(),HIL,R");
  EXPECT_EQ(Config(false), "ST/HIL,R");
}

TEST_F(SoundConfiguration, GroupWithoutChannels) {
  AddWave(2, QUIRE::MDD_DCAudioChannelCfg_MCA);
  AddGroup("sg51");
  EXPECT_EQ(Config(true), "51(");
  EXPECT_EQ(Config(false), "51/");
}

TEST_F(SoundConfiguration, ChannelsOfOneNumberKeepTheirOrder) {
  AddWave(3, QUIRE::MDD_DCAudioChannelCfg_MCA);
  const auto& group = AddGroup("sgST");
  AddChannel("chB", 2, &group);
  AddChannel("chC", 2, &group);
  AddChannel("chA", 1, &group);
  EXPECT_EQ(Label(false), "ST/A,B,C");
}

TEST_F(SoundConfiguration, SubDescriptorThatIsMissingIsSkipped) {
  AddFiveOne();
  Header.First<WaveAudioDescriptor>()->SubDescriptors.push_back(UUID::Random());
  EXPECT_EQ(Config(true), "51(L,R,C,LFE,Ls,Rs");
  ExpectLog({});
}

TEST_F(SoundConfiguration, SubDescriptorOfAnotherKindIsAnError) {
  AddFiveOne();
  auto& other = Header.Add(std::make_unique<QUIRE::MXF::StereoscopicPictureSubDescriptor>());
  Header.First<WaveAudioDescriptor>()->SubDescriptors.push_back(other.InstanceUID);
  EXPECT_EQ(Config(true), "");
  ExpectLog({"Unrecognised SubDescriptor object encountered in WaveAudioDescriptor.\n"});
}

TEST_F(SoundConfiguration, NoSoundfieldGroup) {
  AddWave(1, QUIRE::MDD_DCAudioChannelCfg_MCA);
  AddChannel("chL", 1, nullptr);
  EXPECT_EQ(Config(true), "");
  ExpectLog({"No soundfield groups in MXF.\n"});
}

TEST_F(SoundConfiguration, TwoSoundfieldGroups) {
  AddFiveOne();
  AddGroup("sg71");
  EXPECT_EQ(Config(true), "");
  ExpectLog({"Too many soundfield groups in MXF.\n"});
}

TEST_F(SoundConfiguration, TagSymbolOfOneCharacterThrows) {
  AddFiveOne();
  AddChannel("c", 7, nullptr);
  EXPECT_THROW(Config(true), std::out_of_range);
  EXPECT_THROW(Label(false), std::out_of_range);
}

TEST_F(SoundConfiguration, TagSymbolOfTwoCharactersIsAnEmptyName) {
  AddWave(1, QUIRE::MDD_DCAudioChannelCfg_MCA);
  AddGroup("sg");
  EXPECT_EQ(Config(true), "(");
}

TEST_F(SoundConfiguration, ChannelOrderIsByNumber) {
  AudioChannelLabelSubDescriptor first;
  AudioChannelLabelSubDescriptor second;
  AudioChannelLabelSubDescriptor unnumbered;
  first.MCAChannelID = 1;
  second.MCAChannelID = 2;
  EXPECT_TRUE(Strata::compare_ChannelID(&first, &second));
  EXPECT_FALSE(Strata::compare_ChannelID(&second, &first));
  EXPECT_FALSE(Strata::compare_ChannelID(&first, &first));
  EXPECT_TRUE(Strata::compare_ChannelID(&unnumbered, &first));
}

TEST(SoundConfigurationDeathTest, OrderOfANullChannel) {
  const AudioChannelLabelSubDescriptor channel;
  EXPECT_DEATH(static_cast<void>(Strata::compare_ChannelID(nullptr, &channel)), "Assertion 'lhs&&rhs' failed\\.");
  EXPECT_DEATH(static_cast<void>(Strata::compare_ChannelID(&channel, nullptr)), "Assertion 'lhs&&rhs' failed\\.");
}

}  // namespace
