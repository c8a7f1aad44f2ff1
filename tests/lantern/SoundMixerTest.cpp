// SPDX-License-Identifier: BSD-3-Clause
#include <Lantern/SoundMixer.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Lantern;
using namespace QUIRE::PCM;

constexpr float Half = 0.70710678F;

using Roles = std::vector<ChannelRole_t>;
const Roles FiveOne = {CR_L, CR_R, CR_C, CR_LFE, CR_LS, CR_RS};
const Roles SevenOne = {CR_L, CR_R, CR_C, CR_LFE, CR_LSS, CR_RSS, CR_LRS, CR_RRS};

/// What a channel of that role gives to each channel of the device.
std::vector<float> GainsOf(ChannelRole_t role, Speakers speakers, const SoundChoice& choice = {}) {
  const Mix mix = MakeMix(Roles{role}, speakers, choice);
  std::vector<float> gains;
  for (size_t device = 0; device < mix.Matrix.DeviceChannels(); ++device) gains.push_back(mix.Matrix.Gain(device, 0));
  return gains;
}

void ExpectGains(ChannelRole_t role, Speakers speakers, const std::vector<float>& expected,
                 const SoundChoice& choice = {}) {
  const std::vector<float> gains = GainsOf(role, speakers, choice);
  ASSERT_EQ(gains.size(), expected.size());
  for (size_t i = 0; i < gains.size(); ++i)
    EXPECT_NEAR(gains[i], expected[i], 1e-6) << ChannelRoleSymbol(role) << " on device channel " << i;
}

TEST(SoundMixer, ADeviceTakesTheMostThatFits) {
  const std::pair<size_t, Speakers> cases[] = {{0, Speakers::Mono},     {1, Speakers::Mono},     {2, Speakers::Stereo},
                                               {5, Speakers::Stereo},   {6, Speakers::FiveOne},  {7, Speakers::FiveOne},
                                               {8, Speakers::SevenOne}, {32, Speakers::SevenOne}};
  for (const auto& [channels, speakers] : cases) EXPECT_EQ(SpeakersFor(channels), speakers) << channels;
  for (const size_t channels : {1U, 2U, 6U, 8U}) EXPECT_EQ(ChannelCountOf(SpeakersFor(channels)), channels);
}

TEST(SoundMixer, FiveOneGoesThroughAsItIs) {
  const Mix mix = MakeMix(FiveOne, Speakers::FiveOne);
  for (size_t device = 0; device < 6; ++device)
    for (size_t track = 0; track < 6; ++track)
      EXPECT_EQ(mix.Matrix.Gain(device, track), device == track ? 1.0F : 0.0F) << device << ' ' << track;
  EXPECT_EQ(mix.Warning, MixWarning::None);
}

TEST(SoundMixer, SevenOneHasItsBackChannelsBeforeTheSides) {
  ExpectGains(CR_LSS, Speakers::SevenOne, {0, 0, 0, 0, 0, 0, 1, 0});
  ExpectGains(CR_RSS, Speakers::SevenOne, {0, 0, 0, 0, 0, 0, 0, 1});
  ExpectGains(CR_LRS, Speakers::SevenOne, {0, 0, 0, 0, 1, 0, 0, 0});
  ExpectGains(CR_RRS, Speakers::SevenOne, {0, 0, 0, 0, 0, 1, 0, 0});
  ExpectGains(CR_LS, Speakers::SevenOne, {0, 0, 0, 0, 0, 0, 1, 0});
  ExpectGains(CR_RS, Speakers::SevenOne, {0, 0, 0, 0, 0, 0, 0, 1});
  ExpectGains(CR_CS, Speakers::SevenOne, {0, 0, 0, 0, Half, Half, 0, 0});
}

TEST(SoundMixer, MoreSurroundsAndScreenChannelsAreFoldedIntoFiveOne) {
  ExpectGains(CR_LSS, Speakers::FiveOne, {0, 0, 0, 0, 1, 0});
  ExpectGains(CR_RRS, Speakers::FiveOne, {0, 0, 0, 0, 0, 1});
  ExpectGains(CR_CS, Speakers::FiveOne, {0, 0, 0, 0, Half, Half});
  ExpectGains(CR_LC, Speakers::FiveOne, {Half, 0, Half, 0, 0, 0});
  ExpectGains(CR_RC, Speakers::FiveOne, {0, Half, Half, 0, 0, 0});
}

TEST(SoundMixer, StereoHasCenterAndSurroundsAtThreeDecibelsLess) {
  ExpectGains(CR_L, Speakers::Stereo, {1, 0});
  ExpectGains(CR_R, Speakers::Stereo, {0, 1});
  ExpectGains(CR_C, Speakers::Stereo, {Half, Half});
  ExpectGains(CR_LFE, Speakers::Stereo, {0, 0});
  ExpectGains(CR_LS, Speakers::Stereo, {Half, 0});
  ExpectGains(CR_RS, Speakers::Stereo, {0, Half});
  ExpectGains(CR_LSS, Speakers::Stereo, {Half, 0});
  ExpectGains(CR_LRS, Speakers::Stereo, {Half, 0});
  ExpectGains(CR_CS, Speakers::Stereo, {0.5F, 0.5F});
  ExpectGains(CR_LC, Speakers::Stereo, {Half + 0.5F, 0.5F});
}

