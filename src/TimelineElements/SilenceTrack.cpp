// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/SilenceTrack.h"

#include "TimelineElements/PCMReaderWrapper.h"
#include "TimelineElements/WholeSampleRate.h"

#include <cmath>
#include <cstring>
#include <map>

namespace Strata {

namespace {

/// Longer than any reel, so that every span of it fits.
constexpr ui32_t SilenceDuration = 1000000;

/// Bytes of one edit unit, kept to 32 bits; 0 when a rate is missing or not positive, and when no sound track could
/// deliver as much: the descriptor comes from a file, which may claim anything. A sampling rate that is no
/// multiple of the edit rate gives one sample more in each frame than the average: 1602 for 48000 at 30000/1001.
ui32_t FrameBytes(const QUIRE::PCM::AudioDescriptor& descriptor) {
  if (!descriptor.AudioSamplingRate.HasValue() || !descriptor.EditRate.HasValue()) return 0;
  const double samples = std::ceil(descriptor.AudioSamplingRate.Quotient() / descriptor.EditRate.Quotient());
  if (!(samples > 0.0) || samples >= 4294967296.0) return 0;
  const ui32_t bytes = (descriptor.QuantizationBits / 8) * descriptor.ChannelCount * static_cast<ui32_t>(samples);
  return bytes > PCMReaderWrapper::MaxFrameBytes ? 0 : bytes;
}

/// A frame of zero samples, shared by all tracks of its size, so that any number of silent reels takes the memory of
/// one. It is freed with the last of them. Empty when memory is out.
std::shared_ptr<const QUIRE::PCM::FrameBuffer> SilentFrame(ui32_t bytes) {
  static Ferro::Mutex lock;
  static std::map<ui32_t, std::weak_ptr<const QUIRE::PCM::FrameBuffer>> frames;
  const Ferro::AutoMutex guard(lock);
  std::weak_ptr<const QUIRE::PCM::FrameBuffer>& known = frames[bytes];
  if (auto frame = known.lock()) return frame;
  auto frame = std::make_shared<QUIRE::PCM::FrameBuffer>();
  if (bytes != 0 && frame->Capacity(bytes).Success()) {
    std::memset(frame->Data(), 0, bytes);
    frame->Size(bytes);
  }
  known = frame;
  return frame;
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
    : SilenceTimelineTrack(descriptor), m_SilenceFB(SilentFrame(FrameBytes(descriptor))) {}

SilenceTimelineElement::~SilenceTimelineElement() = default;

}  // namespace Strata
