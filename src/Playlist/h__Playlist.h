// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/CompositionCoding.h"
#include "Playlist/CompositionLoading.h"
#include "Playlist/TimelineReel.h"
#include "Playlist/TimelineSummary.h"

#include <Strata/IPlaylist.h>
#include <Strata/TimelinePosition.h>

#include <string>

namespace Strata {

/// The playlist engine. The timeline's own work lies in the capabilities (CompositionLoading, ShowExpansion,
/// TimelineSummary, ReelSearch, ReadySpan, TimelineExport), whose headers say what they need of it; this class holds the
/// state and connects them, one source file per group of operations.
class h__Playlist final : public IPlaylist {
 public:
  using ImageEssenceChangeMode_t = Strata::ImageEssenceChangeMode_t;

  h__Playlist();
  ~h__Playlist() override;
  h__Playlist(const h__Playlist&) = delete;
  h__Playlist& operator=(const h__Playlist&) = delete;

  // h__PlaylistLoading.cpp
  Result_t InitWithUUIDList(const UUIDList& ids, const Cairn::IAssetLookup& lookup,
                            const Cairn::PListDict& options) override;
  Result_t InitWithPlaylist(const std::string& document, const Cairn::IAssetLookup& lookup,
                            const Cairn::PListDict& options) override;

  // h__PlaylistExport.cpp
  void GetLastCPLContext(UUID& id, Cairn::AssetInfoList& assets) const override;
  Result_t GetShowPlaylistForTimeline(std::string& document) const override;
  Result_t GetPresentationListForTimeline(const std::string& base_path, std::string& document,
                                          ui32_t& playout_id) const override;
  void GetKeyIDList(UUIDList& out) const override;
  void GetCPLIDList(UUIDList& out) const override;
  void GetCiphertextCPLIDList(UUIDList& out) const override;

  // h__PlaylistNotify.cpp
  Result_t AddEventToTimeline(const std::string& label, const std::string& scope, const ui32_t& show_position) override;
  void TransportStatusNotify(ITransportNotify* NotifyHandler, CommandType_t command, const DeviceStatus& status,
                             bool force) override;
  void PlaylistStatusNotify(ITransportNotify* NotifyHandler, bool force) override;
  void PlaylistEventNotify(ITransportNotify* NotifyHandler) override;

  // h__PlaylistPositioning.cpp
  bool MoveForward(ui32_t count) override;
  bool MoveBackward(ui32_t count) override;
  bool MoveToEditUnit(ui32_t position) override;
  bool EssenceCodingChanged() override;
  bool HasStereoImage() const override { return m_HasStereoImage; }
  void GetCurrentReelEssenceInfo(EssenceParams& out) const override;
  ui32_t GetDuration() const override { return m_ShowPosition.Duration; }
  ui32_t GetDurationSeconds() const override { return m_DurationSeconds; }
  ui32_t GetPosition() const override { return m_ShowPosition.Position; }
  const CompositionInfo& GetCompositionInfoForCurrentPosition() const override;
  const CompositionInfo& GetCompositionInfoForPosition(const ui32_t& position) const override;
  ui32_t TranslateReelPosition(const ui32_t& show_position) const override;
  void TranslateReelPosition(const ui32_t& show_position, ui32_t& reel_position, ui32_t& reel_number,
                             ui32_t& reel_duration, UUID& composition_id, QUIRE::Rational& edit_rate,
                             bool& distinct_coding) const override;
  ITimelineTrack* GetReaderForChannel(TrackType_t type, ui32_t channel, ui32_t frame) const override;
  ui32_t GetChannelCountForType(TrackType_t type, ui32_t frame) const override;

 private:
  /// What changed since the last report; bits of m_HasChanges.
  enum Change_t : ui32_t {
    ChangedPosition = 1,       // until TransportStatusNotify reports it
    ChangedComposition = 2,    // or the reel; until PlaylistStatusNotify reports it
    ChangedEssenceCoding = 4,  // until EssenceCodingChanged answers it
  };

  Result_t LoadDocument(const std::string& document, const Cairn::IAssetLookup& lookup,
                        const Cairn::PListDict& options);
  Result_t LoadList(const UUIDList& ids, const Cairn::IAssetLookup& lookup, const Cairn::PListDict& options);
  void Clear();
  Result_t InitWithCPL(const Cairn::CompositionPlaylist& cpl, const Cairn::IAssetLookup& lookup,
                       const Cairn::PListDict& options);
  Result_t FixupPlaylist();
  void AdjustCounters();
  void MarkCompositionChange(const UUID& previous, const CompositionInfo& current);
  const TimelineReel* CurrentReel() const { return m_CurrentReel; }

  UUIDList m_KeyIDList;
  UUIDList m_CiphertextCPLIDList;
  UUIDList m_CPLIDList;
  Timeline_t m_Timeline;
  EventList m_EventList;  // sorted by position once initialised
  ui32_t m_HasChanges = 0;
  const TimelineReel* m_CurrentReel = nullptr;  // null until the counters have been computed
  ui32_t m_ReelCount = 0;
  ui32_t m_DurationSeconds = 0;
  Cairn::FileType_t m_PictureType = Cairn::FT_UNKNOWN;
  CompositionInfoMap m_CompositionInfo;
  bool m_HasStereoImage = false;
  TimelinePosition m_ShowPosition;  // Duration is the timeline's
  TimelinePosition m_CPLPosition;
  TimelinePosition m_ReelPosition;
  ImageEssenceChangeMode_t m_ImageEssenceChangeMode = EECM_2K_4K;
  UUID m_ThisCPL_ID;
  Cairn::AssetInfoList m_ThisCPL_AssetList;

  friend struct PlaylistInspector;  // tests look at the state through it
};

}  // namespace Strata
