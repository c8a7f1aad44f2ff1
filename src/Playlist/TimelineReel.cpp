// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/TimelineReel.h"

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>

namespace Strata {

namespace {

bool IsPastTheLastType(TrackType_t type) {
  return type > TRKT_AUX_DATA;
}

ITimelineTrack* TrackAt(const std::vector<TrackPtr>& tracks, ui32_t channel) {
  return channel < tracks.size() ? tracks[channel].get() : nullptr;
}

}  // namespace

// The order is the reverse of construction, and within a list from the first track on.
TimelineReel::~TimelineReel() {
  AutomationEvent.set(nullptr);
  for (TrackPtr& track : AuxData) track.set(nullptr);
  for (TrackPtr& track : OffScreenText) track.set(nullptr);
  OnScreenText.set(nullptr);
  MainSound.set(nullptr);
  MainPicture.set(nullptr);
}

void TimelineReel::Copy(const TimelineReel& source) {
  if (this == &source) return;
  MainPicture = source.MainPicture;
  MainSound = source.MainSound;
  OnScreenText = source.OnScreenText;
  AutomationEvent = source.AutomationEvent;
  OffScreenText = source.OffScreenText;
  AuxData = source.AuxData;

  m_ID = source.m_ID;
  m_CPL = source.m_CPL;
  m_CPLReelID = source.m_CPLReelID;
  m_CPLReelNumber = source.m_CPLReelNumber;
  m_PlaylistReelNumber = source.m_PlaylistReelNumber;
  m_Duration = source.m_Duration;
  m_Offset = source.m_Offset;
  m_StartDistinctCoding = source.m_StartDistinctCoding;
  m_EditRate = source.m_EditRate;
}

ITimelineTrack* TimelineReel::GetReaderForChannel(const TrackType_t& type, const ui32_t& channel,
                                                  const ui32_t& frame) const {
  switch (type) {
    case TRKT_IMAGE:
      return channel == 0 ? MainPicture.get() : nullptr;
    case TRKT_SOUND:
      return channel == 0 ? MainSound.get() : nullptr;
    case TRKT_ON_SCREEN_TEXT:
      return channel == 0 ? OnScreenText.get() : nullptr;
    case TRKT_OFF_SCREEN_TEXT:
      return TrackAt(OffScreenText, channel);
    case TRKT_AUX_DATA:
      return TrackAt(AuxData, channel);
    default:
      Ferro::DefaultLogSink().Debug("Unknown track type %d for channel %d, frame %d\n", static_cast<int>(type),
                                    static_cast<int>(channel), static_cast<int>(frame));
      return nullptr;
  }
}

ui32_t TimelineReel::GetChannelCountForType(TrackType_t type, ui32_t /*frame*/) const {
  switch (type) {
    case TRKT_OFF_SCREEN_TEXT:
      return static_cast<ui32_t>(OffScreenText.size());
    case TRKT_AUX_DATA:
      return static_cast<ui32_t>(AuxData.size());
    default:
      return 1;
  }
}

void TimelineReel::MakeReady(const TrackType_t& type) const {
  FERRO_ASSERT_TEXT(!IsPastTheLastType(type), "type!=type");
  if (type == TRKT_IMAGE && !MainPicture.empty()) MainPicture->MakeReady();
  if (type == TRKT_SOUND && !MainSound.empty()) MainSound->MakeReady();
  if (type == TRKT_AUX_DATA)
    for (const TrackPtr& track : AuxData) track->MakeReady();
}

bool TimelineReel::MakeDormant(const TrackType_t& type) const {
  FERRO_ASSERT_TEXT(!IsPastTheLastType(type), "type!=type");
  switch (type) {
    case TRKT_IMAGE:
      FERRO_ASSERT(!MainPicture.empty());
      return MainPicture->MakeDormant();
    case TRKT_SOUND:
      return !MainSound.empty() && MainSound->MakeDormant();
    case TRKT_AUX_DATA:
      for (const TrackPtr& track : AuxData) track->MakeDormant();
      return false;
    default:
      return false;  // text holds its whole resource and is never put to rest
  }
}

}  // namespace Strata
