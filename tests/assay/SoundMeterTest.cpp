// SPDX-License-Identifier: BSD-3-Clause
#include "frames/SoundMeter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using Assay::SoundMeter;
using Assay::ui32_t;
using Assay::ui64_t;
using Assay::ui8_t;
using QUIRE::PCM::SampleLayout;

constexpr int Top = 8'388'607;
constexpr int Bottom = -8'388'608;

QUIRE::PCM::AudioDescriptor Sound(ui32_t channels, ui32_t bits, ui32_t align) {
  QUIRE::PCM::AudioDescriptor sound;
  sound.ChannelCount = channels;
  sound.QuantizationBits = bits;
  sound.BlockAlign = align;
  return sound;
}

SoundMeter MeterOf(ui32_t channels) {
  return SoundMeter(*SampleLayout::Of(Sound(channels, 24, channels * 3)));
}

/// Samples of 24 bits, exactly as much memory as they take.
std::vector<ui8_t> Bytes(const std::vector<int>& samples) {
  std::vector<ui8_t> bytes;
  for (const int sample : samples)
    for (const int shift : {0, 8, 16}) bytes.push_back(static_cast<ui8_t>(sample >> shift));
  return bytes;
}

/// One channel after these frames.
SoundMeter::Level LevelOf(const std::vector<std::vector<int>>& frames) {
  SoundMeter meter = MeterOf(1);
  for (size_t i = 0; i < frames.size(); ++i) meter.Add(i, Bytes(frames[i]));
  return meter.Levels().front();
}

TEST(SoundMeter, PeaksAreMagnitudes) {
  EXPECT_TRUE(LevelOf({{0, 0, 0}}).IsSilent());
  EXPECT_EQ(LevelOf({{0}}).Decibels(), -std::numeric_limits<double>::infinity());
  EXPECT_FALSE(LevelOf({{0, -1}}).IsSilent());
  EXPECT_EQ(LevelOf({{1, -3}, {2}}).Peak, 3U << 8);
  EXPECT_EQ(LevelOf({{Bottom}}).Decibels(), 0);
  EXPECT_NEAR(LevelOf({{Top}}).Decibels(), 20 * std::log10(8388607.0 / 8388608.0), 1e-12);
  EXPECT_NEAR(LevelOf({{1 << 22}}).Decibels(), -6.0206, 1e-4);
  EXPECT_NEAR(LevelOf({{1}}).Decibels(), -138.474, 1e-3);
}

TEST(SoundMeter, EachChannelHasItsPeakWhateverTheirNumber) {
  std::mt19937 random(1);
  for (ui32_t channels = 1; channels <= 20; ++channels)
    for (const size_t rows : {1U, 2U, 50U}) {
      std::vector<int> samples(channels * rows);
      std::vector<ui64_t> expected(channels);
      for (size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<int>(random() % 16'777'216) - 8'388'608;
        expected[i % channels] = std::max<ui64_t>(expected[i % channels], ui64_t(std::abs(samples[i])) << 8);
      }
      SoundMeter meter = MeterOf(channels);
      meter.Add(0, Bytes(samples));
      for (ui32_t c = 0; c < channels; ++c)
        EXPECT_EQ(meter.Levels()[c].Peak, expected[c]) << c << " of " << channels << ", " << rows << " rows";
    }
}

TEST(SoundMeter, ThreeSamplesInARowAtFullScaleAreClipping) {
  EXPECT_EQ(LevelOf({{Top, Top, 0, Top, Top}}).ClippedRuns, 0U);
  EXPECT_EQ(LevelOf({{Top, Top, Top - 1, Top}}).ClippedRuns, 0U);
  EXPECT_EQ(LevelOf({{Bottom + 1, Bottom + 1, Bottom + 1}}).ClippedRuns, 0U);
  EXPECT_EQ(LevelOf({{Top, Top, Bottom, Bottom}}).ClippedRuns, 0U) << "not at the same value";
  EXPECT_EQ(LevelOf({{0, Top, Top, Top}}).ClippedRuns, 1U);
  EXPECT_EQ(LevelOf({{Bottom, Bottom, Bottom}}).ClippedRuns, 1U);
  const SoundMeter::Level level =
      LevelOf({{0}, {Top, Top, Top, Top, 0, Bottom, Bottom, Bottom, Top, Top, Top, Top, Top}});
  EXPECT_EQ(level.ClippedRuns, 3U);
  EXPECT_EQ(level.LongestRun, 5U);
  EXPECT_EQ(level.FirstClipped, 1U);
}

TEST(SoundMeter, RunsGoOnFromFrameToFrame) {
  const SoundMeter::Level level = LevelOf({{0, Top}, {Top}, {Top, Top, 0}, {Top, Top, 0}});
  EXPECT_EQ(level.ClippedRuns, 1U);
  EXPECT_EQ(level.LongestRun, 4U);
  EXPECT_EQ(level.FirstClipped, 0U) << "where it begins";
  EXPECT_EQ(LevelOf({{0, Top, Top}, {0, Top}, {Top, 0}}).ClippedRuns, 0U);
  EXPECT_EQ(LevelOf({{Top, Top}, {}, {Top}}).ClippedRuns, 1U) << "an empty frame ends nothing";
  SoundMeter gap = MeterOf(1);
  gap.Add(0, Bytes({0, Top, Top}));
  gap.Add(2, Bytes({Top, 0}));
  EXPECT_EQ(gap.Levels().front().ClippedRuns, 0U) << "a frame that could not be read is not full scale";
}

