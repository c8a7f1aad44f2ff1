// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/MonoTimelineTrack.h"
#include "TimelineElements/ReaderWrappers.h"

namespace Strata {

/// A track of auxiliary data (ST 429-14).
class DCDataTimelineElement final
    : public MonoTimelineTrack<DCDataReaderWrapper, QUIRE::DCData::FrameBuffer, QUIRE::DCData::DCDataDescriptor> {
 public:
  ~DCDataTimelineElement() override;
};

}  // namespace Strata
