// SPDX-License-Identifier: BSD-3-Clause
#include "FindingJson.h"

#include <algorithm>

namespace Tool {

namespace {

void AddPlace(const Assay::FindingPlace& place, const std::vector<Cairn::UUID>& show, Json& json) {
  AddUnlessEmpty(json, "composition", CompositionNameOf(place));
  if (place.Composition.HasValue()) {
    json["composition_id"] = place.Composition.EncodeString();
    const auto found = std::find(show.begin(), show.end(), place.Composition);
    if (found != show.end()) json["composition_number"] = found - show.begin() + 1;
  }
  if (place.Reel != 0) json["reel"] = place.Reel;
  AddUnlessEmpty(json, "asset_type", Assay::ReelUseName(place.Use));
  if (place.Asset.HasValue()) json["asset_id"] = place.Asset.EncodeString();
  if (place.EditUnit) json["edit_unit"] = *place.EditUnit;
  if (place.EditUnit && place.EditRate.Numerator > 0) json["edit_rate"] = place.EditRate.EncodeString();
  if (place.Channel != 0) json["channel"] = place.Channel;
  AddUnlessEmpty(json, "package", place.Package);
  AddUnlessEmpty(json, "file", PathOf(place));
  if (place.Line != 0) json["line"] = place.Line;
}

}  // namespace

Json FindingsJson(const FindingList& findings, const std::vector<Cairn::UUID>& show) {
  Json list = Json::Array();
  for (const Finding& finding : findings) {
    Json& json = list.push_back(Json{{"id", Assay::RuleOf(finding.ID).Name},
                                     {"class", Assay::FindingClassName(finding.Class)},
                                     {"severity", SeverityName(SeverityOf(finding))},
                                     {"message", finding.Sentence()}});
    AddPlace(finding.Place, show, json);
    AddUnlessEmpty(json, "expected", finding.Expected);
    AddUnlessEmpty(json, "found", finding.Found);
    if (finding.Cause) json["cause"] = *finding.Cause;
    AddUnlessEmpty(json, "advice", finding.Advice());
  }
  return list;
}

}  // namespace Tool
