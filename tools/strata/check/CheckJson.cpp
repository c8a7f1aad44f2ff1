// SPDX-License-Identifier: BSD-3-Clause
#include "CheckReport.h"
#include "findings/FindingJson.h"
#include "keys/KeyReport.h"

namespace Tool {

namespace {

Json CompositionJson(const CheckedComposition& composition) {
  Json json{{"id", composition.ID.EncodeString()},
            {"title", composition.Title},
            {"file", composition.File},
            {"edit_rate", composition.EditRate.EncodeString()},
            {"start", composition.Start},
            {"duration", composition.Duration},
            {"reels", composition.Reels},
            {"stereoscopic", composition.Stereoscopic},
            {"description", composition.Description}};
  if (!composition.Keys.empty()) json["keys"] = KeyAnswersJson(composition.Keys);
  return json;
}

}  // namespace

std::string CheckJson(const CheckReport& report) {
  Json json = NewJsonReport("check");
  json["playable"] = report.Code == ExitCode::Fine && KeylessCount(report) == 0;
  json["needs_keys"] = KeylessCount(report);
  json["exit_code"] = static_cast<int>(report.Code);
  json["duration"] = report.Duration;
  json["duration_seconds"] = report.DurationSeconds;
  json["hash"] = report.Hash;
  if (report.Verified.Files > 0)
    json["verified"] = Json{{"files", report.Verified.Files}, {"frames", report.Verified.Frames}};
  json["compositions"] = Json::Array();
  for (const CheckedComposition& composition : report.Compositions)
    json["compositions"].push_back(CompositionJson(composition));
  if (!report.Shows.empty()) json["shows"] = Json::Array();
  for (const CheckedShow& show : report.Shows)
    json["shows"].push_back(Json{{"title", show.Title},
                                 {"file", show.File},
                                 {"description", show.Description},
                                 {"exit_code", static_cast<int>(show.Code)},
                                 {"verdict", show.Verdict}});
  std::vector<Cairn::UUID> ids;
  for (const CheckedComposition& composition : report.Compositions) ids.push_back(composition.ID);
  json["findings"] = FindingsJson(report.Findings, ids);
  json["verdict"] = CheckVerdict(report);
  return JsonText(json);
}

}  // namespace Tool
