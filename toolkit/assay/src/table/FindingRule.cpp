// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/FindingRule.h>

#include "CompositionRules.h"
#include "EssenceRules.h"
#include "PackageRules.h"
#include "SecurityRules.h"
#include "ShowRules.h"
#include "TextRules.h"
#include "TitleRules.h"

#include <Ferro/Assert.h>

#include <algorithm>
#include <vector>

namespace Assay {
namespace {

constexpr std::span<const FindingRule> Areas[] = {PackageRules, CompositionRules, TitleRules, EssenceRules,
                                                  TextRules,    SecurityRules,    ShowRules};

constexpr size_t Total() {
  size_t count = 0;
  for (const auto area : Areas) count += area.size();
  return count;
}
static_assert(Total() == FindingCount);

constexpr bool IsInOrder() {
  size_t index = 0;
  for (const auto area : Areas)
    for (const FindingRule& rule : area)
      if (static_cast<size_t>(rule.ID) != index++) return false;
  return true;
}
static_assert(IsInOrder());

const std::vector<FindingRule>& Rules() {
  static const std::vector<FindingRule> s_Rules = [] {
    std::vector<FindingRule> rules;
    for (const auto area : Areas) rules.insert(rules.end(), area.begin(), area.end());
    return rules;
  }();
  return s_Rules;
}

}  // namespace

std::span<const FindingRule> FindingRules() {
  return Rules();
}

const FindingRule& RuleOf(FindingID id) {
  FERRO_ASSERT(static_cast<size_t>(id) < FindingCount);
  return Rules()[static_cast<size_t>(id)];
}

const FindingRule* FindRule(std::string_view name) {
  const auto found = std::ranges::find_if(Rules(), [&](const FindingRule& rule) { return rule.Name == name; });
  return found == Rules().end() ? nullptr : &*found;
}

const char* FindingClassName(FindingClass value) {
  switch (value) {
    case FindingClass::Error:
      return "error";
    case FindingClass::Warning:
      return "warning";
    case FindingClass::Profile:
      return "profile";
    case FindingClass::Note:
      return "note";
  }
  return "";
}

const char* DepthName(Depth depth) {
  switch (depth) {
    case Depth::Documents:
      return "documents";
    case Depth::Files:
      return "files";
    case Depth::Frames:
      return "frames";
    case Depth::Hash:
      return "hash";
    case Depth::Decode:
      return "decode";
  }
  return "";
}

}  // namespace Assay
