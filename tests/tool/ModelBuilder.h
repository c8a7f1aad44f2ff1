// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "drawing/TimelineModel.h"

#include <string>

/// Builds models by hand: compositions one after the other, each with reels of equal length at 24 edit units a second.
class ModelBuilder {
 public:
  ModelBuilder() {
    Model.Title = "Show";
    Model.Lanes = {{Tool::AssetKind::Picture, 1, "Picture", {}}, {Tool::AssetKind::Sound, 1, "Sound", {}}};
  }

  Tool::TimelineComposition& Add(const std::string& title, size_t reels, Ferro::ui32_t units) {
    Tool::TimelineComposition& composition = Model.Compositions.emplace_back();
    composition.Title = title;
    composition.EditRate = QUIRE::EditRate_24;
    static_cast<Tool::TimelineSpan&>(composition) = Span(0);
    for (size_t number = 1; number <= reels; ++number) {
      Tool::TimelineReel reel;
      static_cast<Tool::TimelineSpan&>(reel) = Span(units);
      composition.Reels.push_back(reel);
      for (Tool::TimelineLane& lane : Model.Lanes) {
        Tool::TimelineTrack& track = lane.Tracks.emplace_back();
        static_cast<Tool::TimelineSpan&>(track) = Span(units);
        track.Composition = Model.Compositions.size() - 1;
        track.Reel = number;
        track.Asset.AssetID = PictureAndSound();
        track.Asset.EditRate = QUIRE::EditRate_24;
        track.Asset.Duration = track.Asset.IntrinsicDuration = units;
      }
      Extend(units);
    }
    composition.Duration = Model.Duration - composition.Start;
    composition.Seconds = Model.Seconds - composition.StartSeconds;
    return composition;
  }

  /// A composition that no store has.
  void AddMissing(const std::string& title, Ferro::ui32_t units) {
    Tool::TimelineComposition& composition = Add(title, 0, 0);
    composition.State = Tool::TimelineState::Missing;
    composition.Duration = units;
    composition.Seconds = units / 24.0;
    Extend(units);
  }

  /// The one asset that everything plays.
  static Cairn::UUID PictureAndSound() { return Cairn::UUID::FromHex("11111111-1111-4111-8111-111111111111").value(); }

  void Mark(const std::string& label, Ferro::ui32_t position) {
    Model.Markers.push_back({label, "", false, position, position / 24.0});
  }

  Tool::TimelineModel Model;

 private:
  [[nodiscard]] Tool::TimelineSpan Span(Ferro::ui32_t units) const {
    return {Model.Duration, units, Model.Seconds, units / 24.0};
  }
  void Extend(Ferro::ui32_t units) {
    Model.Duration += units;
    Model.Seconds = Model.Duration / 24.0;
  }
};

/// How often a text has some part.
inline size_t CountOf(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}
