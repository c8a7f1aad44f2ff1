// SPDX-License-Identifier: BSD-3-Clause
#include <Lantern/SoundMixer.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Lantern {

namespace {

using namespace QUIRE::PCM;

constexpr float Half = 0.70710678F;  // of the power
constexpr float SampleScale = 1.0F / 2147483648.0F;

/// The channels of a device of 7.1; 5.1 has the first six, the surrounds where the back ones are.
enum Device : size_t { L, R, C, LFE, BL, BR, SL, SR, Count };
using Gains = std::array<float, Device::Count>;

/// What a channel feeds where there is every loudspeaker.
Gains GainsOf(ChannelRole_t role, const SoundChoice& choice) {
  const float surround = choice.SurroundGain;
  switch (role) {
    case CR_L:
      return {1};
    case CR_R:
      return {0, 1};
    case CR_C:
      return {0, 0, 1};
    case CR_LFE:
      return {0, 0, 0, choice.LFEGain};
    case CR_LS:
    case CR_LSS:
      return {0, 0, 0, 0, 0, 0, surround};
    case CR_RS:
    case CR_RSS:
      return {0, 0, 0, 0, 0, 0, 0, surround};
    case CR_LRS:
      return {0, 0, 0, 0, surround};
    case CR_RRS:
      return {0, 0, 0, 0, 0, surround};
    case CR_LC:
      return {Half, 0, Half};
    case CR_RC:
      return {0, Half, Half};
    case CR_CS:
      return {0, 0, 0, 0, Half * surround, Half * surround};
    case CR_HI:
      return {0, 0, choice.WithHearingImpaired ? 1.0F : 0.0F};
    case CR_VIN:
      return {0, 0, choice.WithNarration ? 1.0F : 0.0F};
    case CR_NONE:
    case CR_FSK_SYNC:
    case CR_MOTION:
    case CR_SIGN_LANGUAGE:
    case CR_OTHER:
      break;
  }
  return {};
}

/// Folds what the device has not into what it has.
Gains Fold(Gains gains, Speakers speakers, bool keeps_lfe) {
  if (speakers == Speakers::SevenOne) return gains;
  gains[BL] += gains[SL];
  gains[BR] += gains[SR];
  if (speakers == Speakers::FiveOne) return gains;
  const float both = Half * (gains[C] + (keeps_lfe ? gains[LFE] : 0));
  gains[L] += both + Half * gains[BL];
  gains[R] += both + Half * gains[BR];
  if (speakers == Speakers::Mono) gains[0] = Half * (gains[L] + gains[R]);
  return gains;
}

Mix MakeMixOfOne(std::span<const ChannelRole_t> roles, Speakers speakers, const SoundChoice& choice) {
  const ui32_t channel = *choice.Alone;
  Mix mix{MixMatrix(ChannelCountOf(speakers), roles.size())};
  if (channel >= roles.size()) {
    mix.Warning = MixWarning::Missing;
    return mix;
  }
  const ChannelRole_t role = roles[channel];
  if (IsSignal(role))
    mix.Warning = MixWarning::Signal;
  else if (!IsForHall(role) && role != CR_HI && role != CR_VIN)
    mix.Warning = MixWarning::Unknown;
  if (mix.Warning != MixWarning::None && !choice.AllowsSignals) return mix;
  if (speakers == Speakers::FiveOne || speakers == Speakers::SevenOne)
    mix.Matrix.Add(C, channel, 1);
  else
    for (size_t device = 0; device < ChannelCountOf(speakers); ++device) mix.Matrix.Add(device, channel, 1);
  return mix;
}

}  // namespace

size_t ChannelCountOf(Speakers speakers) {
  switch (speakers) {
    case Speakers::Mono:
      return 1;
    case Speakers::Stereo:
      return 2;
    case Speakers::FiveOne:
      return 6;
    case Speakers::SevenOne:
      return 8;
  }
  return 1;
}

Speakers SpeakersFor(size_t channels) {
  for (const Speakers speakers : {Speakers::SevenOne, Speakers::FiveOne, Speakers::Stereo})
    if (channels >= ChannelCountOf(speakers)) return speakers;
  return Speakers::Mono;
}

MixMatrix::MixMatrix(size_t device_channels, size_t track_channels)
    : m_DeviceChannels(device_channels),
      m_TrackChannels(track_channels),
      m_Gains(device_channels * track_channels, 0.0F) {}

float MixMatrix::Gain(size_t device_channel, size_t track_channel) const {
  FERRO_ASSERT(device_channel < m_DeviceChannels && track_channel < m_TrackChannels);
  return m_Gains[device_channel * m_TrackChannels + track_channel];
}

void MixMatrix::Add(size_t device_channel, size_t track_channel, float gain) {
  FERRO_ASSERT(device_channel < m_DeviceChannels && track_channel < m_TrackChannels);
  m_Gains[device_channel * m_TrackChannels + track_channel] += gain;
}

float MixMatrix::LargestSum() const {
  float largest = 0;
  for (size_t device = 0; device < m_DeviceChannels; ++device) {
    float sum = 0;
    for (size_t track = 0; track < m_TrackChannels; ++track) sum += std::abs(Gain(device, track));
    largest = std::max(largest, sum);
  }
  return largest;
}

Mix MakeMix(std::span<const ChannelRole_t> roles, Speakers speakers, const SoundChoice& choice) {
  if (choice.Alone) return MakeMixOfOne(roles, speakers, choice);
  Mix mix{MixMatrix(ChannelCountOf(speakers), roles.size())};
  for (size_t channel = 0; channel < roles.size(); ++channel) {
    const Gains gains = Fold(GainsOf(roles[channel], choice), speakers, choice.KeepsLFE);
    for (size_t device = 0; device < mix.Matrix.DeviceChannels(); ++device)
      mix.Matrix.Add(device, channel, gains[device]);
  }
  return mix;
}

SoundMixer::SoundMixer(const SampleLayout& layout, const MixMatrix& matrix)
    : m_Layout(layout), m_DeviceChannels(matrix.DeviceChannels()) {
  FERRO_ASSERT(layout.Channels == matrix.TrackChannels());
  for (size_t device = 0; device < m_DeviceChannels; ++device)
    for (size_t track = 0; track < matrix.TrackChannels(); ++track)
      if (const float gain = matrix.Gain(device, track); gain != 0)
        m_Terms.push_back({track * layout.Width, device, gain * SampleScale});
}

size_t SoundMixer::OutputSize(size_t bytes) const {
  return static_cast<size_t>(m_Layout.RowsIn(bytes)) * m_DeviceChannels;
}

void SoundMixer::MixFrame(std::span<const ui8_t> frame, std::span<float> out) const {
  FERRO_ASSERT(out.size() == OutputSize(frame.size()));
  std::ranges::fill(out, 0.0F);
  const ui8_t* row = frame.data();
  for (size_t at = 0; at < out.size(); at += m_DeviceChannels, row += m_Layout.Stride)
    for (const Term& term : m_Terms)
      out[at + term.Device] += term.Gain * static_cast<float>(LoadSample(row + term.Offset, m_Layout.Width));
}

}  // namespace Lantern
