// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/MonoTimelineTrack.h"
#include "TimelineElements/ReaderWrappers.h"

namespace Strata {

/// A track of JPEG 2000 picture (ST 429-4).
class JP2KTimelineElement final
    : public MonoTimelineTrack<JP2KReaderWrapper, QUIRE::JP2K::FrameBuffer, QUIRE::JP2K::PictureDescriptor> {
 public:
  ~JP2KTimelineElement() override;
};

}  // namespace Strata
