// SPDX-License-Identifier: BSD-3-Clause
#include "InfoItem.h"

#include "terminal/TextForms.h"

#include <algorithm>

namespace {

constexpr size_t LabelWidth = 24;

std::string value_text(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  return value.dump();
}

bool is_plain(const Json& value) {
  return !value.is_object() && !value.is_array();
}

/// A number that has a readable form beside it: "95874 (95.9 kB)".
std::string value_text(const Json& object, const std::string& key) {
  const std::string text = value_text(object[key]);
  return object.contains(key + "_text") ? text + " (" + value_text(object[key + "_text"]) + ')' : text;
}

// "asset_id" is shown as "asset id".
std::string label_of(std::string key) {
  std::replace(key.begin(), key.end(), '_', ' ');
  return key;
}

/// All facts of an object in one line.
std::string line_of(const Json& object) {
  std::string line;
  for (const auto& [key, value] : object.items()) {
    if (value.is_array() && std::all_of(value.begin(), value.end(), is_plain)) {
      for (const Json& element : value) line += (line.empty() ? "" : ", ") + value_text(element);
    } else if (is_plain(value)) {
      line += (line.empty() ? "" : ", ") + (value.is_string() ? "" : label_of(key) + ' ') + value_text(value);
    }
  }
  return line;
}

void append_facts(const Json& object, size_t indent, std::string& text);

void append_list(const Json& list, size_t indent, std::string& text) {
  for (const Json& element : list) {
    text += std::string(indent, ' ') + (element.is_object() ? line_of(element) : value_text(element)) + '\n';
    if (!element.is_object()) continue;
    for (const auto& [key, value] : element.items())  // what a line cannot hold
      if (value.is_array() && !value.empty() && !is_plain(value.front())) append_list(value, indent + 2, text);
  }
}

void append_facts(const Json& object, size_t indent, std::string& text) {
  for (const auto& [key, value] : object.items()) {
    if (key.ends_with("_text")) continue;  // shown with its number
    const std::string label = std::string(indent, ' ') + label_of(key);
    if (is_plain(value)) {
      text += label + std::string(std::max(LabelWidth, label.size() + 1) - label.size(), ' ') +
              value_text(object, key) + '\n';
    } else if (value.is_object()) {
      text += label + '\n';
      append_facts(value, indent + 2, text);
    } else if (!value.empty()) {
      text += label + '\n';
      append_list(value, indent + 2, text);
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
  append_facts(facts, 2, text);
  for (const Json& problem : problems) text += "  problem: " + problem.get<std::string>() + '\n';
  return text;
}
