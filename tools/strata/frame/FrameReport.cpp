// SPDX-License-Identifier: BSD-3-Clause
#include "FrameReport.h"

#include "terminal/DisplayText.h"
#include "terminal/JsonReport.h"

namespace Tool {

std::string FrameText(const FrameReport& report) {
  std::string text;
  for (const std::string& file : report.Files) text += DisplayText(file) + '\n';
  text += report.Channel + " of edit unit " + std::to_string(report.Position) + " (" + report.TimeCode + ')';
  if (report.AssetID.empty()) return text + ", which is silence that the show fills in\n";
  text += ", edit unit " + std::to_string(report.FilePosition) + " of " + DisplayText(report.File) + '\n';
  return report.Bytes.empty() ? text : text + report.Bytes + '\n';
}

std::string FrameJson(const FrameReport& report) {
  Json json = NewJsonReport("frame");
  json["channel"] = report.Channel;
  json["position"] = report.Position;
  json["count"] = report.Count;
  json["time_code"] = report.TimeCode;
  json["asset"] = report.AssetID;
  AddUnlessEmpty(json, "track_file", report.File);
  json["file_position"] = report.FilePosition;
  json["encrypted"] = report.Encrypted;
  json["files"] = report.Files;
  return JsonText(json);
}

}  // namespace Tool
