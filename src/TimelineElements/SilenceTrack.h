// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/TextlessTrack.h"

#include <Ferro/Mutex.h>
#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/UL.h>

#include <memory>
#include <string>

namespace Strata {

/// The asset identifier of every silence track.
inline constexpr const char* SilenceAssetID = "7c4616f2-48a6-58b3-9d2a-e7547301b6f8";

/// What a silence track says of itself. It has no file, and neither a ready nor a dormant state.
class SilenceTimelineTrack : public TextlessTrack {
 public:
  ~SilenceTimelineTrack() override;

  /// Takes the parameters over from the descriptor. `filename` is ignored. @return RESULT_OK
  Result_t InitWithFilename(const std::string& filename, const ui32_t& entry_point, const ui32_t& duration) override;
  void MakeReady() override {}
  bool MakeDormant() override { return true; }

  const UUID& AssetID() const override { return m_AssetID; }
  TrackType_t TrackType() const override { return TRKT_SOUND; }
  ui32_t ChannelID() const override { return 0; }
  ui32_t EntryPoint() const override { return m_EntryPoint; }
  ui32_t Duration() const override { return m_Duration; }
  ui32_t IntrinsicDuration() const override { return m_IntrinsicDuration; }
  const QUIRE::Rational& EditRate() const override;
  const std::string& AssetName() const override { return m_AssetName; }
  const std::string& Language() const override { return m_Language; }
  void SetSpanDuration(const ui32_t&) override {}
  ui32_t GetSpanDuration() const override { return 0; }

  void ReadyFrameAtLocation(ui32_t) override {}
  void BufferLock() override {}
  void BufferUnlock() override {}

  const UUID& KeyID() const override { return m_KeyID; }
  ui32_t ImageWidth() const override { return 0; }
  ui32_t ImageHeight() const override { return 0; }
  bool HasStereoImage() const override { return false; }
  ui32_t SampleRate() const override { return m_SampleRate; }
  ui32_t SampleSize() const override { return m_SampleSize; }
  ui32_t ChannelCount() const override { return m_ChannelCount; }
  const QUIRE::UL& ChannelAssignment() const override { return m_ChannelAssignment; }
  const std::string& MCALabelString() const override { return m_MCALabelString; }

 protected:
  explicit SilenceTimelineTrack(const QUIRE::PCM::AudioDescriptor& descriptor);

 private:
  UUID m_AssetID;
  QUIRE::Rational m_EditRate;
  ui32_t m_SampleRate = 0;
  ui32_t m_SampleSize = 0;
  ui32_t m_ChannelCount = 0;
  QUIRE::UL m_ChannelAssignment;
  std::string m_MCALabelString;
  QUIRE::PCM::AudioDescriptor m_Desc;
  ui32_t m_EntryPoint = 0;
  ui32_t m_Duration = 0;
  ui32_t m_IntrinsicDuration = 0;
  std::string m_AssetName;
  std::string m_Language;
  mutable Ferro::Mutex m_Lock;
  UUID m_KeyID;
};

/// Stands in where a reel of a composition has no sound: one frame of zero samples, the same for every position and
/// shared by all silence of its size. The frame never changes, so any thread may read it at any time.
class SilenceTimelineElement final : public SilenceTimelineTrack {
 public:
  /// @param descriptor  what the silence sounds like: edit rate, sampling rate, sample size and channel count are used.
  ///                    One without rates, or whose frame would exceed what a sound track delivers (512 KiB), gives
  ///                    an empty frame.
  explicit SilenceTimelineElement(const QUIRE::PCM::AudioDescriptor& descriptor);
  ~SilenceTimelineElement() override;

  /// Always 100. The length of the silent frame is the size of the frame buffer itself.
  ui32_t FrameBufferSize() const override { return 100; }
  const QUIRE::FrameBuffer& FrameBuffer() const override { return *m_SilenceFB; }
  ui32_t REyeFrameBufferSize() const override { return 0; }
  const QUIRE::FrameBuffer& REyeFrameBuffer() const override { return *m_SilenceFB; }

 private:
  const std::shared_ptr<const QUIRE::PCM::FrameBuffer> m_SilenceFB;
};

}  // namespace Strata
