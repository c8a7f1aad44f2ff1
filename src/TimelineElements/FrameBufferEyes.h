// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Strata {

// What is one frame buffer to the reader thread is two for stereoscopic picture, named Left and Right.

template <class FrameBufferT>
concept StereoFrameBuffer = requires(FrameBufferT& buffer) {
  buffer.Left;
  buffer.Right;
};

/// Applies `operation` to the buffer, or to both eyes of a pair.
template <class FrameBufferT, class OperationT>
void ForEachEye(FrameBufferT& buffer, OperationT operation) {
  if constexpr (StereoFrameBuffer<FrameBufferT>) {
    operation(buffer.Left);
    operation(buffer.Right);
  } else {
    operation(buffer);
  }
}

/// The buffer itself, or the left eye of a pair.
template <class FrameBufferT>
const auto& LeftEye(const FrameBufferT& buffer) {
  if constexpr (StereoFrameBuffer<FrameBufferT>) {
    return buffer.Left;
  } else {
    return buffer;
  }
}

/// The buffer itself, or the right eye of a pair.
template <class FrameBufferT>
const auto& RightEye(const FrameBufferT& buffer) {
  if constexpr (StereoFrameBuffer<FrameBufferT>) {
    return buffer.Right;
  } else {
    return buffer;
  }
}

}  // namespace Strata
