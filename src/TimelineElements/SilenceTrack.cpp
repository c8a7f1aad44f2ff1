// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/SilenceTrack.h"

#include "TimelineElements/WholeSampleRate.h"

#include <cmath>
#include <cstring>

namespace Strata {

namespace {

/// Longer than any reel, so that every span of it fits.
constexpr ui32_t SilenceDuration = 1000000;

/// The descriptor comes from a track file, which may claim anything; far above what sound can be (16 channels of 96
/// kHz, 24 bits and 1 edit unit per second take 4.6 MB).
constexpr ui32_t MaxFrameBytes = 64 * 1024 * 1024;

/// Bytes of one edit unit, kept to 32 bits; 0 when a rate is missing or not positive. A sampling rate that is no
/// multiple of the edit rate gives one sample more in each frame than the average: 1602 for 48000 at 30000/1001.
ui32_t FrameBytes(const QUIRE::PCM::AudioDescriptor& descriptor) {
  if (!descriptor.AudioSamplingRate.HasValue() || !descriptor.EditRate.HasValue()) return 0;
  const double samples = std::ceil(descriptor.AudioSamplingRate.Quotient() / descriptor.EditRate.Quotient());
  if (!(samples > 0.0) || samples >= 4294967296.0) return 0;
  return (descriptor.QuantizationBits / 8) * descriptor.ChannelCount * static_cast<ui32_t>(samples);
}

}  // namespace

SilenceTimelineTrack::SilenceTimelineTrack(const QUIRE::PCM::AudioDescriptor& descriptor)
    : m_AssetID(UUID::FromHex(SilenceAssetID).value()), m_Desc(descriptor) {}

SilenceTimelineTrack::~SilenceTimelineTrack() = default;

Result_t SilenceTimelineTrack::InitWithFilename(const std::string&, const ui32_t& entry_point, const ui32_t& duration) {
  m_EditRate = m_Desc.EditRate;
  m_SampleRate = WholeSampleRate(m_Desc.AudioSamplingRate);
  m_SampleSize = m_Desc.QuantizationBits;
  m_ChannelCount = m_Desc.ChannelCount;
  m_IntrinsicDuration = SilenceDuration;
  m_EntryPoint = entry_point;
  m_Duration = duration;
  return Ferro::RESULT_OK;
}

const QUIRE::Rational& SilenceTimelineTrack::EditRate() const {
  Ferro::AutoMutex lock(m_Lock);
  return m_EditRate;
}

SilenceTimelineElement::SilenceTimelineElement(const QUIRE::PCM::AudioDescriptor& descriptor)
    : SilenceTimelineTrack(descriptor) {
  const ui32_t bytes = FrameBytes(descriptor);
  if (bytes == 0 || bytes > MaxFrameBytes || m_SilenceFB.Capacity(bytes).Failure()) return;
  std::memset(m_SilenceFB.Data(), 0, bytes);
  m_SilenceFB.Size(bytes);
}

SilenceTimelineElement::~SilenceTimelineElement() = default;

}  // namespace Strata
