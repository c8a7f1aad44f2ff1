// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/MonoTimelineTrack.h"
#include "TimelineElements/ReaderWrappers.h"

namespace Strata {

/// A track of immersive audio (ST 429-18).
class AtmosTimelineElement final
    : public MonoTimelineTrack<AtmosReaderWrapper, QUIRE::DCData::FrameBuffer, QUIRE::ATMOS::AtmosDescriptor> {
 public:
  ~AtmosTimelineElement() override;
};

}  // namespace Strata
