// SPDX-License-Identifier: BSD-3-Clause
#include "Json.h"

#include <algorithm>
#include <utility>

namespace Tool {

Json::Json(std::initializer_list<Member> members) : m_Value(Members()) {
  for (const Member& member : members) (*this)[member.Key] = member.Content;
}

Json Json::Array() {
  return std::vector<Json>();
}

Json Json::Object() {
  Json json;
  json.m_Value = Members();
  return json;
}

Json& Json::operator[](std::string_view key) {
  if (std::holds_alternative<std::monostate>(m_Value)) *this = Object();
  auto& [keys, contents] = std::get<Members>(m_Value);
  const auto found = std::find(keys.begin(), keys.end(), key);
  if (found != keys.end()) return contents[static_cast<size_t>(found - keys.begin())];
  keys.emplace_back(key);
  return contents.emplace_back();
}

Json& Json::push_back(Json value) {
  if (std::holds_alternative<std::monostate>(m_Value)) *this = Array();
  return std::get<std::vector<Json>>(m_Value).emplace_back(std::move(value));
}

void Json::update(const Json& object) {
  const auto& [keys, contents] = std::get<Members>(object.m_Value);
  for (size_t i = 0; i < keys.size(); ++i) (*this)[keys[i]] = contents[i];
}

}  // namespace Tool
