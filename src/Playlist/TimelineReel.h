// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/h__mem_ptr.h"

#include <Strata/ITimelineTrack.h>

#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <vector>

namespace Strata {

using TrackPtr = h__mem_ptr<ITimelineTrack>;

/// One reel of the timeline with the tracks that play during it. Copying hands the tracks over (see h__mem_ptr): the
/// source keeps its numbers and loses its tracks. Used on the playlist's control thread only.
class TimelineReel {
 public:
  Ferro::UUID m_ID;                    ///< of this timeline reel, random
  Ferro::UUID m_CPL;                   ///< the composition that the reel comes from
  Ferro::UUID m_CPLReelID;             ///< the composition's own reel identifier
  ui32_t m_CPLReelNumber = 0;          ///< within its composition, from 0
  ui32_t m_PlaylistReelNumber = 0;     ///< within the timeline, from 0
  ui32_t m_Duration = 0;               ///< edit units
  ui32_t m_Offset = 0;                 ///< timeline position of the first edit unit
  bool m_StartDistinctCoding = false;  ///< first reel of a composition coded differently from the one before
  QUIRE::Rational m_EditRate;          ///< of the main picture
  TrackPtr MainPicture;
  TrackPtr MainSound;  ///< PCM, or inserted silence
  TrackPtr OnScreenText;
  std::vector<TrackPtr> OffScreenText;  ///< at most OffScreenTextChannelMax
  std::vector<TrackPtr> AuxData;
  TrackPtr AutomationEvent;

  TimelineReel() = default;
  TimelineReel(const TimelineReel& source) { Copy(source); }
  TimelineReel& operator=(const TimelineReel& source) {
    Copy(source);
    return *this;
  }
  ~TimelineReel();

  /// Takes every track of `source`, deleting its own first, and copies the numbers. Copying itself changes nothing.
  void Copy(const TimelineReel& source);

  /// One past the reel's last edit unit on the timeline.
  [[nodiscard]] ui32_t End() const { return m_Offset + m_Duration; }

  /// The track that serves a type and channel; null where there is none. `frame`, a show position, only shows in the
  /// log line for an unknown type.
  [[nodiscard]] ITimelineTrack* GetReaderForChannel(const TrackType_t& type, const ui32_t& channel,
                                                    const ui32_t& frame) const;
  /// The number of channels of a type: the tracks there are for closed text and aux data, 1 for everything else.
  [[nodiscard]] ui32_t GetChannelCountForType(TrackType_t type, ui32_t frame) const;

  /// Opens and starts the reel's tracks of one type; text needs nothing. Readiness belongs to the tracks, not to the reel.
  void MakeReady(const TrackType_t& type) const;
  /// Stops and closes the reel's tracks of one type. Returns whether a walk over reels at rest may go on: false at the
  /// first reel that was at rest already, and always for text and aux data.
  bool MakeDormant(const TrackType_t& type) const;
};

using Timeline_t = std::vector<TimelineReel>;

}  // namespace Strata
