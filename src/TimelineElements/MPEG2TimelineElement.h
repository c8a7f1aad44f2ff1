// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/MonoTimelineTrack.h"
#include "TimelineElements/ReaderWrappers.h"

namespace Strata {

/// A track of MPEG-2 picture (ST 381-1).
class MPEG2TimelineElement final
    : public MonoTimelineTrack<MPEGReaderWrapper, QUIRE::MPEG2::FrameBuffer, QUIRE::MPEG2::VideoDescriptor> {
 public:
  ~MPEG2TimelineElement() override;
};

}  // namespace Strata
