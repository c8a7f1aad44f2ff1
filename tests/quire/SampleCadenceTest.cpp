// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/SampleCadence.h>

#include <gtest/gtest.h>

namespace {

using namespace QUIRE;
using PCM::SampleCadence;

TEST(SampleCadence, RatesOfDigitalCinemaDivideEvenly) {
  const std::tuple<Rational, ui32_t, ui32_t> rates[] = {
      {{24, 1}, 2000, 4000}, {{25, 1}, 1920, 3840},   {{30, 1}, 1600, 3200},   {{48, 1}, 1000, 2000},
      {{50, 1}, 960, 1920},  {{60, 1}, 800, 1600},    {{96, 1}, 500, 1000},    {{120, 1}, 400, 800},
      {{16, 1}, 3000, 6000}, {{200, 11}, 2640, 5280}, {{240, 11}, 2200, 4400}, {{24000, 1001}, 2002, 4004}};
  for (const auto& [edit_rate, at_48k, at_96k] : rates) {
    for (const auto& [sampling_rate, samples] :
         {std::pair(SampleRate_48k, at_48k), std::pair(SampleRate_96k, at_96k)}) {
      const auto cadence = SampleCadence::Make(sampling_rate, edit_rate);
      ASSERT_TRUE(cadence);
      EXPECT_TRUE(cadence->IsConstant());
      EXPECT_EQ(cadence->SampleCount(0), samples);
      EXPECT_EQ(cadence->SampleCount(123456), samples);
      EXPECT_EQ(cadence->MaxSampleCount(), samples);
      EXPECT_EQ(cadence->FirstSample(3), 3u * samples);
    }
  }
}

TEST(SampleCadence, UnevenRatesTakeTurns) {
  const auto cadence = SampleCadence::Make(SampleRate_48k, Rational(30000, 1001));
  ASSERT_TRUE(cadence);
  EXPECT_FALSE(cadence->IsConstant());
  EXPECT_EQ(cadence->MaxSampleCount(), 1602u);
  const ui32_t counts[] = {1601, 1602, 1601, 1602, 1602, 1601, 1602};  // 8008 samples in five edit units
  for (ui32_t i = 0; i < std::size(counts); ++i) EXPECT_EQ(cadence->SampleCount(i), counts[i]) << i;
  EXPECT_EQ(cadence->FirstSample(5), 8008u);
  EXPECT_EQ(cadence->FirstSample(4000000000u), 6406400000000u);
}

TEST(SampleCadence, CountsEditUnitsForSamples) {
  const auto cadence = SampleCadence::Make(SampleRate_48k, Rational(30000, 1001));
  EXPECT_EQ(cadence->EditUnitsFor(0), 0u);
  EXPECT_EQ(cadence->EditUnitsFor(1), 1u);
  EXPECT_EQ(cadence->EditUnitsFor(1601), 1u);
  EXPECT_EQ(cadence->EditUnitsFor(1602), 2u);
  EXPECT_EQ(cadence->EditUnitsFor(8008), 5u);
  EXPECT_EQ(cadence->EditUnitsFor(8009), 6u);
  EXPECT_FALSE(cadence->EditUnitsFor(~ui64_t{0}));
}

TEST(SampleCadence, RatesWithoutSenseHaveNone) {
  EXPECT_FALSE(SampleCadence::Make(Rational(0, 1), EditRate_24));
  EXPECT_FALSE(SampleCadence::Make(Rational(-48000, 1), EditRate_24));
  EXPECT_FALSE(SampleCadence::Make(Rational(48000, 0), EditRate_24));
  EXPECT_FALSE(SampleCadence::Make(SampleRate_48k, Rational(24, 0)));
  EXPECT_FALSE(SampleCadence::Make(SampleRate_48k, Rational(0, 0)));
  EXPECT_FALSE(SampleCadence::Make(Rational(23, 1), EditRate_24));  // less than one sample
  EXPECT_FALSE(SampleCadence::Make(Rational(0x7fffffff, 1), Rational(1, 0x7ffffffe)));
}

}  // namespace
