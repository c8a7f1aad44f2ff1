// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ITimelineTrack.h>

namespace Strata {

/// Holds a track's frame in place for the length of a scope, whichever way the scope is left. A bracket that is never
/// closed stops the track for good.
///
/// Waits, without limit, until one more request of ReadyFrameAtLocation is answered: only a transport with a request of
/// its own outstanding takes it.
class [[nodiscard]] FrameLock {
 public:
  /// @param track  ready, and outlives the lock
  explicit FrameLock(ITimelineTrack& track) : m_Track(track) { m_Track.BufferLock(); }
  ~FrameLock() { m_Track.BufferUnlock(); }
  FrameLock(const FrameLock&) = delete;
  FrameLock& operator=(const FrameLock&) = delete;

 private:
  ITimelineTrack& m_Track;
};

}  // namespace Strata
