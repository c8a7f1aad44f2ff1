// SPDX-License-Identifier: BSD-3-Clause
// Moving about the timeline, and asking what is where.
#include "Playlist/ReadySpan.h"
#include "Playlist/ReelSearch.h"
#include "Playlist/h__Playlist.h"

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>

#include <algorithm>

namespace Strata {

bool h__Playlist::MoveForward(ui32_t count) {
  return MoveToEditUnit(m_ShowPosition.Position + count);
}

bool h__Playlist::MoveBackward(ui32_t count) {
  const bool clamped = count > m_ShowPosition.Position || m_ShowPosition.Duration == 0;
  MoveToEditUnit(count > m_ShowPosition.Position ? 0 : m_ShowPosition.Position - count);
  return clamped;
}

bool h__Playlist::MoveToEditUnit(ui32_t position) {
  if (m_ShowPosition.Duration == 0) return true;  // nowhere to go
  const bool clamped = position >= m_ShowPosition.Duration;
  const ui32_t target = clamped ? m_ShowPosition.Duration - 1 : position;
  if (target != m_ShowPosition.Position) {
    m_ShowPosition.Position = target;
    AdjustCounters();
  }
  return clamped;
}

void h__Playlist::AdjustCounters() {
  const UUID previous_cpl = m_CPLPosition.AssetID;
  const UUID previous_reel = m_ReelPosition.AssetID;
  const ui32_t position = m_ShowPosition.Position;

  const TimelineReel* ParentCPLFirstReel = nullptr;
  const TimelineReel* Reel = FindReelHavingEditUnit(m_Timeline, position, &ParentCPLFirstReel);
  FERRO_ASSERT_TEXT(Reel != nullptr, "Reel");
  FERRO_ASSERT_TEXT(ParentCPLFirstReel != nullptr, "ParentCPLFirstReel");
  m_ReelPosition.Duration = Reel->m_Duration;
  m_ReelPosition.Position = position - Reel->m_Offset;
  m_ReelPosition.AssetID = Reel->m_ID;

  const auto cmi = m_CompositionInfo.find(Reel->m_CPL);
  FERRO_ASSERT_TEXT(cmi != m_CompositionInfo.end(), "cmi != m_CompositionInfo.end()");
  CompositionInfo& composition = cmi->second;
  composition.CurrentReel = Reel->m_CPLReelNumber + 1;
  m_CPLPosition.Duration = composition.Duration;
  m_CPLPosition.Position = position - ParentCPLFirstReel->m_Offset;
  m_CPLPosition.AssetID = composition.ID;

  m_CurrentReel = Reel;
  if (m_ReelPosition.AssetID != previous_reel) m_HasChanges |= ChangedComposition;
  if (m_CPLPosition.AssetID != previous_cpl) MarkCompositionChange(previous_cpl, composition);
  m_HasChanges |= ChangedPosition;
}

void h__Playlist::MarkCompositionChange(const UUID& previous, const CompositionInfo& current) {
  m_HasChanges |= ChangedComposition;
  if (!previous.HasValue()) return;  // the counters are computed for the first time
  const auto before = m_CompositionInfo.find(previous);
  FERRO_ASSERT(before != m_CompositionInfo.end());
  if (test_CompositionInfo_coding_same(before->second, current, m_ImageEssenceChangeMode)) return;
  Ferro::DefaultLogSink().Debug("Essence format has changed.\n");
  m_HasChanges |= ChangedEssenceCoding;
}

bool h__Playlist::EssenceCodingChanged() {
  const bool changed = (m_HasChanges & ChangedEssenceCoding) != 0;
  m_HasChanges &= ~ui32_t{ChangedEssenceCoding};
  return changed;
}

void h__Playlist::GetCurrentReelEssenceInfo(EssenceParams& out) const {
  FERRO_ASSERT(CurrentReel());
  const TrackPtr& sound = CurrentReel()->MainSound;
  if (sound.empty()) {
    out.AudioChannelCount = 0;
    out.ChannelAssignment.Reset();
    out.MCALabelString.clear();
  } else {
    out.AudioChannelCount = sound->ChannelCount();
    out.ChannelAssignment = sound->ChannelAssignment();
    out.MCALabelString = sound->MCALabelString();
  }

  FERRO_ASSERT(!CurrentReel()->MainPicture.empty());
  const ITimelineTrack& picture = *CurrentReel()->MainPicture;
  out.ImageSize = QUIRE::Rational(static_cast<i32_t>(picture.ImageWidth()), static_cast<i32_t>(picture.ImageHeight()));
  out.StereoscopicImage = picture.HasStereoImage();
  if (std::any_of(m_Timeline.begin(), m_Timeline.end(), [](const TimelineReel& r) { return !r.OnScreenText.empty(); }))
    out.OpenTextStatus = true;
}

const CompositionInfo& h__Playlist::GetCompositionInfoForCurrentPosition() const {
  return GetCompositionInfoForPosition(m_ShowPosition.Position);
}

const CompositionInfo& h__Playlist::GetCompositionInfoForPosition(const ui32_t& position) const {
  const TimelineReel* reel = FindReelHavingEditUnit(m_Timeline, position);
  if (reel == nullptr) {
    static const CompositionInfo none;
    return none;
  }
  const auto cmi = m_CompositionInfo.find(reel->m_CPL);
  FERRO_ASSERT_TEXT(cmi != m_CompositionInfo.end(), "cmi != m_CompositionInfo.end()");
  return cmi->second;
}

ui32_t h__Playlist::TranslateReelPosition(const ui32_t& pos) const {
  const TimelineReel* reel = FindReelHavingEditUnit(m_Timeline, pos);
  if (reel == nullptr) return 0;
  FERRO_ASSERT(pos >= reel->m_Offset);
  return pos - reel->m_Offset;
}

void h__Playlist::TranslateReelPosition(const ui32_t& show_position, ui32_t& reel_position, ui32_t& reel_number,
                                        ui32_t& reel_duration, UUID& composition_id, QUIRE::Rational& edit_rate,
                                        bool& distinct_coding) const {
  static const TimelineReel none;
  const TimelineReel* reel = FindReelHavingEditUnit(m_Timeline, show_position);
  FERRO_ASSERT_TEXT(reel == nullptr || show_position >= reel->m_Offset, "show_position >= reel->m_Offset");
  reel_position = reel == nullptr ? 0 : show_position - reel->m_Offset;
  if (reel == nullptr) reel = &none;
  reel_number = reel->m_CPLReelNumber;
  reel_duration = reel->m_Duration;
  composition_id = reel->m_CPL;
  edit_rate = reel->m_EditRate;
  distinct_coding = reel->m_StartDistinctCoding;
}

ITimelineTrack* h__Playlist::GetReaderForChannel(TrackType_t type, ui32_t channel, ui32_t frame) const {
  const TimelineReel* reel = FindReelHavingEditUnit(m_Timeline, frame);
  if (reel == nullptr) {
    Ferro::DefaultLogSink().Debug("Playlist does not contain edit unit %d\n", static_cast<int>(frame));
    return nullptr;
  }
  ITimelineTrack* track = reel->GetReaderForChannel(type, channel, frame);
  MoveReadySpan(m_Timeline, reel->m_PlaylistReelNumber, type);
  return track;
}

ui32_t h__Playlist::GetChannelCountForType(TrackType_t type, ui32_t frame) const {
  const TimelineReel* reel = FindReelHavingEditUnit(m_Timeline, frame);
  if (reel == nullptr) {
    Ferro::DefaultLogSink().Debug("Playlist does not contain edit unit %d\n", static_cast<int>(frame));
    return 0;
  }
  return reel->GetChannelCountForType(type, frame);
}

}  // namespace Strata
