// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/CommandType.h>
#include <Strata/CompositionInfo.h>
#include <Strata/DeviceStatus.h>
#include <Strata/Export.h>
#include <Strata/PlaylistEvent.h>
#include <Strata/TimelinePosition.h>
#include <Strata/TransportException.h>

#include <string>

namespace Strata {

class IPlaylist;

/// Hears of what playback does. Implemented by the server; called on the thread that runs the transport. The order of
/// the virtual operations is fixed. Arguments are valid during the call only.
class STRATA_API ITransportNotify {
 public:
  virtual ~ITransportNotify();
  /// Where the show, the composition and the reel stand, how the device does, and what the transport is about.
  virtual void TransportStatusNotify(const TimelinePosition& show, const TimelinePosition& cpl,
                                     const TimelinePosition& reel, const DeviceStatus& status,
                                     const CommandType_t& command) = 0;
  /// Playback went wrong.
  virtual void TransportExceptionNotify(const TransportException& exception) = 0;
  /// Another composition or another of its reels plays.
  virtual void PlaylistStatusNotify(const CompositionInfo& composition) = 0;
  /// Playback stands on the position of these events, in the order in which they were added.
  virtual void PlaylistEventNotify(const Ferro::ArchivableList<PlaylistEvent>& events) = 0;

 protected:
  ITransportNotify() = default;
  ITransportNotify(const ITransportNotify&) = default;
  ITransportNotify& operator=(const ITransportNotify&) = default;
};

/// Fills `exception` with the playlist's duration, position, current composition, and the message.
STRATA_API void SetTransportExceptionWithPlaylist(TransportException& exception, const IPlaylist& playlist,
                                                  const std::string& message);

}  // namespace Strata
