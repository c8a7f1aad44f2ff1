// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/JP2KSTimelineElement.h"

namespace Strata {

JP2KSTimelineElement::~JP2KSTimelineElement() = default;

ui32_t JP2KSTimelineElement::FrameBufferSize() const {
  return CurrentFrame().Left.Size();
}

const QUIRE::FrameBuffer& JP2KSTimelineElement::FrameBuffer() const {
  return CurrentFrame().Left;
}

bool JP2KSTimelineElement::HasStereoImage() const {
  return true;
}

ui32_t JP2KSTimelineElement::REyeFrameBufferSize() const {
  return CurrentFrame().Right.Size();
}

const QUIRE::FrameBuffer& JP2KSTimelineElement::REyeFrameBuffer() const {
  return CurrentFrame().Right;
}

}  // namespace Strata