TEST(SoundMixer, MonoIsBothSidesOfStereo) {
  ExpectGains(CR_L, Speakers::Mono, {Half});
  ExpectGains(CR_C, Speakers::Mono, {1});
  ExpectGains(CR_RS, Speakers::Mono, {0.5F});
  ExpectGains(CR_LFE, Speakers::Mono, {0});
}

TEST(SoundMixer, SumsTellHowMuchRoomTheyNeed) {
  EXPECT_NEAR(MakeMix(FiveOne, Speakers::Stereo).Matrix.LargestSum(), 2.4142, 1e-4);
  EXPECT_NEAR(MakeMix(SevenOne, Speakers::Stereo).Matrix.LargestSum(), 3.1213, 1e-4);
  EXPECT_EQ(MakeMix(FiveOne, Speakers::SevenOne).Matrix.LargestSum(), 1);
  EXPECT_EQ(MakeMix({}, Speakers::Stereo).Matrix.LargestSum(), 0);
}

TEST(SoundMixer, BalanceOfACinemaIsAChoice) {
  SoundChoice choice;
  choice.SurroundGain = 0.7079F;
  choice.LFEGain = 3.1622777F;
  ExpectGains(CR_LS, Speakers::FiveOne, {0, 0, 0, 0, 0.7079F, 0}, choice);
  ExpectGains(CR_LS, Speakers::Stereo, {0.50056F, 0}, choice);
  ExpectGains(CR_LFE, Speakers::FiveOne, {0, 0, 0, 3.1622777F, 0, 0}, choice);
  ExpectGains(CR_LFE, Speakers::Stereo, {0, 0}, choice);
  choice.KeepsLFE = true;
  ExpectGains(CR_LFE, Speakers::Stereo, {2.236068F, 2.236068F}, choice);
  ExpectGains(CR_LFE, Speakers::FiveOne, {0, 0, 0, 3.1622777F, 0, 0}, choice);
}

TEST(SoundMixer, ChannelsForTheImpairedAreHeardWhenAskedFor) {
  SoundChoice choice;
  ExpectGains(CR_HI, Speakers::FiveOne, {0, 0, 0, 0, 0, 0}, choice);
  ExpectGains(CR_VIN, Speakers::Stereo, {0, 0}, choice);
  choice.WithHearingImpaired = true;
  ExpectGains(CR_HI, Speakers::FiveOne, {0, 0, 1, 0, 0, 0}, choice);
  ExpectGains(CR_VIN, Speakers::Stereo, {0, 0}, choice);
  choice.WithNarration = true;
  ExpectGains(CR_VIN, Speakers::Stereo, {Half, Half}, choice);
}

TEST(SoundMixer, SignalsAreNeverMixed) {
  SoundChoice choice;
  choice.WithHearingImpaired = choice.WithNarration = choice.KeepsLFE = choice.AllowsSignals = true;
  for (const ChannelRole_t role : {CR_FSK_SYNC, CR_MOTION, CR_SIGN_LANGUAGE, CR_OTHER, CR_NONE})
    for (const Speakers speakers : {Speakers::Mono, Speakers::Stereo, Speakers::FiveOne, Speakers::SevenOne}) {
      EXPECT_EQ(GainsOf(role, speakers, choice), std::vector<float>(ChannelCountOf(speakers))) << role;
      EXPECT_EQ(MakeMix(Roles{role}, speakers, choice).Warning, MixWarning::None);
    }
}

TEST(SoundMixer, OneChannelAloneIsHeardAtItsLevel) {
  const auto alone = [](ui32_t channel, Speakers speakers) {
    SoundChoice choice;
    choice.Alone = channel;
    return MakeMix(Roles{CR_L, CR_LS, CR_LFE, CR_HI}, speakers, choice);
  };
  for (const ui32_t channel : {0U, 1U, 2U, 3U}) {
    const Mix stereo = alone(channel, Speakers::Stereo);
    const Mix more = alone(channel, Speakers::FiveOne);
    for (ui32_t track = 0; track < 4; ++track) {
      const float expected = track == channel ? 1.0F : 0.0F;
      EXPECT_EQ(alone(channel, Speakers::Mono).Matrix.Gain(0, track), expected);
      EXPECT_EQ(stereo.Matrix.Gain(0, track), expected);
      EXPECT_EQ(stereo.Matrix.Gain(1, track), expected);
      for (size_t device = 0; device < 6; ++device)
        EXPECT_EQ(more.Matrix.Gain(device, track), device == 2 ? expected : 0.0F);
    }
    EXPECT_EQ(stereo.Warning, MixWarning::None);
  }
  EXPECT_EQ(alone(4, Speakers::Stereo).Warning, MixWarning::Missing);
  EXPECT_EQ(alone(4, Speakers::Stereo).Matrix.LargestSum(), 0);
}