TEST(SoundMeter, ClippingIsOfOneChannel) {
  SoundMeter meter = MeterOf(2);
  meter.Add(0, Bytes({Top, 5, Top, Top, Top, 5, 0, Top}));
  EXPECT_EQ(meter.Levels()[0].ClippedRuns, 1U);
  EXPECT_EQ(meter.Levels()[1].ClippedRuns, 0U);
}

TEST(SoundMeter, SamplesOfOtherWidths) {
  SoundMeter sixteen(*SampleLayout::Of(Sound(2, 16, 4)));
  sixteen.Add(0, std::vector<ui8_t>{0xff, 0x7f, 0x00, 0xc0, 0xff, 0x7f, 0, 0, 0xff, 0x7f, 0, 0});
  EXPECT_EQ(sixteen.Levels()[0].ClippedRuns, 1U);
  EXPECT_NEAR(sixteen.Levels()[1].Decibels(), -6.0206, 1e-4);
  // 20 bits at the top of three bytes.
  SoundMeter twenty(*SampleLayout::Of(Sound(1, 20, 3)));
  twenty.Add(0, std::vector<ui8_t>{0xf0, 0xff, 0x7f, 0xf0, 0xff, 0x7f, 0xf0, 0xff, 0x7f});
  EXPECT_EQ(twenty.Levels()[0].ClippedRuns, 1U);
  // 24 bits at the top of four bytes.
  SoundMeter wide(*SampleLayout::Of(Sound(1, 24, 4)));
  wide.Add(0, std::vector<ui8_t>{0, 0, 0, 0x40});
  EXPECT_NEAR(wide.Levels()[0].Decibels(), -6.0206, 1e-4);
  SoundMeter eight(*SampleLayout::Of(Sound(1, 8, 1)));
  eight.Add(0, std::vector<ui8_t>{0x80});
  EXPECT_EQ(eight.Levels()[0].Decibels(), 0);
  SoundMeter most(*SampleLayout::Of(Sound(1, 32, 4)));
  most.Add(0, std::vector<ui8_t>{0xff, 0xff, 0xff, 0x7f, 0xff, 0xff, 0xff, 0x7f, 0xff, 0xff, 0xff, 0x7f});
  EXPECT_EQ(most.Levels()[0].ClippedRuns, 1U);
}

TEST(SoundMeter, AnAlignmentBeyondTheChannelsIsAGap) {
  const auto layout = SampleLayout::Of(Sound(2, 24, 7));
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->Width, 3U);
  EXPECT_EQ(layout->Stride, 7U);
  SoundMeter meter(*layout);
  meter.Add(0, std::vector<ui8_t>{0, 0, 1, 0, 0, 2, 0x7f, 0, 0, 3, 0, 0, 4});
  EXPECT_EQ(meter.Levels()[0].Peak, 3U << 24);
  EXPECT_EQ(meter.Levels()[1].Peak, 4U << 24);
}

TEST(SoundMeter, AnAlignmentThatIsTooSmallIsNotBelieved) {
  for (const ui32_t align : {0U, 1U, 4U, 5U}) {
    const auto layout = SampleLayout::Of(Sound(2, 24, align));
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->Stride, 6U) << align;
  }
}

TEST(SoundMeter, ASampleThatIsCutIsLeftOut) {
  SoundMeter meter = MeterOf(2);
  std::vector<ui8_t> bytes = Bytes({1, 2, 3, 100});
  bytes.pop_back();
  bytes.shrink_to_fit();
  meter.Add(0, bytes);
  EXPECT_EQ(meter.Levels()[0].Peak, 1U << 8);
  EXPECT_EQ(meter.Levels()[1].Peak, 2U << 8);
  meter.Add(1, {});
  EXPECT_EQ(meter.Levels()[1].Peak, 2U << 8);
}

TEST(SoundMeter, HostileHeadersHaveNoLayout) {
  EXPECT_FALSE(SampleLayout::Of(Sound(0, 24, 0)));
  EXPECT_FALSE(SampleLayout::Of(Sound(1025, 24, 0)));
  EXPECT_FALSE(SampleLayout::Of(Sound(0xffffffff, 24, 0xffffffff)));
  for (const ui32_t bits : {0U, 7U, 33U, 0xffffffffU}) EXPECT_FALSE(SampleLayout::Of(Sound(6, bits, 18))) << bits;
  const auto layout = SampleLayout::Of(Sound(1024, 32, 0xffffffff));
  ASSERT_TRUE(layout);
  SoundMeter meter(*layout);
  meter.Add(0, std::vector<ui8_t>(4096, 0x11));
  EXPECT_FALSE(meter.Levels().back().IsSilent());
  meter.Add(1, std::vector<ui8_t>(4095, 0x7f));
  EXPECT_EQ(meter.Levels().back().Peak, 0x11111111U);
}

}  // namespace
