// SPDX-License-Identifier: BSD-3-Clause
#include "InfoItem.h"
#include "terminal/DisplayText.h"

#include <algorithm>

namespace Tool {

namespace {

constexpr size_t LabelWidth = 24;

/// A plain value as the text form has it: a number with its readable form behind it, a label as what it means.
std::string ValueText(const InfoValue& value) {
  if (value.Shown) return DisplayText(*value.Shown);
  if (const auto* text = std::get_if<std::string>(&value.Value))
    return DisplayText(value.Readable.empty() ? *text : value.Readable);
  if (const auto* flag = std::get_if<bool>(&value.Value)) return *flag ? "yes" : "no";
  const std::string number = std::to_string(std::get<Ferro::ui64_t>(value.Value));
  return value.Readable.empty() ? number : number + " (" + value.Readable + ')';
}

// "asset_id" is shown as "asset id".
std::string LabelOf(std::string key) {
  std::replace(key.begin(), key.end(), '_', ' ');
  return key;
}

/// All facts of a part in one line.
std::string LineOf(const InfoFacts& facts) {
  if (!facts.Line.empty()) return DisplayText(facts.Line);
  std::string line;
  const auto append = [&line](const std::string& text) { line += (line.empty() ? "" : ", ") + text; };
  for (const auto& [key, value] : facts.All) {
    const bool is_text = std::holds_alternative<std::string>(value.Value);
    if (value.IsPlain()) {
      append((is_text ? "" : LabelOf(key) + ' ') + ValueText(value));
    } else if (const auto* list = std::get_if<InfoList>(&value.Value)) {
      for (const InfoValue& element : *list)
        if (element.IsPlain()) append(ValueText(element));
    }
  }
  return line;
}

void AppendList(const InfoList& list, size_t indent, std::string& text) {
  for (const InfoValue& element : list) {
    const auto* facts = std::get_if<InfoFacts>(&element.Value);
    text += std::string(indent, ' ') + (facts != nullptr ? LineOf(*facts) : ValueText(element)) + '\n';
    if (facts == nullptr) continue;
    for (const auto& [key, value] : facts->All) {  // what a line cannot hold
      const auto* inner = std::get_if<InfoList>(&value.Value);
      if (inner != nullptr && !inner->empty() && !inner->front().IsPlain()) AppendList(*inner, indent + 2, text);
    }
  }
}

void AppendFacts(const InfoFacts& facts, size_t indent, std::string& text) {
  for (const auto& [key, value] : facts.All) {
    const std::string label = std::string(indent, ' ') + LabelOf(key);
    const auto* list = std::get_if<InfoList>(&value.Value);
    if (value.Shown && value.Shown->empty()) continue;
    if (value.IsPlain()) {
      text += label + std::string(std::max(LabelWidth, label.size() + 1) - label.size(), ' ') + ValueText(value) + '\n';
    } else if (list == nullptr) {
      text += label + '\n';
      AppendFacts(std::get<InfoFacts>(value.Value), indent + 2, text);
    } else if (!list->empty()) {
      text += label + '\n';
      AppendList(*list, indent + 2, text);
    }
  }
}

}  // namespace

std::string InfoText(const std::vector<InfoItem>& items) {
  std::string text;
  for (const InfoItem& item : items) {
    text += (text.empty() ? "" : "\n") + DisplayText(item.Path) + ": " + item.Kind + '\n';
    AppendFacts(item.Facts, 2, text);
    for (const std::string& problem : item.Problems) text += "  problem: " + DisplayText(problem) + '\n';
  }
  return text;
}

}  // namespace Tool
