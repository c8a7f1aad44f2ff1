// SPDX-License-Identifier: BSD-3-Clause
#include "Finding.h"

#include <algorithm>

namespace Tool {

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Warning:
      return "warning";
    case Severity::Missing:
      return "missing";
    case Severity::Error:
      return "error";
  }
  return "";
}

ExitCode ExitCodeFor(const std::vector<Finding>& findings) {
  const auto has = [&](Severity severity) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& f) { return f.Level == severity; });
  };
  if (has(Severity::Error)) return ExitCode::NotPlayable;
  return has(Severity::Missing) ? ExitCode::AssetsMissing : ExitCode::Fine;
}

Json FindingToJson(const Finding& finding) {
  Json json{{"severity", SeverityName(finding.Level)}, {"message", finding.Message}};
  const auto add = [&](const char* key, const std::string& value) {
    if (!value.empty()) json[key] = value;
  };
  add("composition", finding.Composition);
  if (finding.Reel != 0) json["reel"] = finding.Reel;
  add("asset_type", finding.AssetType);
  add("asset_id", finding.AssetID);
  add("file", finding.File);
  add("expected", finding.Expected);
  add("found", finding.Found);
  add("advice", finding.Advice);
  return json;
}

std::string FindingText(const Json& finding) {
  const auto text = [&](const char* key) { return finding.value(key, std::string()); };
  std::string place = text("composition");
  if (finding.contains("reel")) place += ", reel " + std::to_string(finding["reel"].get<unsigned>());
  if (finding.contains("asset_type")) place += (place.empty() ? "" : ", ") + text("asset_type");

  std::string line = text("severity") + ": " + (place.empty() ? "" : place + ": ") + text("message");
  if (finding.contains("expected"))
    line += " Expected " + text("expected") + ", found " + text("found") + ".";
  else if (finding.contains("found"))
    line += " Found " + text("found") + ".";
  if (finding.contains("asset_id")) line += "\n    asset " + text("asset_id");
  if (finding.contains("file")) line += "\n    file  " + text("file");
  if (finding.contains("advice")) line += "\n    " + text("advice");
  return line + '\n';
}

}  // namespace Tool
