// SPDX-License-Identifier: BSD-3-Clause
#include "InfoItem.h"

#include "terminal/TextForms.h"

#include <algorithm>

namespace Tool {

namespace {

constexpr size_t LabelWidth = 24;

std::string ValueText(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  return value.dump();
}

bool IsPlain(const Json& value) {
  return !value.is_object() && !value.is_array();
}

/// A number that has a readable form beside it: "95874 (95.9 kB)".
std::string ValueText(const Json& object, const std::string& key) {
  const std::string text = ValueText(object[key]);
  return object.contains(key + "_text") ? text + " (" + ValueText(object[key + "_text"]) + ')' : text;
}

// "asset_id" is shown as "asset id".
std::string LabelOf(std::string key) {
  std::replace(key.begin(), key.end(), '_', ' ');
  return key;
}

/// All facts of an object in one line.
std::string LineOf(const Json& object) {
  std::string line;
  for (const auto& [key, value] : object.items()) {
    if (value.is_array() && std::all_of(value.begin(), value.end(), IsPlain)) {
      for (const Json& element : value) line += (line.empty() ? "" : ", ") + ValueText(element);
    } else if (IsPlain(value)) {
      line += (line.empty() ? "" : ", ") + (value.is_string() ? "" : LabelOf(key) + ' ') + ValueText(value);
    }
  }
  return line;
}

void AppendFacts(const Json& object, size_t indent, std::string& text);

void AppendList(const Json& list, size_t indent, std::string& text) {
  for (const Json& element : list) {
    text += std::string(indent, ' ') + (element.is_object() ? LineOf(element) : ValueText(element)) + '\n';
    if (!element.is_object()) continue;
    for (const auto& [key, value] : element.items())  // what a line cannot hold
      if (value.is_array() && !value.empty() && !IsPlain(value.front())) AppendList(value, indent + 2, text);
  }
}

void AppendFacts(const Json& object, size_t indent, std::string& text) {
  for (const auto& [key, value] : object.items()) {
    if (key.ends_with("_text")) continue;  // shown with its number
    const std::string label = std::string(indent, ' ') + LabelOf(key);
    if (IsPlain(value)) {
      text += label + std::string(std::max(LabelWidth, label.size() + 1) - label.size(), ' ') + ValueText(object, key) +
              '\n';
    } else if (value.is_object()) {
      text += label + '\n';
      AppendFacts(value, indent + 2, text);
    } else if (!value.empty()) {
      text += label + '\n';
      AppendList(value, indent + 2, text);
    }
  }
}

}  // namespace

void AddFact(Json& item, const char* key, const std::string& value) {
  if (!value.empty()) item[key] = value;
}

void AddFact(Json& item, const char* key, const Ferro::UUID& value) {
  if (value.HasValue()) item[key] = value.EncodeString();
}

void AddDuration(Json& item, Ferro::ui64_t edit_units, const QUIRE::Rational& rate) {
  item["duration"] = edit_units;
  if (rate.Numerator > 0 && rate.Denominator > 0)
    item["duration_text"] = DurationText(double(edit_units) / rate.Quotient());
}

void AddProblem(Json& item, const std::string& sentence) {
  item["problems"].push_back(sentence);
}

std::string InfoText(const Json& item) {
  Json facts = item;
  std::string text = item["path"].get<std::string>() + ": " + item["kind"].get<std::string>() + '\n';
  facts.erase("path");
  facts.erase("kind");
  Json problems = facts.value("problems", Json::array());
  facts.erase("problems");
  AppendFacts(facts, 2, text);
  for (const Json& problem : problems) text += "  problem: " + problem.get<std::string>() + '\n';
  return text;
}

}  // namespace Tool
