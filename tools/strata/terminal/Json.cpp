// SPDX-License-Identifier: BSD-3-Clause
#include "Json.h"

#include <algorithm>
#include <utility>

namespace Tool {

Json::Json(std::initializer_list<Member> members) : m_Value(std::vector<Member>(members)) {}

Json Json::Array() {
  return std::vector<Json>();
}

Json Json::Object() {
  Json json;
  json.m_Value = std::vector<Member>();
  return json;
}

Json& Json::operator[](std::string_view key) {
  if (std::holds_alternative<std::monostate>(m_Value)) *this = Object();
  auto& members = std::get<std::vector<Member>>(m_Value);
  const auto found = std::find_if(members.begin(), members.end(), [&](const Member& one) { return one.Key == key; });
  return found != members.end() ? found->Content : members.emplace_back(Member{std::string(key), Json()}).Content;
}

Json& Json::push_back(Json value) {
  if (std::holds_alternative<std::monostate>(m_Value)) *this = Array();
  return std::get<std::vector<Json>>(m_Value).emplace_back(std::move(value));
}

void Json::update(const Json& object) {
  for (const Member& member : std::get<std::vector<Member>>(object.m_Value)) (*this)[member.Key] = member.Content;
}

}  // namespace Tool
