// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineModel.h"

#include "findings/FindingReport.h"
#include "show/Description.h"
#include "terminal/TextForms.h"

#include <Strata/PlayedSpan.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace Tool {

namespace {

using Ferro::ui32_t;

constexpr const char* ImmersiveAudio = "urn:smpte:ul:060e2b34.04010105.0e090604.00000000";  // ST 429-18

bool HasValue(const QUIRE::Rational& rate) {
  return rate.Numerator > 0 && rate.Denominator > 0;
}

/// Seconds of edit units; 24 in a second where the rate is not known.
double SecondsOf(ui32_t edit_units, const QUIRE::Rational& rate) {
  return HasValue(rate) ? double(edit_units) * rate.Denominator / rate.Numerator : double(edit_units) / 24;
}

TimelineState StateOf(Severity severity) {
  switch (severity) {
    case Severity::Note:
    case Severity::Profile:
      return TimelineState::Ready;
    case Severity::Warning:
      return TimelineState::Unusual;
    case Severity::Missing:
      return TimelineState::Missing;
    case Severity::Error:
      return TimelineState::Broken;
  }
  return TimelineState::Broken;
}

/// The findings, by what they are about.
class FindingsByPlace {
 public:
  explicit FindingsByPlace(const FindingList& findings) {
    for (const Finding& finding : findings)
      if (SeverityOf(finding) >= Severity::Warning)
        m_Places[{finding.Place.Composition, finding.Place.Reel, finding.Place.Asset}].push_back(&finding);
  }

  /// Adds to the problems of something, and makes its state the worst of all. Reel 0 is the composition itself, and no
  /// asset none of the reel's.
  void Tell(const Cairn::UUID& composition, size_t reel, const Cairn::UUID& asset, TimelineState& state,
            std::vector<std::string>& problems) const {
    const auto found = m_Places.find({composition, reel, asset});
    if (found == m_Places.end()) return;
    for (const Finding* finding : found->second) {
      const std::string text = SentenceOf(*finding);
      if (std::find(problems.begin(), problems.end(), text) == problems.end()) problems.push_back(text);
      state = std::max(state, StateOf(SeverityOf(*finding)));
    }
  }

 private:
  using Place = std::tuple<Cairn::UUID, size_t, Cairn::UUID>;
  std::map<Place, std::vector<const Finding*>> m_Places;
};

std::string LaneName(AssetKind kind, unsigned number) {
  switch (kind) {
    case AssetKind::Picture:
      return "Picture";
    case AssetKind::Sound:
      return "Sound";
    case AssetKind::OnScreenText:
      return "Subtitle";
    case AssetKind::OffScreenText:
      return "Caption " + std::to_string(number);
    case AssetKind::AuxData:
      return "Data " + std::to_string(number);
  }
  return "";
}

class ModelMaker {
 public:
  ModelMaker(const ShowOutline& outline, TimelineModel& model)
      : m_Outline(outline), m_Model(model), m_Findings(model.Findings) {}

  void Make() {
    LaneFor(AssetKind::Picture, 1);
    LaneFor(AssetKind::Sound, 1);
    for (const OutlineComposition& composition : m_Outline.Compositions()) AddComposition(composition);
    m_Model.Duration = m_Outline.Duration();
    m_Model.Seconds = m_Seconds;
    for (const OutlineShow& show : m_Outline.Shows()) AddShow(show);
    AddShowMarkers();
    const auto by_kind = [](const TimelineLane& a, const TimelineLane& b) {
      return std::tie(a.Kind, a.Number) < std::tie(b.Kind, b.Number);
    };
    std::sort(m_Model.Lanes.begin(), m_Model.Lanes.end(), by_kind);
    const auto by_position = [](const TimelineMarker& a, const TimelineMarker& b) { return a.Seconds < b.Seconds; };
    std::stable_sort(m_Model.Markers.begin(), m_Model.Markers.end(), by_position);
  }