TEST(SoundMixer, ASignalAloneIsWarnedOfAndSilentUntilItIsAllowed) {
  const std::pair<ChannelRole_t, MixWarning> cases[] = {{CR_FSK_SYNC, MixWarning::Signal},
                                                        {CR_MOTION, MixWarning::Signal},
                                                        {CR_SIGN_LANGUAGE, MixWarning::Signal},
                                                        {CR_OTHER, MixWarning::Unknown},
                                                        {CR_NONE, MixWarning::Unknown}};
  for (const auto& [role, warning] : cases) {
    SoundChoice choice;
    choice.Alone = 0;
    EXPECT_EQ(MakeMix(Roles{role}, Speakers::Stereo, choice).Warning, warning) << role;
    EXPECT_EQ(MakeMix(Roles{role}, Speakers::Stereo, choice).Matrix.LargestSum(), 0) << role;
    choice.AllowsSignals = true;
    EXPECT_EQ(MakeMix(Roles{role}, Speakers::Stereo, choice).Warning, warning) << role;
    EXPECT_EQ(MakeMix(Roles{role}, Speakers::Stereo, choice).Matrix.LargestSum(), 1) << role;
  }
}

SampleLayout LayoutOf(ui32_t channels, ui32_t bits, ui32_t align) {
  AudioDescriptor sound;
  sound.ChannelCount = channels;
  sound.QuantizationBits = bits;
  sound.BlockAlign = align;
  return *SampleLayout::Of(sound);
}

std::vector<float> MixOf(const SampleLayout& layout, const Mix& mix, const std::vector<ui8_t>& frame) {
  const SoundMixer mixer(layout, mix.Matrix);
  std::vector<float> out(mixer.OutputSize(frame.size()), 99.0F);
  mixer.MixFrame(frame, out);
  return out;
}

TEST(SoundMixer, SamplesOf24BitsBecomeExactFloats) {
  const Mix mix = MakeMix(Roles{CR_L, CR_R}, Speakers::Stereo);
  const std::vector<ui8_t> frame = {0xff, 0xff, 0x7f, 0x00, 0x00, 0x80, 0x01, 0x00, 0x00,
                                    0xff, 0xff, 0xff, 0x00, 0x00, 0x40, 0x00, 0x00, 0x00};
  EXPECT_EQ(MixOf(LayoutOf(2, 24, 6), mix, frame),
            (std::vector<float>{8388607.0F / 8388608.0F, -1, 1.0F / 8388608.0F, -1.0F / 8388608.0F, 0.5F, 0}));
}

TEST(SoundMixer, SamplesOf16BitsAndWithGapsAreTaken) {
  const Mix mix = MakeMix(Roles{CR_L, CR_R}, Speakers::Stereo);
  EXPECT_EQ(MixOf(LayoutOf(2, 16, 4), mix, {0x00, 0x40, 0x00, 0x80}), (std::vector<float>{0.5F, -1}));
  EXPECT_EQ(MixOf(LayoutOf(2, 24, 7), mix, {0, 0, 0x40, 0, 0, 0x20, 0x7f, 0, 0, 0x10, 0, 0, 0x08}),
            (std::vector<float>{0.5F, 0.25F, 0.125F, 0.0625F}));
}

TEST(SoundMixer, ChannelsAreSummedAndNotClipped) {
  const Mix mix = MakeMix(FiveOne, Speakers::Stereo);
  std::vector<ui8_t> frame;
  for (int channel = 0; channel < 6; ++channel) frame.insert(frame.end(), {0x00, 0x00, 0x40});
  const std::vector<float> out = MixOf(LayoutOf(6, 24, 18), mix, frame);
  ASSERT_EQ(out.size(), 2U);
  for (const float sample : out) EXPECT_NEAR(sample, 0.5 * 2.41421, 1e-5);
  std::vector<ui8_t> loud;
  for (int channel = 0; channel < 6; ++channel) loud.insert(loud.end(), {0x00, 0x00, 0x80});
  EXPECT_NEAR(MixOf(LayoutOf(6, 24, 18), mix, loud)[0], -2.41421, 1e-5);
}

TEST(SoundMixer, ASampleThatIsCutIsLeftOut) {
  const Mix mix = MakeMix(Roles{CR_L, CR_R}, Speakers::Stereo);
  EXPECT_EQ(MixOf(LayoutOf(2, 24, 6), mix, {0, 0, 0x40, 0, 0, 0x40, 0, 0, 0x40, 0, 0}).size(), 2U);
  EXPECT_TRUE(MixOf(LayoutOf(2, 24, 6), mix, {0, 0, 0x40, 0, 0}).empty());
  EXPECT_TRUE(MixOf(LayoutOf(2, 24, 6), mix, {}).empty());
}

}  // namespace
