// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/TimelineExport.h"

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>
#include <Ferro/Path.h>

#include <memory>

namespace Strata {

namespace {

/// Walks the events along with the reels, placing each as a marker inside the composition before it or in front of the
/// composition that starts on it.
class ShowWriter {
 public:
  ShowWriter(const EventList& events, ShowPlaylist& out) : m_Event(events.begin()), m_End(events.end()), m_Out(out) {}

  void StartComposition(const TimelineReel& reel) {
    PlaceMarkersBefore(reel.m_Offset);
    for (; m_Event != m_End && m_Event->ShowPosition == reel.m_Offset; ++m_Event)
      m_Out.ShowSequence.push_back(std::make_unique<ShowPlaylist::MarkerItem>(MarkerFor(*m_Event)));

    auto item = std::make_unique<ShowPlaylist::CompositionItem>();
    item->ID = reel.m_CPL;
    item->EditRate = reel.m_EditRate;
    item->Duration = reel.m_Duration;
    current_cpl_item = item.get();
    m_Start = reel.m_Offset;
    m_Out.ShowSequence.push_back(std::move(item));
  }

  void ContinueComposition(const TimelineReel& reel) {
    FERRO_ASSERT_TEXT(current_cpl_item != nullptr, "current_cpl_item");
    current_cpl_item->Duration += reel.m_Duration;
  }

  /// Places the events up to, not including, `position` inside the current composition.
  void PlaceMarkersBefore(ui32_t position) {
    for (; m_Event != m_End && m_Event->ShowPosition < position; ++m_Event) {
      FERRO_ASSERT_TEXT(current_cpl_item != nullptr, "current_cpl_item");
      ShowPlaylist::MarkerItem marker = MarkerFor(*m_Event);
      marker.Offset = static_cast<i32_t>(m_Event->ShowPosition - m_Start);
      current_cpl_item->MarkerList.push_back(marker);
    }
  }

 private:
  static ShowPlaylist::MarkerItem MarkerFor(const PlaylistEvent& event) {
    ShowPlaylist::MarkerItem marker;
    marker.Label = event.Label;
    marker.Scope = event.LabelScope;
    return marker;
  }

  EventList::const_iterator m_Event;
  const EventList::const_iterator m_End;
  ShowPlaylist& m_Out;
  ShowPlaylist::CompositionItem* current_cpl_item = nullptr;
  ui32_t m_Start = 0;  // of the current composition
};

ResourcePresentationList::ReelResource ResourceFor(const ITimelineTrack& track, const std::string& base_path) {
  ResourcePresentationList::ResourceFile file;
  file.URL = Ferro::PathJoin(base_path, track.AssetID().EncodeString());

  ResourcePresentationList::ReelResource resource;
  resource.ID = track.AssetID();
  resource.ResourceType = track.AssetName();
  resource.Language = track.Language();
  resource.EntryPoint = track.EntryPoint();
  resource.Duration = track.Duration();
  resource.IntrinsicDuration = track.IntrinsicDuration();
  resource.ResourceFileList.push_back(file);
  return resource;
}

Result_t NoRandomNumbers(const char* document) {
  Ferro::DefaultLogSink().Error("No random numbers to identify the %s of the timeline\n", document);
  return Ferro::RESULT_FAIL;
}

}  // namespace

Result_t FillShowPlaylist(const Timeline_t& timeline, const EventList& events, ui32_t duration_seconds,
                          ShowPlaylist& out) {
  out.ID = UUID::Random();
  if (!out.ID.HasValue()) return NoRandomNumbers("show playlist");
  out.Annotation = "Runtime playlist";
  out.EstimatedDuration = duration_seconds;

  ShowWriter writer(events, out);
  for (const TimelineReel& reel : timeline) {
    if (reel.m_CPLReelNumber == 0)
      writer.StartComposition(reel);
    else
      writer.ContinueComposition(reel);
  }
  if (!timeline.empty()) writer.PlaceMarkersBefore(timeline.back().End());
  return Ferro::RESULT_OK;
}

Result_t FillPresentationList(const Timeline_t& timeline, const std::string& base_path, ResourcePresentationList& out) {
  out.GenRandomIDValue();
  if (out.PlayoutID == 0) return NoRandomNumbers("resource presentation list");
  for (const TimelineReel& reel : timeline) {
    ResourcePresentationList::ReelResources resources;
    resources.TimelineOffset = reel.m_Offset;
    resources.ReelID = reel.m_CPLReelID;
    resources.EditRate = reel.m_EditRate;
    if (!reel.OnScreenText.empty()) resources.ReelResourceList.push_back(ResourceFor(*reel.OnScreenText, base_path));
    for (const TrackPtr& text : reel.OffScreenText) {
      FERRO_ASSERT_TEXT(!text.empty(), "!ost_i->empty()");
      resources.ReelResourceList.push_back(ResourceFor(*text, base_path));
    }
    if (!resources.ReelResourceList.empty()) out.ReelResourcesList.push_back(resources);
  }
  return Ferro::RESULT_OK;
}

}  // namespace Strata