 private:
  void AddComposition(const OutlineComposition& from) {
    TimelineComposition to;
    to.ID = from.ID;
    to.Title = from.Title.empty() ? from.ID.EncodeString() : from.Title;
    to.Kind = from.Kind;
    to.Description = Describe(TraitsOf(from));
    to.File = from.Path;
    to.EditRate = from.EditRate;
    to.Stereoscopic = from.Stereoscopic;
    to.Start = from.Start;
    to.Duration = from.Duration;
    to.StartSeconds = m_Seconds;
    to.Seconds = SecondsOf(from.Duration, from.EditRate);
    m_Findings.Tell(from.ID, 0, {}, to.State, to.Problems);
    const bool has_sound = std::any_of(from.Reels.begin(), from.Reels.end(),
                                       [](const OutlineReel& reel) { return reel.First(AssetKind::Sound) != nullptr; });
    ui32_t offset = 0;
    for (const OutlineReel& reel : from.Reels) {
      TimelineReel& added = to.Reels.emplace_back();
      added.ID = reel.ID;
      added.Start = from.Start + offset;
      added.Duration = reel.Duration;
      added.StartSeconds = m_Seconds + SecondsOf(offset, from.EditRate);
      added.Seconds = SecondsOf(reel.Duration, from.EditRate);
      AddTracks(from, reel, has_sound, to);
      AddMarkersOf(reel, to);
      offset += reel.Duration;
    }
    m_Seconds += to.Seconds;
    m_Model.Compositions.push_back(std::move(to));
  }

  void AddTracks(const OutlineComposition& from, const OutlineReel& reel, bool has_sound, TimelineComposition& to) {
    std::map<AssetKind, unsigned> numbers;
    for (const OutlineAsset& asset : reel.Assets) {
      TimelineTrack& track = LaneFor(asset.Kind, ++numbers[asset.Kind]).Tracks.emplace_back();
      FillTrack(track, to);
      track.Asset = asset.Asset;
      track.Language = asset.Language;
      track.Coding = asset.DataType == ImmersiveAudio ? "immersive audio" : asset.DataType;
      track.Stereoscopic = from.Stereoscopic && asset.Kind == AssetKind::Picture;
      if (asset.Found) track.File = asset.Found->Info.RealFilename;
      if (!track.File.empty()) track.Description = Describe(ReadTrackFileFacts(track.File, asset.Found->Info.FileType));
      track.Duration = Strata::PlayedDuration(asset.Asset.Duration, reel.Duration);
      track.Seconds = SecondsOf(track.Duration, from.EditRate);
      to.Encrypted = to.Encrypted || track.Encrypted();
      if (!asset.Found) track.State = TimelineState::Missing;
      m_Findings.Tell(from.ID, track.Reel, asset.Asset.AssetID, track.State, track.Problems);
    }
    if (numbers[AssetKind::Sound] > 0) return;
    TimelineTrack& track = LaneFor(AssetKind::Sound, 1).Tracks.emplace_back();
    FillTrack(track, to);
    track.State = has_sound ? TimelineState::Silence : TimelineState::NoSound;
  }

  /// What a track takes from the last reel added.
  void FillTrack(TimelineTrack& track, const TimelineComposition& composition) const {
    static_cast<TimelineSpan&>(track) = composition.Reels.back();
    track.Composition = m_Model.Compositions.size();
    track.Reel = composition.Reels.size();
  }

  void AddMarkersOf(const OutlineReel& reel, const TimelineComposition& composition) {
    for (const Cairn::Marker& marker : reel.Markers.MarkerList) {
      const ui32_t entry = reel.Markers.EntryPoint;
      if (marker.Offset < entry || marker.Offset - entry > reel.Duration) continue;  // in a part that does not play
      const TimelineReel& place = composition.Reels.back();
      const ui32_t offset = marker.Offset - entry;
      m_Model.Markers.push_back({marker.Label, marker.Scope, true, place.Start + offset,
                                 place.StartSeconds + SecondsOf(offset, composition.EditRate)});
    }
  }

  void AddShowMarkers() {
    for (const OutlineMarker& marker : m_Outline.Markers()) {
      double seconds = m_Seconds;
      if (marker.Composition < m_Model.Compositions.size()) {
        const TimelineComposition& within = m_Model.Compositions[marker.Composition];
        seconds = within.StartSeconds + SecondsOf(marker.Position - within.Start, within.EditRate);
      }
      m_Model.Markers.push_back({marker.Label, marker.Scope, false, marker.Position, seconds});
    }
  }

  void AddShow(const OutlineShow& from) {
    TimelineShow& to = m_Model.Shows.emplace_back();
    to.ID = from.ID;
    to.Title = from.Title.empty() ? from.ID.EncodeString() : from.Title;
    to.File = from.Path;
    to.Depth = from.Depth;
    to.Start = from.Start;
    to.Duration = from.Duration;
    const size_t end = from.FirstComposition + from.CompositionCount;
    const auto& all = m_Model.Compositions;
    to.StartSeconds = from.FirstComposition < all.size() ? all[from.FirstComposition].StartSeconds : m_Seconds;
    to.Seconds = (end < all.size() ? all[end].StartSeconds : m_Seconds) - to.StartSeconds;
  }

