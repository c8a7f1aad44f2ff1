// SPDX-License-Identifier: BSD-3-Clause
#include "FindingJson.h"

#include "FindingReport.h"

namespace Tool {

namespace {

Json FindingJson(const Finding& finding) {
  Json json{{"id", KindOf(finding.ID).Name}, {"severity", SeverityName(finding.Level)}, {"message", finding.Message}};
  AddUnlessEmpty(json, "composition", finding.Composition);
  if (finding.CompositionNumber != 0) json["composition_number"] = finding.CompositionNumber;
  if (finding.Reel != 0) json["reel"] = finding.Reel;
  AddUnlessEmpty(json, "asset_type", AssetTypeOf(finding));
  if (finding.AssetID.HasValue()) json["asset_id"] = finding.AssetID.EncodeString();
  AddUnlessEmpty(json, "file", finding.File);
  AddUnlessEmpty(json, "expected", finding.Expected);
  AddUnlessEmpty(json, "found", finding.Found);
  AddUnlessEmpty(json, "advice", finding.Advice);
  return json;
}

}  // namespace

Json FindingsJson(const std::vector<Finding>& findings) {
  Json list = Json::Array();
  for (const Finding& finding : findings) list.push_back(FindingJson(finding));
  return list;
}

}  // namespace Tool
