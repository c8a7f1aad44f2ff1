// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/TimelineSummary.h"

#include "Playlist/TextSpanContext.h"

#include <Ferro/UniqueList.h>

#include <cmath>
#include <limits>

namespace Strata {

namespace {

/// Collects the keys of the tracks of one reel.
class KeyCollector {
 public:
  explicit KeyCollector(UUIDList& keys) : m_Keys(keys) {}

  void Add(const TrackPtr& track) {
    if (track.empty() || !track->KeyID().HasValue()) return;
    m_Keys.push_back(track->KeyID());
    m_Found = true;
  }
  [[nodiscard]] bool Found() const { return m_Found; }

 private:
  UUIDList& m_Keys;
  bool m_Found = false;
};

double SecondsOf(const ITimelineTrack& picture) {
  return double(picture.Duration()) / picture.EditRate().Quotient();
}

// Rates come from files: a total that is no number of seconds that fits counts as 0 or as the most there is.
ui32_t RoundHalfUp(double seconds) {
  const double rounded = std::floor(seconds + 0.5);
  if (!(rounded > 0)) return 0;
  constexpr ui32_t most = std::numeric_limits<ui32_t>::max();
  return rounded < double(most) ? static_cast<ui32_t>(rounded) : most;
}

}  // namespace

TimelineSummary SummariseTimeline(const Timeline_t& timeline) {
  TimelineSummary summary;
  UUIDList keys;
  UUIDList encrypted;
  TextSpanContext spans;
  double seconds = 0;

  for (const TimelineReel& reel : timeline) {
    if (!reel.MainPicture.empty()) seconds += SecondsOf(*reel.MainPicture);
    if (reel.m_CPLReelNumber == 0) summary.CPLs.push_back(reel.m_CPL);

    KeyCollector collector(keys);
    collector.Add(reel.MainPicture);
    collector.Add(reel.MainSound);
    if (reel.OnScreenText.empty())
      spans.Reset();
    else
      spans.TestEntry(reel.OnScreenText.get());
    collector.Add(reel.OnScreenText);
    for (const TrackPtr& text : reel.OffScreenText) collector.Add(text);
    for (const TrackPtr& data : reel.AuxData) collector.Add(data);
    if (collector.Found()) encrypted.push_back(reel.m_CPL);
  }
  spans.Reset();

  summary.DurationSeconds = RoundHalfUp(seconds);
  Ferro::create_unique_list(keys, summary.Keys);
  Ferro::create_unique_list(encrypted, summary.CiphertextCPLs);
  return summary;
}

void SortEvents(EventList& events) {
  events.sort([](const PlaylistEvent& a, const PlaylistEvent& b) { return a.ShowPosition < b.ShowPosition; });
}

void PullEventsInside(EventList& events, ui32_t duration) {
  for (auto event = events.rbegin(); event != events.rend() && event->ShowPosition >= duration; ++event)
    event->ShowPosition = duration - 1;
}

}  // namespace Strata
