// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/MonoTimelineTrack.h"
#include "TimelineElements/ReaderWrappers.h"

namespace Strata {

/// A track of PCM sound (ST 382).
class PCMTimelineElement final
    : public MonoTimelineTrack<PCMReaderWrapper, QUIRE::PCM::FrameBuffer, QUIRE::PCM::AudioDescriptor> {
 public:
  ~PCMTimelineElement() override;
};

}  // namespace Strata
