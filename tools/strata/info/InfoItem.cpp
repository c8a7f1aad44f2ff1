// SPDX-License-Identifier: BSD-3-Clause
#include "InfoItem.h"

#include "terminal/TextForms.h"

#include <cstring>

namespace Tool {

InfoValue& InfoFacts::Set(const char* key, InfoValue value) {
  for (auto& [present, old] : All)
    if (std::strcmp(present, key) == 0) return old = std::move(value);
  return All.emplace_back(key, std::move(value)).second;
}

void InfoFacts::Add(const char* key, const std::string& text) {
  if (!text.empty()) Set(key, text);
}

void InfoFacts::Add(const char* key, const Ferro::UUID& id) {
  if (id.HasValue()) Set(key, id.EncodeString());
}

void InfoFacts::Add(const char* key, const QUIRE::Rational& rate, std::string shown) {
  if (rate.Denominator != 0) Set(key, rate.EncodeString()).ShownAs(std::move(shown));
}

void InfoFacts::Tell(const char* label, std::string text) {
  Set(label, InfoValue(std::move(text))).IsForPeople = true;
}

InfoFacts& InfoFacts::Group(const char* key) {
  return std::get<InfoFacts>(Set(key, InfoFacts()).Value);
}

InfoList& InfoFacts::List(const char* key) {
  return std::get<InfoList>(Set(key, InfoList()).Value);
}

void InfoItem::AddEditRate(const QUIRE::Rational& rate) {
  Facts.Add("edit_rate", rate, RateText(rate) + " edit units per second");
}

void InfoItem::AddDuration(Ferro::ui64_t edit_units, const QUIRE::Rational& rate) {
  const bool has_rate = rate.Numerator > 0 && rate.Denominator > 0;
  const std::string time = has_rate ? DurationText(double(edit_units) / rate.Quotient()) : "";
  Facts.Set("duration", {edit_units, time})
      .ShownAs((has_rate ? time + ", " : "") + std::to_string(edit_units) + " edit units");
  Duration = edit_units;
}

}  // namespace Tool