  TimelineLane& LaneFor(AssetKind kind, unsigned number) {
    const auto place = m_LaneOf.try_emplace({kind, number}, m_Model.Lanes.size());
    if (place.second) m_Model.Lanes.push_back({kind, number, LaneName(kind, number), {}});
    return m_Model.Lanes[place.first->second];
  }

  const ShowOutline& m_Outline;
  TimelineModel& m_Model;
  const FindingsByPlace m_Findings;
  std::map<std::pair<AssetKind, unsigned>, size_t> m_LaneOf;
  double m_Seconds = 0;
};

std::string TitleOf(const TimelineModel& model) {
  const auto is_whole = [](const TimelineShow& show) { return show.Depth == 0; };
  if (std::count_if(model.Shows.begin(), model.Shows.end(), is_whole) == 1) return model.Shows.front().Title;
  if (model.Compositions.size() == 1) return model.Compositions.front().Title;
  return std::to_string(model.Compositions.size()) + " compositions";
}

}  // namespace

ui32_t TimelineTrack::TailTrim() const {
  const Ferro::ui64_t end = Ferro::ui64_t{Asset.EntryPoint} + Duration;
  return end < Asset.IntrinsicDuration ? static_cast<ui32_t>(Asset.IntrinsicDuration - end) : 0;
}

const char* TimelineStateName(TimelineState state) {
  switch (state) {
    case TimelineState::Ready:
      return "ready";
    case TimelineState::Silence:
      return "silence";
    case TimelineState::NoSound:
      return "no sound";
    case TimelineState::Unusual:
      return "unusual";
    case TimelineState::Missing:
      return "missing";
    case TimelineState::Broken:
      return "broken";
  }
  return "";
}

TimelineModel MakeTimelineModel(const ShowOutline& outline, const ShowSecurity* security) {
  return MakeTimelineModel(outline, security, CheckShow(outline, security));
}

TimelineModel MakeTimelineModel(const ShowOutline& outline, const ShowSecurity* security, FindingList findings) {
  TimelineModel model;
  model.Findings = std::move(findings);
  model.Code = ExitCodeFor(model.Findings);
  ModelMaker(outline, model).Make();
  for (size_t index = 0; security != nullptr && index < model.Compositions.size(); ++index)
    model.Compositions[index].Keys = security->Answers[index];
  model.Title = TitleOf(model);
  return model;
}

FindingList WorstFirst(FindingList findings) {
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return SeverityOf(a) > SeverityOf(b); });
  return findings;
}

std::string TimelineVerdict(const TimelineModel& model) {
  const auto count = [&](Severity severity) {
    return std::count_if(model.Findings.begin(), model.Findings.end(),
                         [&](const Finding& finding) { return SeverityOf(finding) == severity; });
  };
  const auto missing = count(Severity::Missing);
  const auto errors = count(Severity::Error);
  const std::string broken = std::to_string(errors) + (errors == 1 ? " error" : " errors");
  if (missing == 0 && errors > 0) return "The show is broken: " + broken + '.';
  std::string text =
      missing == 0 ? "All assets are there" : std::to_string(missing) + " missing: " + MissingText(model.Findings);
  if (errors > 0) text += "; " + broken;
  const auto keyless = std::count_if(model.Findings.begin(), model.Findings.end(), [](const Finding& finding) {
    return finding.ID == FindingID::KdmNone && SeverityOf(finding) == Severity::Note;
  });
  if (keyless > 0 && missing == 0)
    text += "; " + std::to_string(keyless) + (keyless == 1 ? " composition needs keys" : " compositions need keys");
  return text + '.';
}

std::string TimelineTimeCode(const TimelineModel& model, ui32_t position) {
  const auto& all = model.Compositions;
  if (all.empty()) return TimeCodeText(position, QUIRE::EditRate_24);
  const auto after = std::upper_bound(all.begin(), all.end(), position, [](ui32_t sought, const auto& composition) {
    return sought < composition.Start;
  });
  const TimelineComposition& within = after == all.begin() ? *after : *(after - 1);
  const bool uniform = std::all_of(all.begin(), all.end(), [&](const TimelineComposition& composition) {
    return composition.EditRate == all.front().EditRate;
  });
  if (!HasValue(within.EditRate)) return TimeCodeText(position, QUIRE::EditRate_24);
  if (uniform) return TimeCodeText(position, within.EditRate);
  const double seconds = within.StartSeconds + SecondsOf(position - within.Start, within.EditRate);
  const double base = std::ceil(within.EditRate.Quotient());
  const double units = std::floor(seconds) * base + std::floor((seconds - std::floor(seconds)) * base + 1e-6);
  return TimeCodeText(static_cast<ui32_t>(std::min(units, 4e9)), within.EditRate);
}

}  // namespace Tool
