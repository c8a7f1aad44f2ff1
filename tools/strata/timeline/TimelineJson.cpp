// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineJson.h"

#include "findings/FindingJson.h"
#include "keys/KeyReport.h"

namespace Tool {

namespace {

void AddSpan(Json& json, const TimelineSpan& span) {
  json["start"] = span.Start;
  json["duration"] = span.Duration;
  json["start_seconds"] = span.StartSeconds;
  json["duration_seconds"] = span.Seconds;
}

Json ShowJson(const TimelineShow& show) {
  Json json{{"id", show.ID.EncodeString()}, {"title", show.Title}, {"file", show.File}, {"depth", show.Depth}};
  AddSpan(json, show);
  return json;
}

Json CompositionJson(const TimelineComposition& composition) {
  Json json{{"id", composition.ID.EncodeString()}, {"title", composition.Title}};
  AddUnlessEmpty(json, "kind", composition.Kind);
  AddUnlessEmpty(json, "description", composition.Description);
  AddUnlessEmpty(json, "file", composition.File);
  json["edit_rate"] = composition.EditRate.EncodeString();
  json["stereoscopic"] = composition.Stereoscopic;
  json["encrypted"] = composition.Encrypted;
  if (!composition.Keys.empty()) json["keys"] = KeyAnswersJson(composition.Keys);
  json["state"] = TimelineStateName(composition.State);
  json["problems"] = composition.Problems;
  AddSpan(json, composition);
  json["reels"] = Json::Array();
  for (const TimelineReel& reel : composition.Reels) {
    Json& added = json["reels"].push_back(Json{{"id", reel.ID.EncodeString()}});
    AddSpan(added, reel);
  }
  return json;
}

Json TrackJson(const TimelineTrack& track) {
  Json json{{"composition", track.Composition + 1}, {"reel", track.Reel}, {"state", TimelineStateName(track.State)}};
  AddSpan(json, track);
  if (!track.Asset.AssetID.HasValue()) return json;
  json["asset_id"] = track.Asset.AssetID.EncodeString();
  AddUnlessEmpty(json, "file", track.File);
  AddUnlessEmpty(json, "description", track.Description);
  json["edit_rate"] = track.Asset.EditRate.EncodeString();
  json["entry_point"] = track.Asset.EntryPoint;
  json["asset_duration"] = track.Asset.Duration;
  json["intrinsic_duration"] = track.Asset.IntrinsicDuration;
  if (track.Encrypted()) json["key_id"] = track.Asset.KeyID.EncodeString();
  AddUnlessEmpty(json, "language", track.Language);
  AddUnlessEmpty(json, "coding", track.Coding);
  if (track.Stereoscopic) json["stereoscopic"] = true;
  if (!track.Problems.empty()) json["problems"] = track.Problems;
  return json;
}

Json MarkerJson(const TimelineMarker& marker) {
  Json json{{"label", marker.Label}};
  AddUnlessEmpty(json, "scope", marker.Scope);
  json["origin"] = marker.OfComposition ? "composition" : "show";
  json["position"] = marker.Position;
  json["seconds"] = marker.Seconds;
  return json;
}

}  // namespace

std::string TimelineJson(const TimelineModel& model, bool is_indented) {
  Json json = NewJsonReport("timeline");
  json["title"] = model.Title;
  json["exit_code"] = static_cast<int>(model.Code);
  json["verdict"] = TimelineVerdict(model);
  json["duration"] = model.Duration;
  json["duration_seconds"] = model.Seconds;
  for (const char* list : {"shows", "compositions", "lanes", "markers"}) json[list] = Json::Array();
  for (const TimelineShow& show : model.Shows) json["shows"].push_back(ShowJson(show));
  for (const auto& composition : model.Compositions) json["compositions"].push_back(CompositionJson(composition));
  for (const TimelineLane& lane : model.Lanes) {
    Json& added =
        json["lanes"].push_back(Json{{"kind", AssetKindName(lane.Kind)}, {"number", lane.Number}, {"name", lane.Name}});
    added["tracks"] = Json::Array();
    for (const TimelineTrack& track : lane.Tracks) added["tracks"].push_back(TrackJson(track));
  }
  for (const TimelineMarker& marker : model.Markers) json["markers"].push_back(MarkerJson(marker));
  std::vector<Cairn::UUID> ids;
  for (const TimelineComposition& composition : model.Compositions) ids.push_back(composition.ID);
  json["findings"] = FindingsJson(model.Findings, ids);
  return JsonText(json, is_indented);
}

}  // namespace Tool
