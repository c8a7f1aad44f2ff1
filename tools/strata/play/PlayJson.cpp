// SPDX-License-Identifier: BSD-3-Clause
#include "PlayReport.h"
#include "terminal/JsonReport.h"

namespace Tool {

namespace {

Json ChannelJson(const ChannelStatistics& channel) {
  return Json{{"name", channel.Name},
              {"delivered", channel.Delivered},
              {"late", channel.Late},
              {"repeated", channel.Repeated},
              {"missing", channel.Missing},
              {"bytes", channel.Bytes},
              {"latency_ms",
               {{"p50", channel.Latency.Percentile(0.5)},
                {"p99", channel.Latency.Percentile(0.99)},
                {"max", channel.Latency.Longest()}}}};
}

Json VerifiedJson(const Verification& verified) {
  Json json{{"compared", verified.Compared}, {"different", verified.Different}};
  if (verified.Decrypted > 0) {
    json["decrypted"] = verified.Decrypted;
    json["altered"] = verified.Altered;
  }
  for (const FrameDifference& difference : verified.Differences)
    json["differences"].push_back(Json{{"channel", difference.Channel},
                                       {"edit_unit", difference.ShowPosition},
                                       {"file_edit_unit", difference.FilePosition},
                                       {"asset_id", difference.AssetID.EncodeString()}});
  return json;
}

}  // namespace

std::string PlayJson(const PlayReport& report) {
  Json json = NewJsonReport("play");
  json["interrupted"] = report.Interrupted;
  json["position"] = report.Position;
  json["duration"] = report.Duration;
  json["edit_units"] = report.EditUnits;
  json["seconds"] = report.Seconds;
  json["held_up_seconds"] = report.HeldUpSeconds;
  json["channels"] = Json::Array();
  for (const ChannelStatistics& channel : report.Channels) json["channels"].push_back(ChannelJson(channel));
  json["bytes_per_second"] = report.BytesPerSecond();
  if (report.Verified) json["verified"] = VerifiedJson(*report.Verified);
  json["events"] = Json::Array();
  for (const PlayedEvent& event : report.Events)
    json["events"].push_back(Json{{"label", event.Label}, {"scope", event.Scope}, {"position", event.Position}});
  return JsonText(json);
}

}  // namespace Tool
