// SPDX-License-Identifier: BSD-3-Clause
#include "PageFigures.h"

#include <algorithm>

namespace Tool {

namespace {

using Ferro::ui64_t;

/// Edit units of a file, and the time in which they play.
struct PlayedUnits {
  ui64_t First = 0;
  ui64_t Count = 0;
  double Start = 0;  ///< seconds
  double Seconds = 0;

  [[nodiscard]] double SecondsAt(ui64_t unit) const {
    return Start + static_cast<double>(unit - First) * Seconds / static_cast<double>(Count);
  }
};

void AddPicture(const Assay::PictureFigures& picture, const PlayedUnits& played, RateCurve& curve) {
  if (played.Count == 0 || picture.UnitsOfSpan == 0) return;
  const ui64_t end = played.First + played.Count;
  for (ui64_t index = played.First / picture.UnitsOfSpan; index < picture.Spans.size(); ++index) {
    const ui64_t from = std::max(index * picture.UnitsOfSpan, played.First);
    const ui64_t to = std::min((index + 1) * picture.UnitsOfSpan, end);
    if (from >= to) break;
    curve.Add({played.SecondsAt(from), played.SecondsAt(to) - played.SecondsAt(from),
               static_cast<double>(picture.Spans[index]), picture.LimitRate});
  }
  curve.AddMean(played.Seconds, picture.MeanRate);
}

void Raise(const Assay::FileFigures& file, std::vector<ChannelLevel>& levels) {
  for (size_t index = 0; index < file.Channels.size(); ++index) {
    const Assay::ChannelFigures& channel = file.Channels[index];
    if (index == levels.size())
      levels.push_back({channel.Label.empty() ? std::to_string(index + 1) : channel.Label, channel.Peak});
    levels[index].Peak = std::max(levels[index].Peak, channel.Peak);
  }
}

}  // namespace

FiguresByAsset ByAsset(const std::vector<Assay::FileFigures>& figures) {
  FiguresByAsset all;
  for (const Assay::FileFigures& file : figures) all.try_emplace(file.Asset, &file);
  return all;
}

RateCurve RateCurveOf(const TimelineModel& show, const FiguresByAsset& figures) {
  RateCurve curve(show.Seconds);
  for (const TimelineLane& lane : show.Lanes) {
    if (lane.Kind != AssetKind::Picture) continue;
    for (const TimelineTrack& track : lane.Tracks) {
      const auto found = figures.find(track.Asset.AssetID);
      if (found == figures.end() || !found->second->Picture) continue;
      AddPicture(*found->second->Picture,
                 {track.Asset.EntryPoint, track.Asset.Duration, track.StartSeconds, track.Seconds}, curve);
    }
  }
  return curve;
}

RateCurve RateCurveOf(const Assay::FileFigures& file) {
  const QUIRE::Rational& rate = file.EditRate;
  const double units_a_second =
      rate.Numerator > 0 && rate.Denominator > 0 ? double(rate.Numerator) / rate.Denominator : 24;
  const double seconds = static_cast<double>(file.Duration) / units_a_second;
  RateCurve curve(seconds);
  if (file.Picture) AddPicture(*file.Picture, {0, file.Duration, 0, seconds}, curve);
  return curve;
}

std::vector<ChannelLevel> LevelsOf(const TimelineModel& show, size_t composition, const FiguresByAsset& figures) {
  std::vector<ChannelLevel> levels;
  for (const TimelineLane& lane : show.Lanes) {
    if (lane.Kind != AssetKind::Sound) continue;
    for (const TimelineTrack& track : lane.Tracks) {
      if (track.Composition != composition) continue;
      const auto found = figures.find(track.Asset.AssetID);
      if (found != figures.end()) Raise(*found->second, levels);
    }
  }
  return levels;
}

std::vector<ChannelLevel> LevelsOf(const Assay::FileFigures& file) {
  std::vector<ChannelLevel> levels;
  Raise(file, levels);
  return levels;
}

}  // namespace Tool
