// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/TimelineTrack.h"

namespace Strata {

/// A track-file track whose edit unit is one frame: all kinds but stereoscopic picture.
template <class TrackFileT, class FrameBufferT, class DescriptorT>
class MonoTimelineTrack
    : public TimelineTrack<EssenceReaderThread<TrackFileT, FrameBufferT>, TrackFileT, FrameBufferT, DescriptorT> {
 public:
  ui32_t FrameBufferSize() const override { return this->CurrentFrame().Size(); }
  const QUIRE::FrameBuffer& FrameBuffer() const override { return this->CurrentFrame(); }
  bool HasStereoImage() const override { return false; }
  ui32_t REyeFrameBufferSize() const override {
    static_cast<void>(this->CurrentFrame());  // asserts, as the other frame operations do
    return 0;
  }
  const QUIRE::FrameBuffer& REyeFrameBuffer() const override { return FrameBuffer(); }
};

}  // namespace Strata
