// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/ReaderWrappers.h"
#include "TimelineElements/TimelineTrack.h"

namespace Strata {

/// A track-file track with its frames. Of a stereoscopic one the frame is the left eye's; of any other the right eye's
/// frame is the frame itself, with the size 0.
///
/// @tparam TrackFileT  a reader wrapper, which names its FrameBufferT and DescriptorT
template <class TrackFileT>
class TrackFileElement
    : public TimelineTrack<EssenceReaderThread<TrackFileT, typename TrackFileT::FrameBufferT>, TrackFileT,
                           typename TrackFileT::FrameBufferT, typename TrackFileT::DescriptorT> {
 public:
  ui32_t FrameBufferSize() const override { return LeftEye(this->CurrentFrame()).Size(); }
  const QUIRE::FrameBuffer& FrameBuffer() const override { return LeftEye(this->CurrentFrame()); }
  bool HasStereoImage() const override { return IsStereo; }
  ui32_t REyeFrameBufferSize() const override {
    const auto& frame = this->CurrentFrame();  // asserts in every kind
    return IsStereo ? RightEye(frame).Size() : 0;
  }
  const QUIRE::FrameBuffer& REyeFrameBuffer() const override { return RightEye(this->CurrentFrame()); }

 private:
  static constexpr bool IsStereo = StereoFrameBuffer<typename TrackFileT::FrameBufferT>;
};

// Compiled once, in TrackFileElements.cpp.
extern template class TrackFileElement<JP2KReaderWrapper>;
extern template class TrackFileElement<JP2KSReaderWrapper>;
extern template class TrackFileElement<MPEGReaderWrapper>;
extern template class TrackFileElement<PCMReaderWrapper>;
extern template class TrackFileElement<DCDataReaderWrapper>;
extern template class TrackFileElement<AtmosReaderWrapper>;

/// A track of JPEG 2000 picture (ST 429-4).
class JP2KTimelineElement final : public TrackFileElement<JP2KReaderWrapper> {};
/// A track of stereoscopic JPEG 2000 picture (ST 429-10). A flat file plays in both eyes.
class JP2KSTimelineElement final : public TrackFileElement<JP2KSReaderWrapper> {};
/// A track of MPEG-2 picture (ST 381-1).
class MPEG2TimelineElement final : public TrackFileElement<MPEGReaderWrapper> {};
/// A track of PCM sound (ST 382).
class PCMTimelineElement final : public TrackFileElement<PCMReaderWrapper> {};
/// A track of auxiliary data (ST 429-14).
class DCDataTimelineElement final : public TrackFileElement<DCDataReaderWrapper> {};
/// A track of immersive audio (ST 429-18).
class AtmosTimelineElement final : public TrackFileElement<AtmosReaderWrapper> {};

}  // namespace Strata
