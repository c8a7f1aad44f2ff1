// SPDX-License-Identifier: BSD-3-Clause
#include "InfoItem.h"
#include "terminal/JsonReport.h"

namespace Tool {

namespace {

Json FactsJson(const InfoFacts& facts);

/// One overload for each kind of value.
struct ToJson {
  Json operator()(const InfoFacts& facts) const { return FactsJson(facts); }
  Json operator()(const InfoList& list) const {
    Json json = Json::Array();
    for (const InfoValue& element : list) json.push_back(std::visit(*this, element.Value));
    return json;
  }
  template <class T>
  Json operator()(const T& plain) const {
    return plain;
  }
};

// A number's readable form stands beside it: "size", "size_text".
Json FactsJson(const InfoFacts& facts) {
  Json json = Json::Object();
  for (const auto& [key, value] : facts.All) {
    if (value.IsForPeople) continue;
    json[key] = std::visit(ToJson(), value.Value);
    if (!value.Readable.empty()) json[key + std::string("_text")] = value.Readable;
  }
  return json;
}

}  // namespace

std::string InfoJson(const std::vector<InfoItem>& items) {
  Json json = NewJsonReport("info");
  json["items"] = Json::Array();
  for (const InfoItem& item : items) {
    Json& added = json["items"].push_back(Json{{"path", item.Path}, {"kind", item.Kind}});
    added.update(FactsJson(item.Facts));
    if (!item.Problems.empty()) added["problems"] = item.Problems;
  }
  return JsonText(json);
}

}  // namespace Tool
