// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/ReaderWrappers.h"
#include "TimelineElements/SFrameBuffer.h"
#include "TimelineElements/TimelineTrack.h"

namespace Strata {

/// A track of stereoscopic JPEG 2000 picture (ST 429-10). A flat file plays in both eyes.
class JP2KSTimelineElement final
    : public TimelineTrack<EssenceReaderThread<JP2KSReaderWrapper, SFrameBuffer>, JP2KSReaderWrapper, SFrameBuffer,
                           QUIRE::JP2K::PictureDescriptor> {
 public:
  ~JP2KSTimelineElement() override;

  ui32_t FrameBufferSize() const override;
  const QUIRE::FrameBuffer& FrameBuffer() const override;
  bool HasStereoImage() const override;
  ui32_t REyeFrameBufferSize() const override;
  const QUIRE::FrameBuffer& REyeFrameBuffer() const override;
};

}  // namespace Strata
