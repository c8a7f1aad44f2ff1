// SPDX-License-Identifier: BSD-3-Clause
// Events, and reports to the server's handler.
#include "Playlist/ReelSearch.h"
#include "Playlist/h__Playlist.h"

#include <Strata/ITransportNotify.h>

#include <Ferro/Assert.h>

#include <algorithm>

namespace Strata {

ITransportNotify::~ITransportNotify() = default;

Result_t h__Playlist::AddEventToTimeline(const std::string& label, const std::string& scope,
                                         const ui32_t& show_position) {
  PlaylistEvent event;
  event.Label = label;
  event.LabelScope = scope;
  event.ShowPosition = std::min(show_position, m_ShowPosition.Duration - 1);
  m_EventList.push_back(event);
  SortEvents(m_EventList);
  return Ferro::RESULT_OK;
}

void h__Playlist::TransportStatusNotify(ITransportNotify* NotifyHandler, CommandType_t command,
                                        const DeviceStatus& status, bool force) {
  FERRO_ASSERT_TEXT(NotifyHandler != nullptr, "NotifyHandler");
  if (!force && (m_HasChanges & ChangedPosition) == 0) return;
  NotifyHandler->TransportStatusNotify(m_ShowPosition, m_CPLPosition, m_ReelPosition, status, command);
  m_HasChanges &= ~ui32_t{ChangedPosition};
}

void h__Playlist::PlaylistStatusNotify(ITransportNotify* NotifyHandler, bool force) {
  FERRO_ASSERT_TEXT(NotifyHandler != nullptr, "NotifyHandler");
  if (!force && (m_HasChanges & ChangedComposition) == 0) return;
  const TimelineReel* Reel = FindReelHavingEditUnit(m_Timeline, m_ShowPosition.Position);
  FERRO_ASSERT_TEXT(Reel != nullptr, "Reel");
  const auto cmi = m_CompositionInfo.find(Reel->m_CPL);
  FERRO_ASSERT_TEXT(cmi != m_CompositionInfo.end(), "cmi != m_CompositionInfo.end()");
  NotifyHandler->PlaylistStatusNotify(cmi->second);
  m_HasChanges &= ~ui32_t{ChangedComposition};
}

void h__Playlist::PlaylistEventNotify(ITransportNotify* NotifyHandler) {
  struct ByPosition {
    bool operator()(const PlaylistEvent& event, ui32_t position) const { return event.ShowPosition < position; }
    bool operator()(ui32_t position, const PlaylistEvent& event) const { return position < event.ShowPosition; }
  };
  const auto [first, end] =
      std::equal_range(m_EventList.begin(), m_EventList.end(), m_ShowPosition.Position, ByPosition());
  if (first == end) return;
  EventList reached;
  reached.assign(first, end);
  NotifyHandler->PlaylistEventNotify(reached);
}

void SetTransportExceptionWithPlaylist(TransportException& exception, const IPlaylist& playlist,
                                       const std::string& message) {
  exception.Duration = playlist.GetDuration();
  exception.Position = playlist.GetPosition();
  exception.CompositionID = playlist.GetCompositionInfoForCurrentPosition().ID;
  exception.Message = message;
}

}  // namespace Strata
